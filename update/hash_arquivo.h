// CRC-32 and SHA-256 of a file in one pass, in constant memory.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "core/crc32.h"
#include "core/handle.h"
#include "core/hash.h"

namespace zu::launcher {

struct ResultadoHash {
    bool ok = false;  // false: cancelled, or something could not be opened or read
    std::uint64_t bytes = 0;
    std::uint32_t crc = 0;
    Sha256Digest sha256{};
};

// Both digests of a stream of blocks.
class HashCorrente {
 public:
    void Alimentar(const void* bloco, std::size_t tamanho);
    [[nodiscard]] std::uint64_t Bytes() const { return bytes_; }
    // Ends the stream; called once.
    ResultadoHash Terminar(bool ok);

 private:
    std::uint64_t bytes_ = 0;
    std::uint32_t crc_ = kCrc32Inicial;
    Sha256Incremental sha256_ = Sha256Begin();
};

// Reads the file itself (`partes` 0) or its parts .p001 to .pNNN in order as one stream. `visita` receives each
// block; a set `cancelar` ends the reading before the next block. Both may be absent.
ResultadoHash HashArquivo(const std::filesystem::path& caminho, std::uint32_t partes,
                          const std::function<void(std::span<const std::uint8_t>)>& visita = {},
                          const std::atomic<bool>* cancelar = nullptr);

// The two steps of reading one file, for who wants to take them apart: the opening, which may fail, and the reading of
// what was opened.
HandleArquivo AbrirParaHash(const std::filesystem::path& caminho);
ResultadoHash HashDoAberto(const HandleArquivo& arquivo,
                           const std::function<void(std::span<const std::uint8_t>)>& visita = {},
                           const std::atomic<bool>* cancelar = nullptr);

// The name of one part, counted from 1: the path followed by ".p001" and so on.
std::filesystem::path CaminhoDaParte(const std::filesystem::path& caminho, std::uint32_t parte);
std::string SufixoDaParte(std::uint32_t parte);

}  // namespace zu::launcher

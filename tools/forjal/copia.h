// One client file on its way into the published folder.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash.h"
#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {

constexpr std::string_view kMudou = "mudou durante a publicação";
constexpr std::string_view kInterrompido = "interrompido";

struct ResultadoDaCopia {
    std::string erro;                          // empty: every piece stands where it belongs and holds what was hashed
    std::uint32_t crc = 0;                     // of the whole file
    Sha256Digest sha256{};                     // of the whole file
    std::vector<std::uint32_t> crcDosTrechos;  // of the pieces that are in place, in order
    std::size_t copiados = 0;                  // pieces that had to be written
};

// Hashes `origem` and brings its pieces into `saida`. A piece that stands there with the same content is left
// alone; any other is written under a temporary name, flushed and moved into place. The file is read once,
// and a piece a second time only when an equally long but different one stood in its place. Constant memory.
// A file that ends early, grows or reads differently the second time is an error. Each block read the first
// time is added to `bytes`; a set `parar` ends the work before the next block, as an error.
ResultadoDaCopia PublicarArquivo(const std::filesystem::path& origem, std::span<const Trecho> trechos,
                                 const std::filesystem::path& saida, std::atomic<std::uint64_t>& bytes,
                                 const std::atomic<bool>& parar);

}  // namespace zu::launcher::forjal

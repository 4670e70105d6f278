// One client file on its way into the published folder.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash.h"
#include "tools/forjal/publicar/troca.h"
#include "tools/forjal/varredura.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

constexpr std::string_view kMudou = "mudou durante a publicação";
constexpr std::string_view kInterrompido = "interrompido";

struct ResultadoDaCopia {
    std::string erro;                          // empty: every piece is in the folder or in the change
    std::uint32_t crc = 0;                     // of the whole file
    Sha256Digest sha256{};                     // of the whole file
    std::vector<std::uint32_t> crcDosTrechos;  // in order
    std::size_t copiados = 0;                  // pieces that differ from what stands in the folder
    update::IndiceListado indice;              // as the list names it; without a path: there is none
    std::uint32_t crcDoIndice = 0;
    bool indiceNovo = false;  // it differs from what stands in the folder
};

// How far the work on all files is, and whether it is to end.
struct AndamentoDaCopia {
    std::atomic<std::uint64_t>& bytes;  // each block read the first time is added
    const std::atomic<bool>& parar;     // ends the work before the next block, as an error
};

// Hashes a file of the folder `cliente` and prepares its pieces, and its block index where it has one, for the folder
// `saida`: what stands there with the same content is left alone, any other is added to `troca`; null: it is only
// counted. The file is read once, and a piece a second time only when an equally long but different one stood in its
// place. Constant memory, but for eight bytes a block of the index. A file that ends early, grows or reads differently
// the second time is an error.
ResultadoDaCopia PrepararArquivo(const std::filesystem::path& cliente, const ArquivoDoCliente& arquivo,
                                 std::uint64_t bytesPorParte, const std::filesystem::path& saida, Troca* troca,
                                 AndamentoDaCopia andamento);

}  // namespace zu::launcher::forjal

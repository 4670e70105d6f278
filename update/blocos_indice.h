// The block index that lies beside a published file as PATH + ".blocos": the sums of the file's blocks, by which an
// older file is searched for what the new one shares with it. docs/formatos.md has the format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "update/blocos_soma.h"

namespace zu::launcher::update {

constexpr std::string_view kSufixoDoIndice = ".blocos";
constexpr std::uint64_t kMenorComIndice = 1ULL << 20;  // bytes: smaller files have no index

struct IndiceDeBlocos {
    std::uint64_t tamanho = 0;  // bytes of the file, at least 1
    std::uint64_t parte = 0;    // bytes of each published part but the last; 0: published whole
    std::uint32_t bloco = 0;    // bytes of each block but the last, which may be shorter
    std::uint32_t largura = 0;  // bytes of a sum that the index carries: the upper ones
    std::vector<Soma> somas;    // of each block, in order, shifted down by what is not carried

    [[nodiscard]] Soma Reduzir(Soma soma) const { return soma >> (64 - 8 * largura); }
    [[nodiscard]] std::uint64_t Inicio(std::size_t i) const { return static_cast<std::uint64_t>(i) * bloco; }
    [[nodiscard]] std::uint64_t Comprimento(std::size_t i) const {
        return i + 1 < somas.size() ? bloco : tamanho - Inicio(i);
    }
    // All of them but a last one that is shorter.
    [[nodiscard]] std::size_t BlocosInteiros() const { return static_cast<std::size_t>(tamanho / bloco); }
};

// The block size that an index of such a file has: about as many bytes go into the sums as into the blocks around some
// tens of changed places.
std::uint32_t TamanhoDoBloco(std::uint64_t tamanhoDoArquivo);

// No index of such a file is longer, in bytes. One that claims to be is not worth fetching.
std::uint64_t LimiteDoIndice(std::uint64_t tamanhoDoArquivo);

// False, and `indice` without meaning, for anything that is not exactly one index.
bool LerIndice(std::string_view bytes, IndiceDeBlocos& indice);

// Makes the index of a file that is read once from its beginning to its end, in pieces of any length. Needs eight bytes
// of memory a block, at the end for a moment three times that.
class EscritorDeIndice {
 public:
    // `parte`: the size of the published parts, 0 for a file that is published whole.
    explicit EscritorDeIndice(std::uint64_t tamanhoDoArquivo, std::uint64_t parte = 0);

    void Alimentar(const void* dados, std::size_t tamanho);
    // The whole index, with the shortest sums that tell all different blocks of the file apart. Empty when not as many
    // bytes came as were announced, or none. Called once.
    std::string Terminar();

 private:
    void FecharBloco();

    std::uint64_t tamanho_;
    std::uint64_t parte_;
    std::uint32_t bloco_;
    std::uint64_t vieram_ = 0;
    std::string aberto_;  // what has come of a block that is not complete
    std::vector<Soma> somas_;
};

}  // namespace zu::launcher::update

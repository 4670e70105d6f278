// How a new file is put together, from its beginning to its end, out of an old file and of ranges from the network.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "update/blocos_busca.h"
#include "update/blocos_indice.h"

namespace zu::launcher::update {

// A piece of the new file. From the network it never crosses the border of a part.
struct Trecho {
    std::uint64_t inicio = 0;          // in the new file
    std::uint64_t tamanho = 0;         // bytes
    std::uint64_t velho = kNaoAchado;  // offset in the old file; `kNaoAchado`: it comes from the network
    [[nodiscard]] bool DaRede() const { return velho == kNaoAchado; }
    bool operator==(const Trecho&) const = default;
};

struct Plano {
    std::vector<Trecho> trechos;  // without a gap, from the bytes that are there to the end
    std::uint64_t doDisco = 0;    // bytes
    std::uint64_t daRede = 0;     // bytes
    std::size_t pedidos = 0;      // ranges to be asked for

    // Whether it spares enough to be worth its requests, against fetching everything that is missing at once.
    [[nodiscard]] bool ValeAPena() const;
};

// `onde` as `BuscarBlocos` found it; `presentes`: how many first bytes of the new file are there already. What lies
// between two ranges and is smaller than a request is worth comes with them; the more ranges there are, the more so.
Plano Planejar(const IndiceDeBlocos& indice, std::span<const std::uint64_t> onde, std::uint64_t presentes);

// Where the pieces come from and go to. Each returns false to end the assembly.
struct FontesDaMontagem {
    std::function<bool(std::uint64_t onde, std::span<std::uint8_t> bytes)> lerVelho;  // all of them
    std::function<bool(const Trecho& trecho)> buscar;  // the range, handed on to where `escrever` puts the others
    std::function<bool(std::span<const std::uint8_t> bytes)> escrever;
};

// Carries the plan out, piece after piece. False as soon as one does not come.
bool Montar(const Plano& plano, const FontesDaMontagem& fontes);

}  // namespace zu::launcher::update

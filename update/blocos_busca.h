// Where the blocks of a new file lie in an old one, at whatever offset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "update/blocos_indice.h"

namespace zu::launcher::update {

constexpr std::uint64_t kNaoAchado = ~std::uint64_t{0};

// Reads on in the old file, from its beginning to its end: as many bytes as fit, fewer only at the end. False: it
// cannot be read, or the search is to end.
using LeitorEmOrdem = std::function<bool(std::span<std::uint8_t> bytes, std::size_t& lidos)>;

// For each block of the index the offset at which the old file has it, or `kNaoAchado`. Takes time in proportion to the
// old file's length, whatever is in it, and some 40 bytes of memory a block beside the index. A block counts as found
// where it stands as in the new file, next to another one; that its sum agrees is no proof, so the whole file must be
// proved. False when the reader fails.
bool BuscarBlocos(const IndiceDeBlocos& indice, const LeitorEmOrdem& ler, std::vector<std::uint64_t>& onde);

// How many first bytes of what is read may be those of the new file: those before the first block whose sum differs.
// False when the reader fails.
bool ContarIguais(const IndiceDeBlocos& indice, const LeitorEmOrdem& ler, std::uint64_t& iguais);

}  // namespace zu::launcher::update

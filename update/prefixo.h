// The first bytes of an item that comes in parts, in its two forms: in the destination itself, where the blocks of an
// older file are put together, and in the parts that a plain download fetches. Either goes on where the other stopped.
#pragma once

#include <cstdint>

#include "update/transferencia.h"

namespace zu::launcher {

// How many first bytes of the item stand on the disk, in the destination and in the parts behind it. `parte`: bytes of
// each part but the last; 0 for an item that comes whole.
std::uint64_t PrefixoPresente(const Transferencia& t, std::uint64_t parte);

// Brings all of them into the destination; then the parts go. False, and nothing lost, when that cannot be done or was
// cancelled.
bool JuntarPrefixo(const Transferencia& t, std::uint64_t parte);

// Brings all of the destination into the parts. When it cannot be done some of them may come again.
void RepartirPrefixo(const Transferencia& t, std::uint64_t parte);

}  // namespace zu::launcher

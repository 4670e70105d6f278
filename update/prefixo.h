// The first bytes of an item that comes in parts, in its two forms: in the destination itself, where the blocks of an
// older file are put together, and in the parts that a plain download fetches. Either goes on where the other stopped.
#pragma once

#include <cstdint>

#include "update/transferencia.h"

namespace zu::launcher {

// Brings what stands in the parts behind the destination's end into the destination; then the parts go. `parte`: bytes
// of each part but the last. False, and nothing lost, when that cannot be done or was cancelled.
bool JuntarPrefixo(const Transferencia& t, std::uint64_t parte);

// Brings all of the destination into the parts. When it cannot be done some of them may come again.
void RepartirPrefixo(const Transferencia& t, std::uint64_t parte);

}  // namespace zu::launcher

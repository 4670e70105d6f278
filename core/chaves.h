// The key material that the build puts into the launcher. The definitions are generated in the build folder.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/assinatura.h"

namespace zu::launcher {

using SegredoSelo = std::array<std::uint8_t, 32>;

// The public keys that may sign an update list, in the order in which they are tried. Never empty.
std::span<const UpdateSigningKey> ChavesDaLista();

// The secret of the sealed settings file.
const SegredoSelo& SegredoDoSelo();

}  // namespace zu::launcher

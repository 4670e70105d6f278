// The launch hand-shake: how the game learns that this launcher started it. docs/formatos.md has the protocol. This is
// the one place to change for another protocol.
#pragma once

#include <array>
#include <cstdint>

#include "core/handle.h"

namespace zu::launcher {

using TokenDeLancamento = std::array<std::uint8_t, 32>;

// The channel to one game process, open for as long as this lives. Empty when it could not be made.
struct CanalDoToken {
    HandleKernel mapeamento;   // holds the token
    HandleKernel confirmacao;  // an event, set once the game has found the token to be right

    explicit operator bool() const { return static_cast<bool>(confirmacao); }
};

// Fills the channel of a process that has not run yet. Only the same user can open it; a name that is taken already is
// somebody else's and yields none.
CanalDoToken AbrirCanal(const TokenDeLancamento& token, std::uint32_t pid);

}  // namespace zu::launcher

// The launch hand-shake: how the game learns that this launcher started it. docs/formatos.md has the protocol. The
// token's text, its channel and the wait for the game's answer: the one place to change for another protocol.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/handle.h"

namespace zu::launcher {

using TokenDeLancamento = std::array<std::uint8_t, 32>;

// How long the token's text is, in characters.
constexpr std::size_t kTamanhoDoTexto = 2 * sizeof(TokenDeLancamento);

// Appends the token's text, as it stands in the game's command line. Where the capacity of `linha` suffices, no other
// copy of the text is left in memory.
void AnexarTexto(const TokenDeLancamento& token, std::wstring& linha);

// The channel to one game process, open for as long as this lives. Empty when it could not be made.
struct CanalDoToken {
    HandleKernel mapeamento;   // holds the token
    HandleKernel confirmacao;  // an event, set once the game has found the token to be right

    explicit operator bool() const { return static_cast<bool>(confirmacao); }
};

// Fills the channel of a process that has not run yet. Only the same user can open it; a name that is taken already is
// somebody else's and yields none.
CanalDoToken AbrirCanal(const TokenDeLancamento& token, std::uint32_t pid);

// Waits until the game confirms the token or ends, but not for longer than `espera`; without a channel it can only end.
// Which of these it was, in the words of the log.
std::string_view EsperarConfirmacao(HANDLE jogo, const CanalDoToken& canal, std::chrono::milliseconds espera);

}  // namespace zu::launcher

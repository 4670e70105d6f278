// Starting other programs.
#pragma once

#include <filesystem>
#include <mutex>
#include <string>

#include "core/handle.h"

namespace zu::launcher {

// The text in double quotes. Quotes inside it are not escaped.
std::wstring EntreAspas(const std::wstring& texto);

// The new process and its main thread. Empty handles when the start failed; the reason is in GetLastError().
struct Processo {
    HandleKernel processo;
    HandleKernel thread;
    DWORD pid = 0;

    explicit operator bool() const { return static_cast<bool>(processo); }
};

// Held while a process is being made. A program that ends in the middle of that leaves the new process suspended for
// ever, so the last thing before the end is to take this and keep it, and who makes a process suspended holds it until
// the process runs.
using TravaDaCriacao = std::unique_lock<std::mutex>;
[[nodiscard]] TravaDaCriacao TravarCriacao();

// Starts a command line in a folder, with this process's environment and without its handles. `opcoes` are the creation
// flags of CreateProcessW. A program that somebody holds, as a scanner does a fresh one, is tried again for up to a
// second. The command line stays the caller's, which matters where it holds a secret; the system may write in it.
Processo IniciarProcesso(std::wstring&& linhaDeComando, const std::filesystem::path& pasta, DWORD opcoes = 0);

// The same for a caller that holds `trava`, and does so again afterwards: in between nobody is kept waiting.
Processo IniciarProcesso(TravaDaCriacao& trava, std::wstring&& linhaDeComando, const std::filesystem::path& pasta,
                         DWORD opcoes);

}  // namespace zu::launcher

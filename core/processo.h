// Starting other programs.
#pragma once

#include <filesystem>
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

// Starts a command line in a folder, with this process's environment and without its handles. `opcoes` are the creation
// flags of CreateProcessW.
Processo IniciarProcesso(std::wstring linhaDeComando, const std::filesystem::path& pasta, DWORD opcoes = 0);

}  // namespace zu::launcher

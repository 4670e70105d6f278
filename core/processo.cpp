#include "core/processo.h"

namespace zu::launcher {

std::wstring EntreAspas(const std::wstring& texto) {
    return L"\"" + texto + L"\"";
}

Processo IniciarProcesso(std::wstring linhaDeComando, const std::filesystem::path& pasta, DWORD opcoes) {
    STARTUPINFOW inicio{};
    inicio.cb = sizeof inicio;
    PROCESS_INFORMATION info{};
    Processo novo;
    if (CreateProcessW(nullptr, linhaDeComando.data(), nullptr, nullptr, FALSE, opcoes, nullptr, pasta.c_str(), &inicio,
                       &info) == 0) {
        return novo;
    }
    novo.processo.Trocar(info.hProcess);
    novo.thread.Trocar(info.hThread);
    novo.pid = info.dwProcessId;
    return novo;
}

}  // namespace zu::launcher

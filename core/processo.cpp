#include "core/processo.h"

#include <chrono>
#include <utility>

#include "core/arquivo.h"

namespace zu::launcher {
namespace {

Processo CriarProcesso(std::wstring& linhaDeComando, const std::filesystem::path& pasta, DWORD opcoes) {
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

}  // namespace

std::wstring EntreAspas(const std::wstring& texto) {
    return L"\"" + texto + L"\"";
}

TravaDaCriacao TravarCriacao() {
    // Never destroyed: it is still held when the process ends.
    static auto* const trava = new std::mutex;
    return TravaDaCriacao(*trava);
}

Processo IniciarProcesso(std::wstring&& linhaDeComando, const std::filesystem::path& pasta, DWORD opcoes) {
    TravaDaCriacao trava = TravarCriacao();
    return IniciarProcesso(trava, std::move(linhaDeComando), pasta, opcoes);
}

Processo IniciarProcesso(TravaDaCriacao& trava, std::wstring&& linhaDeComando, const std::filesystem::path& pasta,
                         DWORD opcoes) {
    constexpr std::chrono::milliseconds kPasso{50};
    Paciencia paciencia;
    while (true) {
        Processo novo = CriarProcesso(linhaDeComando, pasta, opcoes);
        if (novo) return novo;
        const DWORD erro = GetLastError();
        trava.unlock();
        const bool insistir = PodePassar(erro) && paciencia.Gastar(kPasso);
        trava.lock();
        SetLastError(erro);
        if (!insistir) return novo;
    }
}

}  // namespace zu::launcher

#include "app/instancia_unica.h"

#include <chrono>

namespace zu::launcher {
namespace {

constexpr std::chrono::seconds kEsperaPelaAnterior{15};
constexpr std::chrono::seconds kEsperaPelaJanela{2};
constexpr std::chrono::milliseconds kPasso{50};

bool Chamar(const std::wstring& nome) {
    const HWND janela = JanelaDaInstancia(nome);
    if (janela == nullptr) return false;
    // The player has just started this process, so it may hand on the right to come to the front.
    DWORD processo = 0;
    GetWindowThreadProcessId(janela, &processo);
    AllowSetForegroundWindow(processo);
    return PostMessageW(janela, MensagemAbrirInstancia, 0, 0) != 0;
}

}  // namespace

InstanciaUnica::InstanciaUnica(const std::filesystem::path& pastaJogo)
    : nome_(NomeDaInstancia(pastaJogo)), posse_(pastaJogo), possui_(posse_.Tomar({})) {}

bool InstanciaUnica::EsperarOuChamar(bool reaberto) {
    using Relogio = std::chrono::steady_clock;
    const Relogio::time_point limite = Relogio::now() + (reaberto ? kEsperaPelaAnterior : kEsperaPelaJanela);
    do {
        if (!reaberto && Chamar(nome_)) return false;
        possui_ = posse_.Tomar(kPasso);
        if (possui_) return true;
    } while (Relogio::now() < limite);
    Chamar(nome_);
    return false;
}

// The name of the property is what is looked for; its value says nothing.
void AnunciarInstancia(HWND janela, const std::filesystem::path& pastaJogo) {
    SetPropW(janela, NomeDaInstancia(pastaJogo).c_str(), janela);
    ChangeWindowMessageFilterEx(janela, MensagemAbrirInstancia, MSGFLT_ALLOW, nullptr);
}

void RecolherInstancia(HWND janela, const std::filesystem::path& pastaJogo) {
    RemovePropW(janela, NomeDaInstancia(pastaJogo).c_str());
}

HWND JanelaDaInstancia(const std::wstring& nome) {
    HWND janela = nullptr;
    do {
        janela = FindWindowExW(nullptr, janela, kClasseDaJanela, nullptr);
    } while (janela != nullptr && GetPropW(janela, nome.c_str()) == nullptr);
    return janela;
}

}  // namespace zu::launcher

#include "app/instancia_unica.h"

namespace zu::launcher {
namespace {

constexpr DWORD kEsperaPelaAnterior = 15'000;  // ms

bool Obtido(DWORD espera) {
    return espera == WAIT_OBJECT_0 || espera == WAIT_ABANDONED;
}

}  // namespace

InstanciaUnica::InstanciaUnica(const std::filesystem::path& pastaJogo, bool reaberto, bool captura)
    : mutex_(CreateMutexW(nullptr, FALSE, NomeDaInstancia(pastaJogo).c_str())) {
    const bool existia = GetLastError() == ERROR_ALREADY_EXISTS;
    // Without a mutex the run goes on unprotected: better than no launcher at all.
    if (!mutex_) return;
    if (!existia || captura) {
        possuida_ = Obtido(WaitForSingleObject(mutex_.Valor(), 0));
        return;
    }
    possuida_ = reaberto && Obtido(WaitForSingleObject(mutex_.Valor(), kEsperaPelaAnterior));
    outra_ = !possuida_;
}

InstanciaUnica::~InstanciaUnica() {
    if (possuida_) ReleaseMutex(mutex_.Valor());
}

void ChamarOutraInstancia() {
    const HWND janela = FindWindowW(kClasseDaJanela, nullptr);
    if (janela == nullptr) return;
    // The player has just started this process, so it may hand on the right to come to the front.
    DWORD processo = 0;
    GetWindowThreadProcessId(janela, &processo);
    AllowSetForegroundWindow(processo);
    PostMessageW(janela, MensagemAbrirInstancia, 0, 0);
}

}  // namespace zu::launcher

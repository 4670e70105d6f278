#include "ui/janelas/barra_de_tarefas.h"

#include <utility>

namespace zu::launcher {
namespace {

constexpr ULONGLONG kExecucaoLonga = 10'000;  // ms
constexpr int kTudo = 100;

bool DeOutroPrograma(HWND janela) {
    DWORD processo = 0;
    GetWindowThreadProcessId(janela, &processo);
    return processo != GetCurrentProcessId();
}

}  // namespace

SinalDaTarefa SinalDe(StatusUpdate status, bool atualizando, int porcento) {
    switch (status) {
        case StatusUpdate::kVerificando:
        case StatusUpdate::kBaixando:
        case StatusUpdate::kAplicando:
            return atualizando ? SinalDaTarefa{TBPF_NORMAL, porcento} : SinalDaTarefa{};
        case StatusUpdate::kJogoAberto:
            return {TBPF_PAUSED, kTudo};
        case StatusUpdate::kErro:
            return {TBPF_ERROR, kTudo};
        default:
            return {};
    }
}

void BarraDeTarefas::Mostrar(HWND janela, const SinalDaTarefa& sinal) {
    if (sinal == mostrado_) return;
    if (!std::exchange(procurada_, true) &&
        SUCCEEDED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                   reinterpret_cast<void**>(barra_.Receber()))) &&
        FAILED(barra_.Valor()->HrInit())) {
        barra_ = {};
    }
    if (!barra_) return;
    mostrado_ = sinal;
    barra_.Valor()->SetProgressState(janela, sinal.modo);
    if (sinal.modo != TBPF_NOPROGRESS) {
        barra_.Valor()->SetProgressValue(janela, static_cast<ULONGLONG>(sinal.porcento), kTudo);
    }
}

void BarraDeTarefas::Acompanhar(HWND janela, bool atualizando) {
    const bool antes = std::exchange(atualizando_, atualizando);
    if (atualizando && !antes) inicio_ = GetTickCount64();
    if (atualizando || !antes || GetTickCount64() - inicio_ < kExecucaoLonga) return;
    if (!DeOutroPrograma(GetForegroundWindow())) return;
    FLASHWINFO piscar{.cbSize = sizeof piscar, .hwnd = janela, .dwFlags = FLASHW_TRAY | FLASHW_TIMERNOFG};
    FlashWindowEx(&piscar);
}

}  // namespace zu::launcher

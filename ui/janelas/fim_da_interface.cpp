#include "ui/janelas/fim_da_interface.h"

#include <windows.h>

#include <utility>

#include "app/controlador.h"
#include "app/instancia_unica.h"
#include "core/config.h"
#include "ui/janelas/estado_interface.h"

namespace zu::launcher {
namespace {

constexpr int kCodigoDaSessao = 0;

BOOL CALLBACK FecharCaixaDeMensagem(HWND janela, LPARAM) {
    constexpr ATOM kClasseDosDialogos = 32770;
    if (GetClassLongPtrW(janela, GCW_ATOM) == kClasseDosDialogos) PostMessageW(janela, WM_CLOSE, 0, 0);
    return TRUE;
}

// Windows ends a drag at WM_CANCELMODE, Wine only at a key. One that comes too late must not be taken for the player's:
// our windows leave out what repeats.
void SoltarArrasto() {
    GUITHREADINFO info{.cbSize = sizeof info};
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &info) || (info.flags & GUI_INMOVESIZE) == 0) return;
    SendMessageW(info.hwndMoveSize, WM_CANCELMODE, 0, 0);
    PostMessageW(info.hwndMoveSize, WM_KEYDOWN, VK_RETURN, LPARAM{KF_REPEAT} << 16);
}

// The system's loops know nothing of `quit`, and what they show does not hide with its window.
void SairDosLacosDoSistema() {
    EndMenu();
    SoltarArrasto();
    EnumThreadWindows(GetCurrentThreadId(), FecharCaixaDeMensagem, 0);
}

}  // namespace

void MostrarLauncher(bool visivel) {
    const EstadoInterface& ui = ObterInterface();
    if (visivel && ui.fechamento == Fechamento::kAdiado) return;
    if (!visivel) SairDosLacosDoSistema();
    for (const HWND janela : {ui.principal, ui.opcoes, ui.requisitos, ui.diagnostico}) {
        if (janela == nullptr) continue;
        const int mostrar = ModoCaptura() ? SW_SHOWNOACTIVATE : IsIconic(janela) ? SW_RESTORE : SW_SHOW;
        ShowWindow(janela, visivel ? mostrar : SW_HIDE);
    }
    // A message box over the topmost window is in front of it.
    if (visivel && !ModoCaptura()) SetForegroundWindow(GetLastActivePopup(JanelaDaFrente()));
}

void AtenderOutraInstancia() {
    EstadoInterface& ui = ObterInterface();
    if (ui.fechamento == Fechamento::kAdiado) ui.fechamento = Fechamento::kRetirado;
    MostrarLauncher(true);
}

void PedirFim() {
    EstadoInterface& ui = ObterInterface();
    ui.quit = true;
    // Another start from here on is to wait for the end, not to wake a window that goes.
    RecolherInstancia(ui.principal, ObterConfig().pastaJogo);
    SairDosLacosDoSistema();
    PostMessageW(ui.principal, WM_NULL, 0, 0);
}

void CancelarEPedirFim() {
    ObterControlador().Cancelar();
    PedirFim();
}

void FecharLauncher() {
    EstadoInterface& ui = ObterInterface();
    if (ui.fechamento != Fechamento::kNenhum || !ObterControlador().AbrindoJogo()) {
        CancelarEPedirFim();
        return;
    }
    ui.fechamento = Fechamento::kAdiado;
    ObterControlador().Cancelar();
    MostrarLauncher(false);
}

void ConcluirFechamento() {
    if (ObterControlador().AbrindoJogo()) return;
    if (std::exchange(ObterInterface().fechamento, Fechamento::kNenhum) == Fechamento::kAdiado) CancelarEPedirFim();
}

void EncerrarComASessao() {
    CancelarEPedirFim();
    ObterControlador().Encerrar(kCodigoDaSessao);
}

}  // namespace zu::launcher

// A window that stands over the one it was opened from: the way it looks, opens and closes. Each such window derives
// from `JanelaModal`. UI thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <span>

#include "ui/controles/controle.h"
#include "ui/janelas/janela.h"
#include "ui/janelas/pintor_modal.h"

namespace zu::launcher {

// What a kind of window is.
struct MoldeModal {
    const wchar_t* classe;
    const wchar_t* titulo;
    DWORD estendido;                // extended style
    HWND EstadoInterface::*janela;  // where its handle stands while it is open
    HWND EstadoInterface::*dona;    // the window under it, disabled meanwhile
    int principal;                  // the button that Enter presses, where there is one; 0: none
};

struct BotaoDaFila {
    TipoControle kind;
    int id;
    const wchar_t* texto;
};

class JanelaModal : public Janela {
 public:
    JanelaModal(const MoldeModal& molde, SIZE tamanho) : Janela(molde.janela, tamanho, false), molde_(molde) {}

    // Makes the window with its controls, disables the one under it and shows it; returns at once. `lugar` is on the
    // screen. Null, and a line in the log, when there is none; the window that is open already, when there is one.
    static HWND Abrir(std::unique_ptr<JanelaModal> registro, POINT lugar);

 protected:
    // Makes the buttons in a row in the middle of the window's foot, each as wide as its caption asks for. Returns
    // where the row begins and ends; nothing when a button could not be made.
    [[nodiscard]] std::optional<Trecho> CriarFila(std::span<const BotaoDaFila> botoes) const;
    // Asks for the end: `RodarModal` returns.
    void Fechar();

    // All but the border.
    virtual void PintarConteudo(HDC dc, const AparenciaMoldura& moldura) const = 0;
    bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) override;

 private:
    friend void RodarModal(HWND janela);
    friend void FecharModal(HWND janela);

    void Pintar(HDC dc) const final;
    void AoConfirmar() final;
    void AoFechar() final;

    MoldeModal molde_;
    bool aberta_ = true;
};

// Handles messages until the player closes the window or the interface ends, then `FecharModal`. Does nothing for null.
void RodarModal(HWND janela);

// Enables the window under it again and destroys it.
void FecharModal(HWND janela);

// The main window's place on the screen, and the work area of the monitor that it is on.
RECT LugarDaJanelaPrincipal();
RECT AreaDeTrabalho();
// Moved into the work area; not in a capture run, which keeps its windows out of sight.
POINT NaAreaDeTrabalho(POINT lugar, SIZE tamanho);

}  // namespace zu::launcher

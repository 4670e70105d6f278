// A window that stands over the one it was opened from: frame, painting, keys, and the way it opens and closes. Each
// such window derives from `JanelaModal`; the record lives and dies with its window. UI thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <span>

#include "ui/controles/controle.h"
#include "ui/desenho/moldura.h"
#include "ui/janelas/estado_interface.h"
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

// Once for each class, before the first window.
void RegistrarModal(HINSTANCE modulo, const wchar_t* classe);

struct BotaoDaFila {
    TipoControle kind;
    int id;
    const wchar_t* texto;
};

class JanelaModal {
 public:
    JanelaModal(const MoldeModal& molde, SIZE tamanho);
    JanelaModal(const JanelaModal&) = delete;
    JanelaModal& operator=(const JanelaModal&) = delete;
    virtual ~JanelaModal() = default;

    // Makes the window with its controls, disables the one under it and shows it; returns at once. `lugar` is on the
    // screen. Null, and a line in the log, when there is none; the window that is open already, when there is one.
    static HWND Abrir(std::unique_ptr<JanelaModal> registro, POINT lugar);

 protected:
    [[nodiscard]] HWND Janela() const { return janela_; }
    [[nodiscard]] HWND Filho(int id) const { return GetDlgItem(janela_, id); }
    [[nodiscard]] SIZE Medidas() const { return tamanho_; }
    // Makes the buttons in a row in the middle of the window's foot, each as wide as its caption asks for. Returns
    // where the row begins and ends; nothing when a button could not be made.
    [[nodiscard]] std::optional<Trecho> CriarFila(std::span<const BotaoDaFila> botoes) const;
    // Asks for the end: `RodarModal` returns.
    void Fechar();

    // The window is made and not yet shown: its controls and timers. False when they could not be made.
    virtual bool Montar() = 0;
    virtual void Pintar(HDC dc, const AparenciaMoldura& moldura) const = 0;
    virtual void AoComando(int id) = 0;
    virtual void AoRelogio(UINT_PTR relogio) = 0;
    // Sees every other message before the frame does. True: done with.
    virtual bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam);

 private:
    friend void RegistrarModal(HINSTANCE modulo, const wchar_t* classe);
    friend void RodarModal(HWND janela);
    friend void FecharModal(HWND janela);

    static LRESULT CALLBACK Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam);
    static JanelaModal* De(HWND janela);

    LRESULT Responder(UINT mensagem, WPARAM wParam, LPARAM lParam);
    void PintarTudo(HDC dc) const;
    bool TomarTecla(const MSG& mensagem);

    MoldeModal molde_;
    SIZE tamanho_;
    HWND janela_ = nullptr;
    bool aberta_ = true;
    CaixaDaTira sobre_ = CaixaDaTira::kNenhuma;
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

// What all windows of the launcher have in common: each paints itself into memory, its title strip drags it and lights
// up its boxes; Tab moves through its controls in the order of reading, Enter and Escape mean the same in every one.
// Each kind derives from `Janela`; the record lives and dies with the system's window. UI thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/acessibilidade/acessivel.h"
#include "ui/desenho/moldura.h"
#include "ui/janelas/estado_interface.h"

namespace zu::launcher {

class Janela {
 public:
    // What the system is told of a new window.
    struct Nascimento {
        const wchar_t* classe;
        const wchar_t* titulo;
        DWORD estilo;
        DWORD estendido;
        POINT lugar;  // on the screen
        HWND dona;
    };

    // `propria`: where the window's handle stands while it is open.
    Janela(HWND EstadoInterface::*propria, SIZE tamanho, bool comMinimizar)
        : propria_(propria), tamanho_(tamanho), comMinimizar_(comMinimizar) {}
    Janela(const Janela&) = delete;
    Janela& operator=(const Janela&) = delete;
    virtual ~Janela() = default;

    // Once for each class, before the first window.
    static void Registrar(HINSTANCE modulo, const wchar_t* classe, HICON icone = nullptr);

    // Makes the window with round corners and all that is in it, not yet shown. Null, with the reason in GetLastError,
    // when any of it could not be made.
    static HWND Criar(std::unique_ptr<Janela> registro, const Nascimento& nascimento);

    // Null: it is no window of the launcher, or no longer one.
    static Janela* De(HWND janela);

    // Gives the keyboard to the first control. The window must be shown: it becomes the active one.
    void Focar();

    // What the programs that read the screen aloud hear: the window's name, words about it as a whole, and what it
    // draws itself, numbered from 0 in the order of reading. Controls and the boxes of the title strip are not among
    // these parts.
    [[nodiscard]] std::wstring Titulo() const;
    [[nodiscard]] virtual std::wstring Descricao() const { return {}; }
    [[nodiscard]] virtual int Partes() const { return 0; }
    [[nodiscard]] virtual Elemento Parte(int /*i*/) const { return {}; }
    [[nodiscard]] SIZE Medidas() const { return tamanho_; }
    [[nodiscard]] bool ComMinimizar() const { return comMinimizar_; }

    // For the loops of messages. True: the key was meant for the window as a whole, and it has acted on it.
    static bool TomarTecla(const MSG& mensagem);

 protected:
    [[nodiscard]] HWND Handle() const { return janela_; }
    [[nodiscard]] HWND Filho(int id) const { return GetDlgItem(janela_, id); }
    [[nodiscard]] bool Ativa() const { return GetActiveWindow() == janela_; }
    [[nodiscard]] CaixaDaTira Sobre() const { return sobre_; }

    // The window is made and not yet shown: its controls and timers. False, with the reason in GetLastError.
    virtual bool Montar() = 0;
    virtual void Pintar(HDC dc) const = 0;
    // The same for the screen, where a picture that was kept may stand for what it shows.
    virtual void PintarNaTela(HDC dc) { Pintar(dc); }
    virtual void AoComando(int id) = 0;
    virtual void AoRelogio(UINT_PTR relogio) = 0;
    virtual void AoConfirmar() = 0;  // Enter
    virtual void AoFechar() = 0;     // Escape, the close box, WM_CLOSE
    // Sees every other message before the frame does. True: done with.
    virtual bool Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) = 0;

 private:
    static LRESULT CALLBACK Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam);
    void Nascer(HWND janela);
    LRESULT Responder(UINT mensagem, WPARAM wParam, LPARAM lParam);
    void AoClicarNaTira(CaixaDaTira caixa);
    void AoAcaoPadrao(WPARAM parte);
    bool AoTeclar(const MSG& mensagem);
    void MoverFoco(bool paraTras);
    void GuardarFoco();

    HWND EstadoInterface::*propria_;
    SIZE tamanho_;
    bool comMinimizar_;
    HWND janela_ = nullptr;
    HWND foco_ = nullptr;  // the control that had the keyboard when the window was left
    CaixaDaTira sobre_ = CaixaDaTira::kNenhuma;
};

// The visible child windows in the order of reading.
std::vector<HWND> FilhosEmOrdem(HWND janela);

}  // namespace zu::launcher

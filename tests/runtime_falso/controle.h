// The stand-in for the WebView2 runtime: a DLL with the real one's entry, built into a folder like the real one's, and
// beside the entry this handle for the test that plays the part of the browser. One thread.
#pragma once

#include <windows.h>

namespace zu::launcher::teste {

struct RoteiroDoRuntime {
    bool depois = false;          // completions wait for `Entregar`; otherwise they come inside the call
    const char* falharEm = "";    // a method, "entrada", or the completion "ambiente" or "controlador"
    HRESULT falha = E_FAIL;       // a completion that fails with S_OK brings no object
    bool segundaChamada = false;  // the end of controller or window answers its creation once more, with a failure
};

class Controle {
 public:
    // Forgets what was noted; to be called when nothing is alive.
    virtual void Comecar(const RoteiroDoRuntime& roteiro) = 0;
    // Delivers the completion that waits. False when none does.
    virtual bool Entregar() = 0;
    // The window goes before the controller has been closed.
    virtual void DestruirJanela() = 0;

    // The browser's events; nothing happens without a view that listens. The answers: cancelled, handled.
    virtual bool NavigationStarting(const wchar_t* uri, bool doUsuario, bool redirecionada) = 0;
    virtual void NavigationCompleted() = 0;
    virtual bool NewWindowRequested(const wchar_t* uri) = 0;
    virtual void ProcessFailed(int tipo) = 0;

    // The calls in their order with their arguments, a line each.
    [[nodiscard]] virtual const char* Chamadas() const = 0;
    // Objects of the runtime that somebody still refers to, and callbacks that had references left when the runtime
    // let go of them.
    [[nodiscard]] virtual int Vivos() const = 0;
    // Calls on closed or released objects, references taken below zero, controllers released without being closed.
    [[nodiscard]] virtual int Faltas() const = 0;

 protected:
    ~Controle() = default;
};

using ObterControle = Controle* (*)();  // exported as "ControleDoRuntime"

}  // namespace zu::launcher::teste

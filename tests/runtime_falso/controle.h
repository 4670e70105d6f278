// The stand-in for the WebView2 runtime: a DLL with the real one's entry, built into a folder like the real one's, and
// beside the entry this handle for the test that plays the part of the browser. One thread.
#pragma once

#include <windows.h>

#include <cstdint>

namespace zu::launcher::teste {

struct RoteiroDoRuntime {
    const char* falharEm = "";  // a method, "entrada", or the completion "ambiente", "controlador" or "script"
    HRESULT falha = E_FAIL;     // a completion that fails with S_OK brings no object
};

// By the slot that takes the callback for it.
enum class Ocorrencia { kNavigationStarting = 7, kNavigationCompleted = 15, kProcessFailed = 25, kNewWindow = 44 };

struct EventoDoRuntime {
    const wchar_t* uri = L"";
    bool doUsuario = false;
    bool redirecionada = false;
    std::int32_t tipo = 0;  // of a process's end
};

class NavegadorFalso {
 public:
    // Forgets what was noted; to be called when nothing is alive.
    virtual void Comecar(const RoteiroDoRuntime& roteiro) = 0;
    // Delivers so many completions, if they come to wait, which the thread's message loop does otherwise.
    virtual void Entregar(int quantas = 9) = 0;
    // The window goes before the controller has been closed.
    virtual void DestruirJanela() = 0;
    // Nothing happens without a view that listens. Whether the view has cancelled or handled it.
    virtual bool Ocorrer(Ocorrencia qual, const EventoDoRuntime& evento = {}) = 0;

    // The calls in their order with their arguments, a line each.
    [[nodiscard]] virtual const char* Chamadas() const = 0;
    // Objects of the runtime that somebody still refers to, and callbacks that had references left when the runtime
    // let go of them. Calls of a slot that the launcher has no use for, calls on closed or released objects,
    // controllers released without being closed, callbacks that do not answer to their interface id.
    [[nodiscard]] virtual int Faltas() const = 0;

 protected:
    ~NavegadorFalso() = default;
};

using ObterNavegador = NavegadorFalso* (*)();  // exported as "ControleDoRuntime"

}  // namespace zu::launcher::teste

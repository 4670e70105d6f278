// The few interfaces of the WebView2 runtime that the launcher speaks, declared from their published binary form, and
// the one class behind every callback handed to it.
//
// Everything lives on the thread that started the runtime, which must have a message loop. Every method answers an
// HRESULT. What comes out through a pointer to a pointer is owned by the caller; what a callback receives is borrowed.
#pragma once

#include <windows.h>
// after windows.h
#include <eventtoken.h>
#include <unknwn.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/excecao.h"
#include "core/log.h"
#include "ui/com.h"

namespace zu::launcher {

// A GUID from its usual text, without braces. Anything else does not compile.
consteval GUID Guid(std::string_view texto) {
    constexpr std::size_t kTamanho = 36;
    if (texto.size() != kTamanho) throw "a GUID has 36 characters";
    std::uint8_t bytes[16]{};
    std::size_t digitos = 0;
    for (std::size_t i = 0; i < kTamanho; ++i) {
        const char c = texto[i];
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (c != '-') throw "a dash is missing";
            continue;
        }
        const int valor = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : throw "not a digit";
        bytes[digitos / 2] = static_cast<std::uint8_t>(bytes[digitos / 2] << 4 | valor);
        ++digitos;
    }
    GUID guid{};
    guid.Data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                 static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    for (std::size_t i = 0; i < 8; ++i)
        guid.Data4[i] = bytes[8 + i];
    return guid;
}

// A method at its place in the virtual table, and a place that nobody here uses. The number is the published one; the
// compiler holds it against the place the line really has. Methods have a body so that a stand-in may leave them out.
#define ZU_SLOT(numero, ...)                                \
    static_assert(__COUNTER__ - kPrimeiro + 3 == (numero)); \
    virtual HRESULT STDMETHODCALLTYPE __VA_ARGS__ {         \
        return E_NOTIMPL;                                   \
    }
#define ZU_VAGO(numero) ZU_SLOT(numero, Vago##numero())
// Opens a table whose own methods follow the three of IUnknown.
#define ZU_TABELA static constexpr int kPrimeiro = __COUNTER__ + 1;

// clang-format off
struct ICoreWebView2Settings : IUnknown {
    ZU_TABELA
    ZU_VAGO(3) ZU_VAGO(4) ZU_VAGO(5) ZU_VAGO(6) ZU_VAGO(7) ZU_VAGO(8) ZU_VAGO(9)
    ZU_SLOT(10, put_IsStatusBarEnabled(BOOL))
    ZU_VAGO(11)
    ZU_SLOT(12, put_AreDevToolsEnabled(BOOL))
    ZU_VAGO(13)
    ZU_SLOT(14, put_AreDefaultContextMenusEnabled(BOOL))
    ZU_VAGO(15) ZU_VAGO(16) ZU_VAGO(17)
    ZU_SLOT(18, put_IsZoomControlEnabled(BOOL))
    ZU_VAGO(19) ZU_VAGO(20)
};

struct ICoreWebView2NavigationStartingEventArgs : IUnknown {
    ZU_TABELA
    ZU_SLOT(3, get_Uri(LPWSTR*))  // freed with CoTaskMemFree
    ZU_SLOT(4, get_IsUserInitiated(BOOL*))
    ZU_SLOT(5, get_IsRedirected(BOOL*))
    ZU_VAGO(6) ZU_VAGO(7)
    ZU_SLOT(8, put_Cancel(BOOL))
    ZU_VAGO(9)
};

struct ICoreWebView2NewWindowRequestedEventArgs : IUnknown {
    ZU_TABELA
    ZU_SLOT(3, get_Uri(LPWSTR*))  // freed with CoTaskMemFree
    ZU_VAGO(4) ZU_VAGO(5)
    ZU_SLOT(6, put_Handled(BOOL))
    ZU_VAGO(7) ZU_VAGO(8) ZU_VAGO(9) ZU_VAGO(10)
};

enum class TipoDeQueda : std::int32_t { kNavegador = 0, kPagina = 1 };  // the rest hurts only a part of the view

struct ICoreWebView2ProcessFailedEventArgs : IUnknown {
    ZU_TABELA
    ZU_SLOT(3, get_ProcessFailedKind(TipoDeQueda*))
};

struct ICoreWebView2;
struct ICoreWebView2Controller;
struct ICoreWebView2Environment;
struct ICoreWebView2NavigationCompletedEventArgs;

// An interface of one method that the runtime calls back.
template <class... Argumentos>
struct Retorno : IUnknown {
    using Assinatura = void(Argumentos...);
    virtual HRESULT STDMETHODCALLTYPE Invoke(Argumentos...) = 0;
};

struct ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler : Retorno<HRESULT, ICoreWebView2Environment*> {
    static constexpr IID kIid = Guid("4e8a3389-c9d8-4bd2-b6b5-124fee6cc14d");
};
struct ICoreWebView2CreateCoreWebView2ControllerCompletedHandler : Retorno<HRESULT, ICoreWebView2Controller*> {
    static constexpr IID kIid = Guid("6c4819f3-c9b7-4260-8127-c9f5bde7f68c");
};
struct ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler : Retorno<HRESULT, LPCWSTR> {
    static constexpr IID kIid = Guid("b99369f3-9b11-47b5-bc6f-8e7895fcea17");
};
struct ICoreWebView2NavigationStartingEventHandler
    : Retorno<ICoreWebView2*, ICoreWebView2NavigationStartingEventArgs*> {
    static constexpr IID kIid = Guid("9adbe429-f36d-432b-9ddc-f8881fbd76e3");
};
struct ICoreWebView2NavigationCompletedEventHandler
    : Retorno<ICoreWebView2*, ICoreWebView2NavigationCompletedEventArgs*> {
    static constexpr IID kIid = Guid("d33a35bf-1c49-4f98-93ab-006e0533fe1c");
};
struct ICoreWebView2NewWindowRequestedEventHandler
    : Retorno<ICoreWebView2*, ICoreWebView2NewWindowRequestedEventArgs*> {
    static constexpr IID kIid = Guid("d4c185fe-c81c-4989-97af-2d3fa7ab5651");
};
struct ICoreWebView2ProcessFailedEventHandler : Retorno<ICoreWebView2*, ICoreWebView2ProcessFailedEventArgs*> {
    static constexpr IID kIid = Guid("79e0aea4-990b-42d9-aa1d-0fcc2e5bc7f1");
};

struct ICoreWebView2 : IUnknown {
    ZU_TABELA
    ZU_SLOT(3, get_Settings(ICoreWebView2Settings**))
    ZU_VAGO(4)
    ZU_SLOT(5, Navigate(LPCWSTR))  // returns before the navigation starts
    ZU_VAGO(6)
    ZU_SLOT(7, add_NavigationStarting(ICoreWebView2NavigationStartingEventHandler*, EventRegistrationToken*))
    ZU_VAGO(8) ZU_VAGO(9) ZU_VAGO(10) ZU_VAGO(11) ZU_VAGO(12) ZU_VAGO(13) ZU_VAGO(14)
    ZU_SLOT(15, add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler*, EventRegistrationToken*))
    ZU_VAGO(16) ZU_VAGO(17) ZU_VAGO(18) ZU_VAGO(19) ZU_VAGO(20) ZU_VAGO(21) ZU_VAGO(22) ZU_VAGO(23) ZU_VAGO(24)
    ZU_SLOT(25, add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler*, EventRegistrationToken*))
    ZU_VAGO(26)
    ZU_SLOT(27, AddScriptToExecuteOnDocumentCreated(LPCWSTR,
                                                    ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler*))
    ZU_VAGO(28) ZU_VAGO(29) ZU_VAGO(30) ZU_VAGO(31) ZU_VAGO(32) ZU_VAGO(33) ZU_VAGO(34) ZU_VAGO(35)
    ZU_VAGO(36) ZU_VAGO(37) ZU_VAGO(38) ZU_VAGO(39) ZU_VAGO(40) ZU_VAGO(41) ZU_VAGO(42) ZU_VAGO(43)
    ZU_SLOT(44, add_NewWindowRequested(ICoreWebView2NewWindowRequestedEventHandler*, EventRegistrationToken*))
    // up to slot 60, all unused
};

struct ICoreWebView2Controller : IUnknown {
    ZU_TABELA
    ZU_VAGO(3)
    ZU_SLOT(4, put_IsVisible(BOOL))
    ZU_VAGO(5)
    ZU_SLOT(6, put_Bounds(RECT))  // in the parent's client coordinates
    ZU_VAGO(7) ZU_VAGO(8) ZU_VAGO(9) ZU_VAGO(10) ZU_VAGO(11) ZU_VAGO(12) ZU_VAGO(13) ZU_VAGO(14)
    ZU_VAGO(15) ZU_VAGO(16) ZU_VAGO(17) ZU_VAGO(18) ZU_VAGO(19) ZU_VAGO(20) ZU_VAGO(21) ZU_VAGO(22)
    ZU_SLOT(23, NotifyParentWindowPositionChanged())
    ZU_SLOT(24, Close())  // lets go of every handler, and may dispatch messages meanwhile
    ZU_SLOT(25, get_CoreWebView2(ICoreWebView2**))
};

struct ICoreWebView2Environment : IUnknown {
    ZU_TABELA
    ZU_SLOT(3, CreateCoreWebView2Controller(HWND, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler*))
    ZU_VAGO(4) ZU_VAGO(5) ZU_VAGO(6) ZU_VAGO(7)
};
// clang-format on

#undef ZU_TABELA
#undef ZU_VAGO
#undef ZU_SLOT

// A token is passed as one register and a rectangle through a pointer to a copy; both follow from these sizes.
static_assert(sizeof(EventRegistrationToken) == 8 && sizeof(RECT) == 16 && sizeof(BOOL) == 4);

// The entry that the runtime's DLL exports. `instalado` is true and `tipo` 0 for the installed runtime; `opcoes` may be
// null. The completion comes inside the call or later, and reports failures that the call itself did not.
using EntradaDoRuntime = HRESULT(STDMETHODCALLTYPE*)(bool instalado, std::int32_t tipo, PCWSTR pastaDeDados,
                                                     IUnknown* opcoes,
                                                     ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler*);

// A callback object around a function. Lives as long as somebody refers to it, which may be longer than whoever made
// it: the function must not rely on more than it holds.
template <class Interface, class Assinatura = typename Interface::Assinatura>
class Tratador;

template <class Interface, class... Argumentos>
class Tratador<Interface, void(Argumentos...)> final : public Interface {
 public:
    explicit Tratador(std::function<void(Argumentos...)> funcao) : funcao_(std::move(funcao)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** saida) override {
        if (saida == nullptr) return E_POINTER;
        *saida = iid == Interface::kIid || iid == IID_IUnknown ? static_cast<Interface*>(this) : nullptr;
        if (*saida == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++referencias_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG restam = --referencias_;
        if (restam == 0) delete this;
        return restam;
    }
    HRESULT STDMETHODCALLTYPE Invoke(Argumentos... argumentos) override {
        try {
            funcao_(argumentos...);
            return S_OK;
        } catch (const std::exception& falha) {
            LogLinha("WebView2: {}", TextoDaExcecao(falha));
            return E_FAIL;
        }
    }

 private:
    ~Tratador() = default;

    std::atomic<ULONG> referencias_ = 1;
    std::function<void(Argumentos...)> funcao_;
};

template <class Interface>
Com<Interface> CriarTratador(std::function<typename Interface::Assinatura> funcao) {
    return Com<Interface>(new Tratador<Interface>(std::move(funcao)));
}

}  // namespace zu::launcher

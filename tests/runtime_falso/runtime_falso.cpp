// Told by the published slots and interface ids alone. With the launcher's own declarations a wrong number there would
// be the same wrong number here.
#include "tests/runtime_falso/controle.h"

// after windows.h
#include <eventtoken.h>
#include <objbase.h>

#include <cstdint>
#include <cwchar>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#define METODO virtual HRESULT STDMETHODCALLTYPE
// A slot that the launcher has no use for.
#define V(slot)            \
    METODO Vago##slot() {  \
        return Vago(slot); \
    }

namespace zu::launcher::teste {

// A callback of the launcher. In no unnamed namespace, where the compiler would know that nobody implements it.
template <class... Argumentos>
struct Retorno : IUnknown {
    METODO Invoke(Argumentos...) = 0;  // slot 3
};

namespace {

struct Visao;

struct Mesa {
    RoteiroDoRuntime roteiro;
    std::string chamadas;
    int vivos = 0;
    int faltas = 0;
    std::function<void()> pendente;
    std::function<void()> segunda;
    UINT_PTR relogio = 0;
    Visao* visao = nullptr;  // the one that is open
};
Mesa mesa;

// Notes the call and says how the script wants it to go.
HRESULT Anotar(const std::string& metodo, const std::string& argumentos = {}) {
    mesa.chamadas += metodo + (argumentos.empty() ? "" : " " + argumentos) + "\n";
    return metodo == mesa.roteiro.falharEm ? mesa.roteiro.falha : S_OK;
}

std::string Estreito(const std::wstring& texto) {
    return {texto.begin(), texto.end()};
}

// Never deleted: a call on an object that is gone is then a fault that gets noted, not a crash.
struct Objeto : IUnknown {
    Objeto() { ++mesa.vivos; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return Vago(0); }
    ULONG STDMETHODCALLTYPE AddRef() override { return Contar(1); }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG restam = Contar(-1);
        if (restam == 0) --mesa.vivos, aoAcabar();
        return restam;
    }

    ULONG Contar(int mais) {
        mesa.faltas += referencias == 0 ? 1 : 0;
        return static_cast<ULONG>(referencias += mais);
    }
    HRESULT Chamada(const char* metodo, const std::string& argumentos = {}) const {
        mesa.faltas += referencias == 0 || fechado ? 1 : 0;
        return Anotar(metodo, argumentos);
    }
    HRESULT Por(const char* metodo, BOOL valor) const { return Chamada(metodo, std::to_string(valor)); }
    static HRESULT Vago(int slot) {
        ++mesa.faltas;
        return Anotar("slot " + std::to_string(slot)) | E_NOTIMPL;
    }

    int referencias = 1;
    bool fechado = false;
    std::function<void()> aoAcabar = [] {};
};

using Pronto = Retorno<HRESULT, IUnknown*>;
using Ouvinte = Retorno<IUnknown*, IUnknown*>;

// Holds a callback as the runtime does, by its own interface; nobody else may hold it by the time it is dropped. Inside
// the call that brought it, the caller still does.
template <class Tratador>
std::shared_ptr<Tratador> Guardar(Tratador* tratador, const wchar_t* proprio, bool dentroDaChamada = false) {
    if (dentroDaChamada) return {tratador, [](Tratador*) {}};
    IID iid{};
    void* saida = tratador;
    IIDFromString(L"{0000000c-0000-0000-c000-000000000046}", &iid);
    mesa.faltas += tratador->QueryInterface(iid, &saida) == E_NOINTERFACE && saida == nullptr ? 0 : 1;
    IIDFromString(proprio, &iid);
    if (tratador->QueryInterface(iid, &saida) != S_OK) ++mesa.faltas, tratador->AddRef();
    return {tratador, [](Tratador* guardado) { mesa.vivos += guardado->Release() == 0 ? 0 : 1; }};
}

// clang-format off
struct Configuracoes final : Objeto {
    V(3) V(4) V(5) V(6) V(7) V(8) V(9)
    METODO Slot10(BOOL v) { return Por("put_IsStatusBarEnabled", v); }
    V(11)
    METODO Slot12(BOOL v) { return Por("put_AreDevToolsEnabled", v); }
    V(13)
    METODO Slot14(BOOL v) { return Por("put_AreDefaultContextMenusEnabled", v); }
    V(15) V(16) V(17)
    METODO Slot18(BOOL v) { return Por("put_IsZoomControlEnabled", v); }
    V(19) V(20)
};

struct Visao final : Objeto {
    METODO Slot3(IUnknown** saida) {
        const HRESULT resultado = Chamada("get_Settings");
        *saida = FAILED(resultado) ? nullptr : new Configuracoes;
        return resultado;
    }
    V(4)
    METODO Slot5(LPCWSTR uri) { return Chamada("Navigate", Estreito(uri)); }
    V(6)
    METODO Slot7(Ouvinte* t, EventRegistrationToken* token) {
        return Ouvir(7, "add_NavigationStarting", L"{9adbe429-f36d-432b-9ddc-f8881fbd76e3}", t, token);
    }
    V(8) V(9) V(10) V(11) V(12) V(13) V(14)
    METODO Slot15(Ouvinte* t, EventRegistrationToken* token) {
        return Ouvir(15, "add_NavigationCompleted", L"{d33a35bf-1c49-4f98-93ab-006e0533fe1c}", t, token);
    }
    V(16) V(17) V(18) V(19) V(20) V(21) V(22) V(23) V(24)
    METODO Slot25(Ouvinte* t, EventRegistrationToken* token) {
        return Ouvir(25, "add_ProcessFailed", L"{79e0aea4-990b-42d9-aa1d-0fcc2e5bc7f1}", t, token);
    }
    V(26)
    METODO Slot27(LPCWSTR script, IUnknown*) { return Chamada("AddScriptToExecuteOnDocumentCreated", Estreito(script)); }
    V(28) V(29) V(30) V(31) V(32) V(33) V(34) V(35) V(36) V(37) V(38) V(39) V(40) V(41) V(42) V(43)
    METODO Slot44(Ouvinte* t, EventRegistrationToken* token) {
        return Ouvir(44, "add_NewWindowRequested", L"{d4c185fe-c81c-4989-97af-2d3fa7ab5651}", t, token);
    }

    HRESULT Ouvir(int slot, const char* metodo, const wchar_t* iid, Ouvinte* t, EventRegistrationToken* token) {
        const HRESULT resultado = Chamada(metodo);
        if (SUCCEEDED(resultado)) ouvintes[slot] = Guardar(t, iid);
        token->value = slot;
        return resultado;
    }
    std::map<int, std::shared_ptr<Ouvinte>> ouvintes;  // by the slot that took them
};

// The end of controller or window answers the controller's creation once more, with a failure.
void ResponderOutraVez() {
    if (const auto segunda = std::exchange(mesa.segunda, nullptr)) segunda();
}

struct Controlador final : Objeto {
    V(3)
    METODO Slot4(BOOL v) { return Por("put_IsVisible", v); }
    V(5)
    METODO Slot6(RECT r) {
        std::string lados;
        for (const LONG lado : {r.left, r.top, r.right, r.bottom}) lados += std::to_string(lado) + ",";
        return Chamada("put_Bounds", lados);
    }
    V(7) V(8) V(9) V(10) V(11) V(12) V(13) V(14) V(15) V(16) V(17) V(18) V(19) V(20) V(21) V(22)
    METODO Slot23() { return Chamada("NotifyParentWindowPositionChanged"); }
    METODO Slot24() {
        const HRESULT resultado = Chamada("Close");
        fechado = visao->fechado = true;
        mesa.visao = nullptr;
        visao->ouvintes.clear();
        ResponderOutraVez();
        return resultado;
    }
    METODO Slot25(IUnknown** saida) {
        const HRESULT resultado = Chamada("get_CoreWebView2");
        *saida = FAILED(resultado) ? nullptr : visao;
        if (SUCCEEDED(resultado)) visao->AddRef();
        return resultado;
    }

    Controlador() {
        mesa.visao = visao;
        aoAcabar = [this] { mesa.faltas += fechado ? 0 : 1, visao->Release(); };
    }
    Visao* visao = new Visao;
};

bool EntregarPendente() {
    KillTimer(nullptr, mesa.relogio);
    const auto conclusao = std::exchange(mesa.pendente, nullptr);
    if (conclusao) conclusao();
    return conclusao != nullptr;
}

// Reports a completion as the script wants it, a good one with a new object.
void Concluir(const char* etapa, const std::shared_ptr<Pronto>& pronto, const std::function<IUnknown*()>& criar) {
    mesa.pendente = [etapa, pronto, criar] {
        const bool falha = Anotar(etapa) != S_OK || etapa == std::string(mesa.roteiro.falharEm);
        IUnknown* const objeto = falha ? nullptr : criar();
        pronto->Invoke(falha ? mesa.roteiro.falha : S_OK, objeto);
        if (objeto != nullptr) objeto->Release();
    };
    if (mesa.roteiro.dentro) {
        EntregarPendente();
    } else {
        mesa.relogio = SetTimer(nullptr, 0, 0, [](HWND, UINT, UINT_PTR, DWORD) { EntregarPendente(); });
    }
}

struct Ambiente final : Objeto {
    METODO Slot3(HWND janela, Pronto* tratador) {
        const HRESULT resultado = Chamada("CreateCoreWebView2Controller", IsWindow(janela) ? "" : "?");
        if (FAILED(resultado)) return resultado;
        const bool dentro = mesa.roteiro.dentro;
        const auto pronto = Guardar(tratador, L"{6c4819f3-c9b7-4260-8127-c9f5bde7f68c}", dentro);
        Concluir("controlador", pronto, [pronto, dentro]() -> IUnknown* {
            if (!dentro) mesa.segunda = [pronto] { pronto->Invoke(E_ABORT, nullptr); };
            return new Controlador;
        });
        return resultado;
    }
    V(4) V(5) V(6) V(7)
};

// What a callback is shown of an event.
struct Mostrado : Objeto, EventoDoRuntime {
    explicit Mostrado(const EventoDoRuntime& evento) : EventoDoRuntime(evento) {}
    HRESULT Uri(LPWSTR* saida) const {
        *saida = static_cast<LPWSTR>(CoTaskMemAlloc((std::wcslen(uri) + 1) * sizeof(wchar_t)));
        return std::wcscpy(*saida, uri), S_OK;
    }
    bool resposta = false;
};

struct NavegacaoComeca final : Mostrado {
    using Mostrado::Mostrado;
    METODO Slot3(LPWSTR* saida) { return Uri(saida); }
    METODO Slot4(BOOL* saida) { return *saida = doUsuario, S_OK; }
    METODO Slot5(BOOL* saida) { return *saida = redirecionada, S_OK; }
    V(6) V(7)
    METODO Slot8(BOOL valor) { return resposta = valor != FALSE, S_OK; }
};

struct ProcessoCai final : Mostrado {
    using Mostrado::Mostrado;
    METODO Slot3(std::int32_t* saida) { return *saida = tipo, S_OK; }
};

struct JanelaPedida final : Mostrado {
    using Mostrado::Mostrado;
    METODO Slot3(LPWSTR* saida) { return Uri(saida); }
    V(4) V(5)
    METODO Slot6(BOOL valor) { return resposta = valor != FALSE, S_OK; }
    V(7) V(8) V(9) V(10)
};
// clang-format on

template <class Evento>
bool Mostrar(int slot, const EventoDoRuntime& evento) {
    auto* const mostrado = new Evento(evento);
    // Held meanwhile, since it may close the view.
    if (const auto ouvinte = mesa.visao ? mesa.visao->ouvintes[slot] : nullptr) ouvinte->Invoke(mesa.visao, mostrado);
    mostrado->Release();
    return mostrado->resposta;
}

class NavegadorDaMesa final : public NavegadorFalso {
 public:
    void Comecar(const RoteiroDoRuntime& roteiro) override { mesa = {.roteiro = roteiro}; }
    bool Entregar() override { return EntregarPendente(); }
    void DestruirJanela() override { ResponderOutraVez(); }
    bool NavigationStarting(const EventoDoRuntime& evento) override { return Mostrar<NavegacaoComeca>(7, evento); }
    void NavigationCompleted() override { Mostrar<Mostrado>(15, {}); }
    void ProcessFailed(const EventoDoRuntime& evento) override { Mostrar<ProcessoCai>(25, evento); }
    bool NewWindowRequested(const EventoDoRuntime& evento) override { return Mostrar<JanelaPedida>(44, evento); }
    [[nodiscard]] const char* Chamadas() const override { return mesa.chamadas.c_str(); }
    [[nodiscard]] int Vivos() const override { return mesa.vivos; }
    [[nodiscard]] int Faltas() const override { return mesa.faltas; }
};

}  // namespace
}  // namespace zu::launcher::teste

namespace falso = zu::launcher::teste;

extern "C" __declspec(dllexport) falso::NavegadorFalso* ControleDoRuntime() {
    static falso::NavegadorDaMesa controle;
    return &controle;
}

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE
    CreateWebViewEnvironmentWithOptionsInternal(bool instalado, std::int32_t tipo, PCWSTR pastaDeDados,
                                                IUnknown* opcoes, falso::Pronto* tratador) {
    const bool certo = instalado && tipo == 0 && opcoes == nullptr;
    const bool dentro = falso::mesa.roteiro.dentro;
    const HRESULT resultado = falso::Anotar("entrada", (certo ? "" : "? ") + falso::Estreito(pastaDeDados));
    if (SUCCEEDED(resultado)) {
        falso::Concluir("ambiente", falso::Guardar(tratador, L"{4e8a3389-c9d8-4bd2-b6b5-124fee6cc14d}", dentro),
                        []() -> IUnknown* { return new falso::Ambiente; });
    } else if (dentro) {
        tratador->Invoke(resultado, nullptr);  // the same failure told twice
    }
    return resultado;
}

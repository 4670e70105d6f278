#include "tests/runtime_falso/controle.h"

// after windows.h
#include <objbase.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "ui/webview2.h"

namespace zu::launcher {

// The launcher asks nothing of it, so it has no declaration there.
struct ICoreWebView2NavigationCompletedEventArgs : IUnknown {};

}  // namespace zu::launcher

namespace zu::launcher::teste {
namespace {

class Visao;

struct Mesa {
    RoteiroDoRuntime roteiro;
    std::string chamadas;
    int vivos = 0;
    int faltas = 0;
    std::function<void()> pendente;
    std::function<void()> segunda;
    Visao* visao = nullptr;  // the one that is open
};
Mesa mesa;

// Notes the call and says how the script wants it to go.
HRESULT Anotar(const std::string& metodo, const std::string& argumentos = {}) {
    mesa.chamadas += metodo + (argumentos.empty() ? "" : " " + argumentos) + "\n";
    return metodo == mesa.roteiro.falharEm ? mesa.roteiro.falha : S_OK;
}

std::string Estreito(const wchar_t* texto) {
    std::string saida;
    for (; *texto != L'\0'; ++texto)
        saida.push_back(static_cast<char>(*texto));
    return saida;
}

// Never deleted: a call on an object that is gone is then a fault that gets noted, not a crash.
template <class Interface>
class Objeto : public Interface {
 public:
    Objeto() { ++mesa.vivos; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** saida) override {
        *saida = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        Conferir();
        return ++referencias_;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        Conferir();
        if (--referencias_ == 0) {
            --mesa.vivos;
            Acabar();
        }
        return referencias_;
    }

 protected:
    ~Objeto() = default;
    HRESULT Chamada(const std::string& metodo, const std::string& argumentos = {}) {
        Conferir();
        if (fechado_) ++mesa.faltas;
        return Anotar(metodo, argumentos);
    }
    virtual void Acabar() {}

    bool fechado_ = false;

 private:
    void Conferir() const {
        if (referencias_ == 0) ++mesa.faltas;
    }
    ULONG referencias_ = 1;
};

// Holds a callback as the runtime does, by its own interface; nobody else may hold it by the time it is dropped. Inside
// the call that brought it, the caller still does.
template <class Interface>
std::shared_ptr<Interface> Guardar(Interface* tratador, bool dentroDaChamada = false) {
    if (dentroDaChamada) return {tratador, [](Interface*) {}};
    void* saida = nullptr;
    if (tratador->QueryInterface(Guid("00000000-0000-0000-c000-000000000047"), &saida) != E_NOINTERFACE) ++mesa.faltas;
    if (tratador->QueryInterface(Interface::kIid, &saida) != S_OK) ++mesa.faltas;
    return {static_cast<Interface*>(saida), [](Interface* guardado) {
                if (guardado->Release() != 0) ++mesa.vivos;
            }};
}

class Configuracoes final : public Objeto<ICoreWebView2Settings> {
 public:
    HRESULT STDMETHODCALLTYPE put_IsStatusBarEnabled(BOOL v) override { return Por("put_IsStatusBarEnabled", v); }
    HRESULT STDMETHODCALLTYPE put_AreDevToolsEnabled(BOOL v) override { return Por("put_AreDevToolsEnabled", v); }
    HRESULT STDMETHODCALLTYPE put_AreDefaultContextMenusEnabled(BOOL v) override {
        return Por("put_AreDefaultContextMenusEnabled", v);
    }
    HRESULT STDMETHODCALLTYPE put_IsZoomControlEnabled(BOOL v) override { return Por("put_IsZoomControlEnabled", v); }

 private:
    HRESULT Por(const char* metodo, BOOL valor) { return Chamada(metodo, std::to_string(valor)); }
};

class Visao final : public Objeto<ICoreWebView2> {
 public:
    HRESULT STDMETHODCALLTYPE get_Settings(ICoreWebView2Settings** saida) override {
        const HRESULT resultado = Chamada("get_Settings");
        *saida = FAILED(resultado) ? nullptr : new Configuracoes;
        return resultado;
    }
    HRESULT STDMETHODCALLTYPE Navigate(LPCWSTR uri) override { return Chamada("Navigate", Estreito(uri)); }
    HRESULT STDMETHODCALLTYPE AddScriptToExecuteOnDocumentCreated(LPCWSTR script, IUnknown*) override {
        return Chamada("AddScriptToExecuteOnDocumentCreated", Estreito(script));
    }
    HRESULT STDMETHODCALLTYPE add_NavigationStarting(ICoreWebView2NavigationStartingEventHandler* tratador,
                                                     EventRegistrationToken* token) override {
        return Registrar("add_NavigationStarting", comecou, tratador, *token);
    }
    HRESULT STDMETHODCALLTYPE add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* tratador,
                                                      EventRegistrationToken* token) override {
        return Registrar("add_NavigationCompleted", terminou, tratador, *token);
    }
    HRESULT STDMETHODCALLTYPE add_NewWindowRequested(ICoreWebView2NewWindowRequestedEventHandler* tratador,
                                                     EventRegistrationToken* token) override {
        return Registrar("add_NewWindowRequested", janela, tratador, *token);
    }
    HRESULT STDMETHODCALLTYPE add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler* tratador,
                                                EventRegistrationToken* token) override {
        return Registrar("add_ProcessFailed", caiu, tratador, *token);
    }
    void Fechar() {
        fechado_ = true;
        mesa.visao = nullptr;
        comecou.reset();
        terminou.reset();
        janela.reset();
        caiu.reset();
    }

    std::shared_ptr<ICoreWebView2NavigationStartingEventHandler> comecou;
    std::shared_ptr<ICoreWebView2NavigationCompletedEventHandler> terminou;
    std::shared_ptr<ICoreWebView2NewWindowRequestedEventHandler> janela;
    std::shared_ptr<ICoreWebView2ProcessFailedEventHandler> caiu;

 private:
    template <class Interface>
    HRESULT Registrar(const char* metodo, std::shared_ptr<Interface>& lugar, Interface* tratador,
                      EventRegistrationToken& token) {
        const HRESULT resultado = Chamada(metodo);
        if (SUCCEEDED(resultado)) lugar = Guardar(tratador);
        token.value = 1;
        return resultado;
    }
};

void ResponderOutraVez() {
    if (const std::function<void()> segunda = std::exchange(mesa.segunda, nullptr)) segunda();
}

class Controlador final : public Objeto<ICoreWebView2Controller> {
 public:
    Controlador() { mesa.visao = visao_; }
    HRESULT STDMETHODCALLTYPE get_CoreWebView2(ICoreWebView2** saida) override {
        const HRESULT resultado = Chamada("get_CoreWebView2");
        *saida = nullptr;
        if (FAILED(resultado)) return resultado;
        visao_->AddRef();
        *saida = visao_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_Bounds(RECT r) override {
        const auto numero = [](LONG valor) { return std::to_string(valor); };
        return Chamada("put_Bounds",
                       numero(r.left) + "," + numero(r.top) + "," + numero(r.right) + "," + numero(r.bottom));
    }
    HRESULT STDMETHODCALLTYPE put_IsVisible(BOOL visivel) override {
        return Chamada("put_IsVisible", std::to_string(visivel));
    }
    HRESULT STDMETHODCALLTYPE NotifyParentWindowPositionChanged() override {
        return Chamada("NotifyParentWindowPositionChanged");
    }
    HRESULT STDMETHODCALLTYPE Close() override {
        Chamada("Close");
        fechado_ = true;
        visao_->Fechar();
        ResponderOutraVez();
        return S_OK;
    }

 private:
    void Acabar() override {
        if (!fechado_) ++mesa.faltas;
        visao_->Release();
    }
    Visao* visao_ = new Visao;
};

void Concluir(std::function<void()> conclusao) {
    if (mesa.roteiro.depois) {
        mesa.pendente = std::move(conclusao);
    } else {
        conclusao();
    }
}

// Reports a completion as the script wants it; `criar` makes the object that a good one brings.
template <class Interface, class Criar>
void Responder(const char* etapa, const std::shared_ptr<Interface>& pronto, Criar criar) {
    if (Anotar(etapa) != S_OK || etapa == std::string(mesa.roteiro.falharEm)) {
        pronto->Invoke(mesa.roteiro.falha, nullptr);
        return;
    }
    auto* const objeto = criar();
    pronto->Invoke(S_OK, objeto);
    objeto->Release();
}

class Ambiente final : public Objeto<ICoreWebView2Environment> {
 public:
    HRESULT STDMETHODCALLTYPE CreateCoreWebView2Controller(
        HWND janela, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* tratador) override {
        const HRESULT resultado = Chamada("CreateCoreWebView2Controller", janela == GetDesktopWindow() ? "" : "?");
        if (FAILED(resultado)) return resultado;
        Concluir([pronto = Guardar(tratador, !mesa.roteiro.depois)] {
            if (mesa.roteiro.segundaChamada) mesa.segunda = [pronto] { pronto->Invoke(E_ABORT, nullptr); };
            Responder("controlador", pronto, [] { return new Controlador; });
        });
        return S_OK;
    }
};

LPWSTR CopiaDoSistema(const std::wstring& texto) {
    const std::size_t bytes = (texto.size() + 1) * sizeof(wchar_t);
    return static_cast<LPWSTR>(std::memcpy(CoTaskMemAlloc(bytes), texto.c_str(), bytes));
}

struct EventoDeNavegacao final : Objeto<ICoreWebView2NavigationStartingEventArgs> {
    HRESULT STDMETHODCALLTYPE get_Uri(LPWSTR* saida) override { return *saida = CopiaDoSistema(uri), S_OK; }
    HRESULT STDMETHODCALLTYPE get_IsUserInitiated(BOOL* saida) override { return *saida = doUsuario, S_OK; }
    HRESULT STDMETHODCALLTYPE get_IsRedirected(BOOL* saida) override { return *saida = redirecionada, S_OK; }
    HRESULT STDMETHODCALLTYPE put_Cancel(BOOL valor) override { return cancelada = valor, S_OK; }
    std::wstring uri;
    BOOL doUsuario = FALSE, redirecionada = FALSE, cancelada = FALSE;
};

struct EventoDeFim final : Objeto<ICoreWebView2NavigationCompletedEventArgs> {};

struct EventoDeJanela final : Objeto<ICoreWebView2NewWindowRequestedEventArgs> {
    HRESULT STDMETHODCALLTYPE get_Uri(LPWSTR* saida) override { return *saida = CopiaDoSistema(uri), S_OK; }
    HRESULT STDMETHODCALLTYPE put_Handled(BOOL valor) override { return tratada = valor, S_OK; }
    std::wstring uri;
    BOOL tratada = FALSE;
};

struct EventoDeQueda final : Objeto<ICoreWebView2ProcessFailedEventArgs> {
    HRESULT STDMETHODCALLTYPE get_ProcessFailedKind(TipoDeQueda* saida) override { return *saida = tipo, S_OK; }
    TipoDeQueda tipo{};
};

class ControleDaMesa final : public Controle {
 public:
    void Comecar(const RoteiroDoRuntime& roteiro) override { mesa = {.roteiro = roteiro}; }
    bool Entregar() override {
        const std::function<void()> conclusao = std::exchange(mesa.pendente, nullptr);
        if (conclusao) conclusao();
        return conclusao != nullptr;
    }
    void DestruirJanela() override { ResponderOutraVez(); }
    bool NavigationStarting(const wchar_t* uri, bool doUsuario, bool redirecionada) override {
        auto* const evento = new EventoDeNavegacao;
        evento->uri = uri;
        evento->doUsuario = doUsuario ? TRUE : FALSE;
        evento->redirecionada = redirecionada ? TRUE : FALSE;
        Disparar(&Visao::comecou, evento);
        return evento->cancelada != FALSE;
    }
    void NavigationCompleted() override { Disparar(&Visao::terminou, new EventoDeFim); }
    bool NewWindowRequested(const wchar_t* uri) override {
        auto* const evento = new EventoDeJanela;
        evento->uri = uri;
        Disparar(&Visao::janela, evento);
        return evento->tratada != FALSE;
    }
    void ProcessFailed(int tipo) override {
        auto* const evento = new EventoDeQueda;
        evento->tipo = static_cast<TipoDeQueda>(tipo);
        Disparar(&Visao::caiu, evento);
    }
    [[nodiscard]] const char* Chamadas() const override { return mesa.chamadas.c_str(); }
    [[nodiscard]] int Vivos() const override { return mesa.vivos; }
    [[nodiscard]] int Faltas() const override { return mesa.faltas; }

 private:
    // Holds the callback meanwhile, since it may close the view.
    template <class Interface, class Evento>
    static void Disparar(std::shared_ptr<Interface> Visao::*lugar, Evento* evento) {
        if (const auto tratador = mesa.visao ? mesa.visao->*lugar : nullptr) tratador->Invoke(mesa.visao, evento);
        evento->Release();
    }
};

}  // namespace
}  // namespace zu::launcher::teste

namespace falso = zu::launcher::teste;

extern "C" __declspec(dllexport) falso::Controle* ControleDoRuntime() {
    static falso::ControleDaMesa controle;
    return &controle;
}

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE CreateWebViewEnvironmentWithOptionsInternal(
    bool instalado, std::int32_t tipo, PCWSTR pastaDeDados, IUnknown* opcoes,
    zu::launcher::ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* tratador) {
    const bool certo = instalado && tipo == 0 && opcoes == nullptr;
    const HRESULT resultado = falso::Anotar("entrada", (certo ? "" : "? ") + falso::Estreito(pastaDeDados));
    const bool depois = falso::mesa.roteiro.depois;
    if (FAILED(resultado)) {
        // The same failure told twice.
        if (!depois) tratador->Invoke(resultado, nullptr);
        return resultado;
    }
    falso::Concluir([pronto = falso::Guardar(tratador, !depois)] {
        falso::Responder("ambiente", pronto, [] { return new falso::Ambiente; });
    });
    return S_OK;
}

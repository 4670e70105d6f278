// Told by the published slots and interface ids alone. With the launcher's own declarations a wrong number there would
// be the same wrong number here.
#include "tests/runtime_falso/controle.h"

// after windows.h
#include <eventtoken.h>
#include <objbase.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cwchar>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zu::launcher::teste {

// A callback of the launcher. In no unnamed namespace, where the compiler would know that nobody implements it.
template <class... Argumentos>
struct Retorno : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(Argumentos...) = 0;  // slot 3
};

struct Objeto;
using Pronto = Retorno<HRESULT, Objeto*>;
using ScriptPronto = Retorno<HRESULT, LPCWSTR>;
using Ouvinte = Retorno<Objeto*, Objeto*>;

// A method as it stands in an object's table; it really takes the object first.
using Slot = HRESULT(STDMETHODCALLTYPE*)();

// What stands behind each pointer that the launcher is given. Never deleted: a call on an object that is gone is then a
// fault that gets noted, not a crash.
struct Objeto {
    const Slot* tabela = nullptr;
    int referencias = 1;
    bool fechado = false;
    Objeto* visao = nullptr;  // a controller's
    EventoDoRuntime evento;   // that a callback is shown, and what it answers
    bool resposta = false;
};

namespace {

// The methods that take the callbacks, and those' interfaces.
const std::map<Ocorrencia, std::pair<const char*, const wchar_t*>> kOuvidas{
    {Ocorrencia::kNavigationStarting, {"add_NavigationStarting", L"{9adbe429-f36d-432b-9ddc-f8881fbd76e3}"}},
    {Ocorrencia::kNavigationCompleted, {"add_NavigationCompleted", L"{d33a35bf-1c49-4f98-93ab-006e0533fe1c}"}},
    {Ocorrencia::kProcessFailed, {"add_ProcessFailed", L"{79e0aea4-990b-42d9-aa1d-0fcc2e5bc7f1}"}},
    {Ocorrencia::kNewWindow, {"add_NewWindowRequested", L"{d4c185fe-c81c-4989-97af-2d3fa7ab5651}"}}};

struct Mesa {
    RoteiroDoRuntime roteiro;
    std::string chamadas;
    std::vector<const Objeto*> objetos;
    int faltas = 0;
    std::function<void()> pendente;
    std::function<void()> segunda;
    UINT_PTR relogio = 0;
    Objeto* visao = nullptr;  // the one that is open
    std::map<Ocorrencia, std::shared_ptr<Ouvinte>> ouvintes;
};
Mesa mesa;

// Notes the call and says how the script wants it to go.
HRESULT Anotar(const std::string& metodo, const std::string& argumentos = {}) {
    mesa.chamadas += metodo + (argumentos.empty() ? "" : " " + argumentos) + "\n";
    return metodo == mesa.roteiro.falharEm ? mesa.roteiro.falha : S_OK;
}

HRESULT Chamada(const Objeto* o, const char* metodo, const std::string& argumentos = {}) {
    mesa.faltas += o->referencias == 0 || o->fechado ? 1 : 0;
    return Anotar(metodo, argumentos);
}

std::string Estreito(const std::wstring& texto) {
    return {texto.begin(), texto.end()};
}

ULONG STDMETHODCALLTYPE AddRef(Objeto* o) {
    mesa.faltas += o->referencias == 0 ? 1 : 0;
    return static_cast<ULONG>(++o->referencias);
}

ULONG STDMETHODCALLTYPE Release(Objeto* o) {
    mesa.faltas += o->referencias == 0 ? 1 : 0;
    if (--o->referencias == 0 && o->visao != nullptr) {
        mesa.faltas += o->fechado ? 0 : 1;
        Release(o->visao);
    }
    return static_cast<ULONG>(o->referencias);
}

// A slot that the launcher has no use for.
HRESULT STDMETHODCALLTYPE Vago(Objeto*) {
    ++mesa.faltas;
    return Anotar("slot vago") | E_NOTIMPL;
}

template <class Metodo>
Slot De(Metodo metodo) {
    return std::bit_cast<Slot>(+metodo);
}

struct Tabela : std::array<Slot, 64> {
    Tabela(std::initializer_list<std::pair<std::size_t, Slot>> usados) {
        fill(De(Vago));
        at(1) = De(AddRef);
        at(2) = De(Release);
        for (const auto& [slot, metodo] : usados)
            at(slot) = metodo;
    }
};

Objeto* Novo(const Tabela& tabela, const EventoDoRuntime& evento = {}) {
    auto* const objeto = new Objeto{.tabela = tabela.data(), .evento = evento};
    mesa.objetos.push_back(objeto);
    return objeto;
}

// Holds a callback as the runtime does, by its own interface; nobody else may hold it by the time it is dropped.
template <class Tratador>
std::shared_ptr<Tratador> Guardar(Tratador* tratador, const wchar_t* proprio) {
    IID iid{};
    void* saida = tratador;
    IIDFromString(L"{0000000c-0000-0000-c000-000000000046}", &iid);
    mesa.faltas += tratador->QueryInterface(iid, &saida) == E_NOINTERFACE && saida == nullptr ? 0 : 1;
    IIDFromString(proprio, &iid);
    if (tratador->QueryInterface(iid, &saida) != S_OK) ++mesa.faltas, tratador->AddRef();
    return {tratador, [](Tratador* guardado) { mesa.faltas += guardado->Release() == 0 ? 0 : 1; }};
}

// A slot that takes a callback for what occurs.
template <Ocorrencia kQual>
HRESULT Ouvir(Objeto* o, Ouvinte* ouvinte, EventRegistrationToken* token) {
    const auto& [metodo, iid] = kOuvidas.at(kQual);
    const HRESULT resultado = Chamada(o, metodo);
    if (SUCCEEDED(resultado)) mesa.ouvintes[kQual] = Guardar(ouvinte, iid);
    token->value = static_cast<int>(kQual);
    return resultado;
}

// The end of controller or window answers the controller's creation once more, with a failure.
void ResponderOutraVez() {
    if (const auto segunda = std::exchange(mesa.segunda, nullptr)) segunda();
}

void EntregarPendente() {
    KillTimer(nullptr, mesa.relogio);
    const auto conclusao = std::exchange(mesa.pendente, nullptr);
    if (conclusao) conclusao();
}

// Reports a completion later.
void Adiar(const std::function<void()>& conclusao) {
    mesa.pendente = conclusao;
    mesa.relogio = SetTimer(nullptr, 0, 0, [](HWND, UINT, UINT_PTR, DWORD) { EntregarPendente(); });
}

// As the script wants it, a good one with a new object.
void Concluir(const char* etapa, const std::shared_ptr<Pronto>& pronto, const std::function<Objeto*()>& criar) {
    Adiar([etapa, pronto, criar] {
        const bool falha = Anotar(etapa) != S_OK || etapa == std::string(mesa.roteiro.falharEm);
        Objeto* const objeto = falha ? nullptr : criar();
        pronto->Invoke(falha ? mesa.roteiro.falha : S_OK, objeto);
        if (objeto != nullptr) Release(objeto);
    });
}

HRESULT PorScript(Objeto* o, LPCWSTR script, ScriptPronto* tratador) {
    const HRESULT resultado = Chamada(o, "AddScriptToExecuteOnDocumentCreated", Estreito(script));
    if (FAILED(resultado)) return resultado;
    Adiar([pronto = Guardar(tratador, L"{b99369f3-9b11-47b5-bc6f-8e7895fcea17}")] {
        pronto->Invoke(Anotar("script"), L"1");
    });
    return resultado;
}

HRESULT Por(Objeto* o, const char* metodo, BOOL valor) {
    return Chamada(o, metodo, std::to_string(valor));
}

const Tabela kConfiguracoes{{10, De([](Objeto* o, BOOL v) { return Por(o, "put_IsStatusBarEnabled", v); })},
                            {12, De([](Objeto* o, BOOL v) { return Por(o, "put_AreDevToolsEnabled", v); })},
                            {14, De([](Objeto* o, BOOL v) { return Por(o, "put_AreDefaultContextMenusEnabled", v); })},
                            {18, De([](Objeto* o, BOOL v) { return Por(o, "put_IsZoomControlEnabled", v); })}};

// Gives the launcher an object that it holds from now on.
HRESULT Dar(Objeto* o, const char* metodo, Objeto** saida, const std::function<Objeto*()>& qual) {
    const HRESULT resultado = Chamada(o, metodo);
    *saida = FAILED(resultado) ? nullptr : qual();
    return resultado;
}

HRESULT PegarConfiguracoes(Objeto* o, Objeto** saida) {
    return Dar(o, "get_Settings", saida, [] { return Novo(kConfiguracoes); });
}

const Tabela kVisao{{3, De(PegarConfiguracoes)},
                    {5, De([](Objeto* o, LPCWSTR uri) { return Chamada(o, "Navigate", Estreito(uri)); })},
                    {7, De(Ouvir<Ocorrencia::kNavigationStarting>)},
                    {15, De(Ouvir<Ocorrencia::kNavigationCompleted>)},
                    {25, De(Ouvir<Ocorrencia::kProcessFailed>)},
                    {27, De(PorScript)},
                    {44, De(Ouvir<Ocorrencia::kNewWindow>)}};

HRESULT PorLados(Objeto* o, RECT r) {
    std::string lados;
    for (const LONG lado : {r.left, r.top, r.right, r.bottom})
        lados += std::to_string(lado) + ",";
    return Chamada(o, "put_Bounds", lados);
}

HRESULT Fechar(Objeto* o) {
    const HRESULT resultado = Chamada(o, "Close");
    o->fechado = o->visao->fechado = true;
    mesa.ouvintes.clear();
    ResponderOutraVez();
    return resultado;
}

HRESULT PegarVisao(Objeto* o, Objeto** saida) {
    return Dar(o, "get_CoreWebView2", saida, [o] { return AddRef(o->visao), o->visao; });
}

const Tabela kControlador{{4, De([](Objeto* o, BOOL v) { return Por(o, "put_IsVisible", v); })},
                          {6, De(PorLados)},
                          {23, De([](Objeto* o) { return Chamada(o, "NotifyParentWindowPositionChanged"); })},
                          {24, De(Fechar)},
                          {25, De(PegarVisao)}};

HRESULT CriarControlador(Objeto* o, HWND janela, Pronto* tratador) {
    const HRESULT resultado = Chamada(o, "CreateCoreWebView2Controller", IsWindow(janela) ? "" : "?");
    if (FAILED(resultado)) return resultado;
    const auto pronto = Guardar(tratador, L"{6c4819f3-c9b7-4260-8127-c9f5bde7f68c}");
    Concluir("controlador", pronto, [pronto] {
        mesa.segunda = [pronto] { pronto->Invoke(E_ABORT, nullptr); };
        Objeto* const controlador = Novo(kControlador);
        controlador->visao = mesa.visao = Novo(kVisao);
        return controlador;
    });
    return resultado;
}

const Tabela kAmbiente{{3, De(CriarControlador)}};

HRESULT Uri(Objeto* o, LPWSTR* saida) {
    *saida = static_cast<LPWSTR>(CoTaskMemAlloc((std::wcslen(o->evento.uri) + 1) * sizeof(wchar_t)));
    return std::wcscpy(*saida, o->evento.uri), S_OK;
}

HRESULT Responder(Objeto* o, BOOL valor) {
    return o->resposta = valor != FALSE, S_OK;
}

// What a callback is shown.
const std::map<Ocorrencia, Tabela> kMostrados{
    {Ocorrencia::kNavigationStarting,
     {{3, De(Uri)},
      {4, De([](Objeto* o, BOOL* saida) { return *saida = o->evento.doUsuario, S_OK; })},
      {5, De([](Objeto* o, BOOL* saida) { return *saida = o->evento.redirecionada, S_OK; })},
      {8, De(Responder)}}},
    {Ocorrencia::kNavigationCompleted, {}},
    {Ocorrencia::kProcessFailed,
     {{3, De([](Objeto* o, std::int32_t* saida) { return *saida = o->evento.tipo, S_OK; })}}},
    {Ocorrencia::kNewWindow, {{3, De(Uri)}, {6, De(Responder)}}}};

class NavegadorDaMesa final : public NavegadorFalso {
 public:
    void Comecar(const RoteiroDoRuntime& roteiro) override { mesa = {.roteiro = roteiro}; }
    void Entregar(int quantas) override {
        while (quantas-- > 0)
            EntregarPendente();
    }
    void DestruirJanela() override { ResponderOutraVez(); }
    bool Ocorrer(Ocorrencia qual, const EventoDoRuntime& evento) override {
        Objeto* const mostrado = Novo(kMostrados.at(qual), evento);
        // Held meanwhile, since it may close the view.
        if (const auto ouvinte = mesa.ouvintes[qual]) ouvinte->Invoke(mesa.visao, mostrado);
        Release(mostrado);
        return mostrado->resposta;
    }
    [[nodiscard]] const char* Chamadas() const override { return mesa.chamadas.c_str(); }
    [[nodiscard]] int Faltas() const override {
        return mesa.faltas + static_cast<int>(std::ranges::count_if(mesa.objetos, &Objeto::referencias));
    }
};

}  // namespace

extern "C" __declspec(dllexport) NavegadorFalso* ControleDoRuntime() {
    static NavegadorDaMesa controle;
    return &controle;
}

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE
    CreateWebViewEnvironmentWithOptionsInternal(bool instalado, std::int32_t tipo, PCWSTR pastaDeDados,
                                                IUnknown* opcoes, Pronto* tratador) {
    const bool certo = instalado && tipo == 0 && opcoes == nullptr;
    const HRESULT resultado = Anotar("entrada", (certo ? "" : "? ") + Estreito(pastaDeDados));
    if (SUCCEEDED(resultado)) {
        Concluir("ambiente", Guardar(tratador, L"{4e8a3389-c9d8-4bd2-b6b5-124fee6cc14d}"),
                 [] { return Novo(kAmbiente); });
    } else {
        tratador->Invoke(resultado, nullptr);  // the same failure told twice
    }
    return resultado;
}

}  // namespace zu::launcher::teste

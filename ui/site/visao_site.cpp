#include "ui/site/visao_site.h"

// after windows.h
#include <objbase.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/log.h"
#include "core/utf16.h"
#include "ui/janelas/pintor_principal.h"
#include "ui/site/runtime_site.h"
#include "ui/site/script_site.h"

namespace zu::launcher {
namespace {

// Where the runtime keeps cookies and its cache: must be writable, which the game folder need not be.
std::filesystem::path PastaDeDados() {
    std::filesystem::path raiz = VariavelDeAmbiente(L"LOCALAPPDATA");
    std::error_code erro;
    if (raiz.empty()) raiz = std::filesystem::temp_directory_path(erro);
    return raiz / L"ZuLauncher";
}

template <class Evento>
std::wstring EnderecoDe(Evento& evento) {
    LPWSTR texto = nullptr;
    if (FAILED(evento.get_Uri(&texto)) || texto == nullptr) return {};
    std::wstring endereco = texto;
    CoTaskMemFree(texto);
    return endereco;
}

// Of an address in the log: the page may make one of any length.
constexpr std::size_t kMaiorEsquema = 32;

std::uint32_t Codigo(HRESULT resultado) {
    return static_cast<std::uint32_t>(resultado);
}

}  // namespace

VisaoSite::VisaoSite(AmbienteSite ambiente) : ambiente_(std::move(ambiente)) {}

VisaoSite::~VisaoSite() {
    Liberar();
}

void VisaoSite::WebCreate(HWND janela) {
    if (ambiente_.endereco.empty()) return;
    janela_ = janela;
    if (const EntradaDoRuntime entrada = CarregarRuntime()) {
        CriarAmbiente(entrada);
    } else {
        Falhar();
    }
}

void VisaoSite::CriarAmbiente(EntradaDoRuntime entrada) {
    const auto pronto = CriarTratador<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler>(
        [vida = std::weak_ptr(vida_)](HRESULT resultado, ICoreWebView2Environment* ambiente) {
            if (const auto visao = vida.lock()) (*visao)->AmbientePronto(resultado, ambiente);
        });
    const HRESULT resultado = entrada(true, 0, PastaDeDados().c_str(), nullptr, pronto.Valor());
    if (FAILED(resultado)) FalharCom(Formatar("WebView2: o ambiente não abriu (0x{:08X})", Codigo(resultado)));
}

void VisaoSite::AmbientePronto(HRESULT resultado, ICoreWebView2Environment* ambiente) {
    if (ambiente_.terminando()) return;
    if (FAILED(resultado) || ambiente == nullptr) {
        FalharCom(Formatar("WebView2: o ambiente não abriu (0x{:08X})", Codigo(resultado)));
        return;
    }
    const auto pronto = CriarTratador<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler>(
        [vida = std::weak_ptr(vida_)](HRESULT resultadoDele, ICoreWebView2Controller* controlador) {
            if (const auto visao = vida.lock()) {
                (*visao)->ControladorPronto(resultadoDele, controlador);
            } else if (controlador != nullptr) {
                controlador->Close();
            }
        });
    const HRESULT pedido = ambiente->CreateCoreWebView2Controller(janela_, pronto.Valor());
    if (FAILED(pedido)) FalharCom(Formatar("WebView2: o controle não abriu (0x{:08X})", Codigo(pedido)));
}

void VisaoSite::ControladorPronto(HRESULT resultado, ICoreWebView2Controller* controlador) {
    // The runtime answers once more when the window goes.
    if (controlador_) return;
    if (ambiente_.terminando()) {
        if (controlador != nullptr) controlador->Close();
        return;
    }
    if (FAILED(resultado) || controlador == nullptr) {
        FalharCom(Formatar("WebView2: o controle não abriu (0x{:08X})", Codigo(resultado)));
        return;
    }
    controlador->AddRef();
    controlador_.Trocar(controlador);
    const HRESULT preparo = PrepararVisao();
    if (FAILED(preparo))
        SiteNaoAbriu(preparo);
    else
        ambiente_.repintarCentro();
}

HRESULT VisaoSite::PrepararVisao() {
    HRESULT passo = controlador_.Valor()->get_CoreWebView2(visao_.Receber());
    if (SUCCEEDED(passo)) passo = controlador_.Valor()->put_Bounds(kCentro);
    if (SUCCEEDED(passo)) passo = AjustarConfiguracoes();
    if (SUCCEEDED(passo)) passo = controlador_.Valor()->put_IsVisible(FALSE);
    if (SUCCEEDED(passo)) passo = InjetarRecorte();
    if (SUCCEEDED(passo)) passo = RegistrarTratadores();
    if (SUCCEEDED(passo) && ambiente_.seletor.empty()) passo = Navegar();
    return passo;
}

HRESULT VisaoSite::AjustarConfiguracoes() {
    Com<ICoreWebView2Settings> configuracoes;
    HRESULT passo = visao_.Valor()->get_Settings(configuracoes.Receber());
    if (SUCCEEDED(passo)) passo = configuracoes.Valor()->put_AreDevToolsEnabled(FALSE);
    if (SUCCEEDED(passo)) passo = configuracoes.Valor()->put_AreDefaultContextMenusEnabled(FALSE);
    if (SUCCEEDED(passo)) passo = configuracoes.Valor()->put_IsStatusBarEnabled(FALSE);
    if (SUCCEEDED(passo)) passo = configuracoes.Valor()->put_IsZoomControlEnabled(FALSE);
    return passo;
}

HRESULT VisaoSite::InjetarRecorte() {
    if (ambiente_.seletor.empty()) return S_OK;
    const std::wstring script = DeUtf8(ScriptRecorte(ambiente_.seletor));
    const auto pronto = CriarTratador<ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler>(
        [vida = std::weak_ptr(vida_)](HRESULT resultado, LPCWSTR) {
            if (const auto visao = vida.lock()) (*visao)->RecortePronto(resultado);
        });
    return visao_.Valor()->AddScriptToExecuteOnDocumentCreated(script.c_str(), pronto.Valor());
}

// Not before: a page that is there sooner than its script is shown uncut.
void VisaoSite::RecortePronto(HRESULT resultado) {
    if (ambiente_.terminando()) return;
    const HRESULT passo = FAILED(resultado) ? resultado : Navegar();
    if (FAILED(passo)) SiteNaoAbriu(passo);
}

template <class Interface, class Evento>
Com<Interface> VisaoSite::AoEvento(void (VisaoSite::*metodo)(Evento&)) {
    return CriarTratador<Interface>([vida = std::weak_ptr(vida_), metodo](ICoreWebView2*, Evento* evento) {
        if (const auto visao = vida.lock()) ((*visao)->*metodo)(*evento);
    });
}

// The tokens are not kept: closing the controller takes every handler off.
HRESULT VisaoSite::RegistrarTratadores() {
    EventRegistrationToken token{};
    HRESULT passo = visao_.Valor()->add_NavigationCompleted(
        AoEvento<ICoreWebView2NavigationCompletedEventHandler>(&VisaoSite::NavegacaoTerminou).Valor(), &token);
    if (SUCCEEDED(passo)) {
        passo = visao_.Valor()->add_NavigationStarting(
            AoEvento<ICoreWebView2NavigationStartingEventHandler>(&VisaoSite::NavegacaoComecou).Valor(), &token);
    }
    if (SUCCEEDED(passo)) {
        passo = visao_.Valor()->add_NewWindowRequested(
            AoEvento<ICoreWebView2NewWindowRequestedEventHandler>(&VisaoSite::JanelaPedida).Valor(), &token);
    }
    // A view that cannot tell of its end is still a view, so this one may fail.
    visao_.Valor()->add_ProcessFailed(
        AoEvento<ICoreWebView2ProcessFailedEventHandler>(&VisaoSite::ProcessoCaiu).Valor(), &token);
    return passo;
}

HRESULT VisaoSite::Navegar() {
    estado_.initial_navigation = true;
    return visao_.Valor()->Navigate(ambiente_.endereco.c_str());
}

// The first load and what the site does by itself stay inside; a click of the user leaves for the browser.
void VisaoSite::NavegacaoComecou(ICoreWebView2NavigationStartingEventArgs& evento) {
    BOOL doUsuario = FALSE;
    BOOL redirecionada = FALSE;
    evento.get_IsUserInitiated(&doUsuario);
    evento.get_IsRedirected(&redirecionada);
    const bool inicial = std::exchange(estado_.initial_navigation, false);
    if (inicial || doUsuario == FALSE || redirecionada != FALSE) return;
    evento.put_Cancel(TRUE);
    AbrirFora(EnderecoDe(evento));
}

void VisaoSite::NavegacaoTerminou(ICoreWebView2NavigationCompletedEventArgs&) {
    estado_.site_shown = true;
    controlador_.Valor()->put_IsVisible(visivel_ ? TRUE : FALSE);
}

void VisaoSite::JanelaPedida(ICoreWebView2NewWindowRequestedEventArgs& evento) {
    evento.put_Handled(TRUE);
    AbrirFora(EnderecoDe(evento));
}

void VisaoSite::ProcessoCaiu(ICoreWebView2ProcessFailedEventArgs& evento) {
    TipoDeQueda tipo{};
    if (FAILED(evento.get_ProcessFailedKind(&tipo))) return;
    if (tipo != TipoDeQueda::kNavegador && tipo != TipoDeQueda::kPagina) return;
    FalharCom(Formatar("WebView2: o processo do site terminou (tipo {})", static_cast<std::int32_t>(tipo)));
}

// The address comes from the page: the shell would also start programs and open files.
void VisaoSite::AbrirFora(const std::wstring& endereco) {
    if (endereco.starts_with(L"http://") || endereco.starts_with(L"https://"))
        ambiente_.abrir(endereco);
    else
        LogLinha("Site: esquema recusado: {}",
                 ParaUtf8(endereco.substr(0, std::min(endereco.find(L':'), kMaiorEsquema))));
}

void VisaoSite::DefinirVisivel(bool visivel) {
    visivel_ = visivel;
    if (controlador_ && estado_.site_shown) controlador_.Valor()->put_IsVisible(visivel_ ? TRUE : FALSE);
}

void VisaoSite::JanelaMoveu() {
    if (controlador_) controlador_.Valor()->NotifyParentWindowPositionChanged();
}

void VisaoSite::SiteNaoAbriu(HRESULT resultado) {
    FalharCom(Formatar("WebView2: o site não abriu (0x{:08X})", Codigo(resultado)));
}

// A failure can be told twice, by a call and by the callback that it made.
void VisaoSite::FalharCom(std::string_view linhaDoLog) {
    if (estado_.site_failed) return;
    LogLinha(linhaDoLog);
    Falhar();
}

void VisaoSite::Falhar() {
    estado_.site_failed = true;
    Liberar();
    ambiente_.repintarCentro();
}

// Deaf and empty before the call that may dispatch messages. The view is released before its controller.
void VisaoSite::Liberar() {
    vida_.reset();
    const Com<ICoreWebView2Controller> controlador = std::move(controlador_);
    const Com<ICoreWebView2> visao = std::move(visao_);
    if (controlador) controlador.Valor()->Close();
}

}  // namespace zu::launcher

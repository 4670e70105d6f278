// The server's web page in the centre of the main window. From absent through the runtime, its environment and its
// controller to a page that loads unseen and then shows; whatever fails on the way leaves no view for the rest of the
// run, and the window draws its logo instead.
//
// For the thread of the windows only, which must be a single-threaded apartment with a message loop.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "ui/site/webview2.h"

namespace zu::launcher {

// What the view needs of its surroundings. The functions are called on the thread of the windows, often from inside a
// callback of the runtime: they must not run a message loop.
struct AmbienteSite {
    std::wstring endereco;                 // the page; empty: no view
    std::string seletor;                   // CSS selector (UTF-8) of the element to keep; empty: the whole page
    std::function<bool()> terminando;      // whether the interface is ending
    std::function<void()> repintarCentro;  // the view has come or gone: the centre looks otherwise
    std::function<void(const std::wstring&)> abrir;  // hands an "http://" or "https://" address to the browser
};

class VisaoSite {
 public:
    explicit VisaoSite(AmbienteSite ambiente);
    VisaoSite(const VisaoSite&) = delete;
    VisaoSite& operator=(const VisaoSite&) = delete;
    ~VisaoSite();

    // Starts the view. Returns at once; how it went shows in the state below, now or later. Called once.
    void WebCreate(HWND janela);

    // A view covers the centre.
    [[nodiscard]] bool Presente() const { return static_cast<bool>(controlador_); }
    // It could not be brought up, or it was lost.
    [[nodiscard]] bool site_failed() const { return estado_.site_failed; }
    // The first page has completed.
    [[nodiscard]] bool site_shown() const { return estado_.site_shown; }
    // There is nothing more to wait for.
    [[nodiscard]] bool Assentou() const {
        return ambiente_.endereco.empty() || estado_.site_shown || estado_.site_failed;
    }

    // The window has been hidden or minimised, or is back. Never shows the view before its first page has completed.
    void DefinirVisivel(bool visivel);
    // The window has moved.
    void JanelaMoveu();

    // Closes and releases the view. What the runtime still reports afterwards changes nothing.
    void Liberar();

 private:
    void CriarAmbiente(EntradaDoRuntime entrada);
    void AmbientePronto(HRESULT resultado, ICoreWebView2Environment* ambiente);
    void ControladorPronto(HRESULT resultado, ICoreWebView2Controller* controlador);
    HRESULT PrepararVisao();
    HRESULT AjustarConfiguracoes();
    HRESULT InjetarRecorte();
    void RecortePronto(HRESULT resultado);
    HRESULT RegistrarTratadores();
    HRESULT Navegar();

    void NavegacaoComecou(ICoreWebView2NavigationStartingEventArgs& evento);
    void NavegacaoTerminou(ICoreWebView2NavigationCompletedEventArgs& evento);
    void JanelaPedida(ICoreWebView2NewWindowRequestedEventArgs& evento);
    void ProcessoCaiu(ICoreWebView2ProcessFailedEventArgs& evento);

    void AbrirFora(const std::wstring& endereco);
    void SiteNaoAbriu(HRESULT resultado);
    void FalharCom(std::string_view linhaDoLog);
    void Falhar();

    template <class Interface, class Evento>
    Com<Interface> AoEvento(void (VisaoSite::*metodo)(Evento&));

    AmbienteSite ambiente_;
    HWND janela_ = nullptr;
    Com<ICoreWebView2Controller> controlador_;
    Com<ICoreWebView2> visao_;
    struct {
        bool site_failed = false;
        bool site_shown = false;
        bool initial_navigation = false;  // the launcher's own navigation, which is no click of the user
    } estado_;
    bool visivel_ = true;  // what the window wants

    // Held weakly by every callback, since the runtime may keep those for longer. Gone: nobody listens any more.
    std::shared_ptr<VisaoSite*> vida_ = std::make_shared<VisaoSite*>(this);
};

}  // namespace zu::launcher

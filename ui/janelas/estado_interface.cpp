#include "ui/janelas/estado_interface.h"

#include <algorithm>

#include "core/config.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

constexpr wchar_t kTituloPadrao[] = L"Zu Launcher";

std::unique_ptr<EstadoInterface>& Instancia() {
    static std::unique_ptr<EstadoInterface> instancia;
    return instancia;
}

}  // namespace

EstadoInterface& ObterInterface() {
    return *Instancia();
}

AmbienteSite AmbienteDaInterface() {
    const ConfigLauncher& config = ObterConfig();
    AmbienteSite ambiente;
    // Older shortcuts ask for a launcher without the site.
    const bool semSite = std::ranges::find(config.argumentos, L"--sem-cef") != config.argumentos.end();
    if (!semSite) ambiente.endereco = DeUtf8(config.urlSite);
    ambiente.seletor = config.seletor;
    ambiente.terminando = [] { return ObterInterface().quit; };
    ambiente.repintarCentro = [] {
        RECT centro = kCentro;
        InflateRect(&centro, 1, 1);
        InvalidateRect(ObterInterface().principal, &centro, FALSE);
    };
    // Not at once: the shell may handle messages, and the view calls this from inside a callback of its own.
    ambiente.abrir = [](const std::wstring& endereco) {
        EstadoInterface& ui = ObterInterface();
        ui.enderecosPorAbrir.push_back(ParaUtf8(endereco));
        PostMessageW(ui.principal, MSG_ABRIR_ENDERECOS, 0, 0);
    };
    return ambiente;
}

void AbrirEstadoDaInterface() {
    DefinirFontesDaInterface(CriarFontes());
    Instancia() = std::make_unique<EstadoInterface>();
}

void FecharEstadoDaInterface() {
    DefinirFontesDaInterface({});
    Instancia().reset();
}

bool ModoCaptura() {
    return !ObterConfig().captura.empty();
}

std::wstring TituloDoLauncher() {
    const std::wstring& nome = ObterConfig().nome;
    return nome.empty() ? kTituloPadrao : nome;
}

void MostrarJanela(HWND janela) {
    ShowWindow(janela, ModoCaptura() ? SW_SHOWNOACTIVATE : SW_SHOW);
    if (!ModoCaptura()) SetForegroundWindow(janela);
    UpdateWindow(janela);
}

HWND JanelaDaFrente() {
    const EstadoInterface& ui = ObterInterface();
    for (const HWND janela : {ui.diagnostico, ui.requisitos, ui.opcoes}) {
        if (janela != nullptr) return janela;
    }
    return ui.principal;
}

}  // namespace zu::launcher

#include "ui/janelas/estado_interface.h"

#include <memory>

#include "core/config.h"
#include "ui/desenho/fontes.h"

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

#include "ui/interface.h"

#include <windows.h>

#include <utility>

#include "app/controlador.h"
#include "core/log.h"
#include "ui/captura/captura.h"
#include "ui/controles/controle.h"
#include "ui/janelas/diagnostico.h"
#include "ui/janelas/estado_interface.h"
#include "ui/janelas/fim_da_interface.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/opcoes.h"
#include "ui/janelas/principal.h"
#include "ui/janelas/requisitos.h"

namespace zu::launcher {
namespace {

constexpr int kCodigoFim = 0;
constexpr int kCodigoFalha = 1;
constexpr int kRecursoDoLogo = 3001;

// The picture of the resource; empty when there is none of use.
LogoCentral CarregarLogo(HINSTANCE modulo) {
    const HRSRC recurso = FindResourceW(modulo, MAKEINTRESOURCEW(kRecursoDoLogo), RT_RCDATA);
    if (recurso == nullptr) return {};
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(modulo, recurso)));
    if (bytes == nullptr) return {};
    return LerLogo({bytes, SizeofResource(modulo, recurso)});
}

// The launcher steps aside while the game starts, and comes back when it does not.
class ObservadorDaInterface final : public ObservadorLauncher {
 public:
    void Notificar(const EventoLauncher& evento) override {
        MostrarLauncher(evento.numero == NumeroDoEvento::kJogoNaoAbriu);
    }
};

// Returns the picture for the main window.
LogoEncaixado Preparar(HINSTANCE modulo) {
    if (!IniciarDesenho()) LogLinha("Interface: o GDI+ não iniciou; as janelas ficam sem formas nem sombras");
    AbrirEstadoDaInterface();
    LogoEncaixado logo(CarregarLogo(modulo));
    RegistrarControle(modulo);
    for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico})
        Janela::Registrar(modulo, classe);
    RegistrarPrincipal(modulo);
    return logo;
}

void RodarMensagens() {
    const EstadoInterface& ui = ObterInterface();
    MSG mensagem{};
    while (!ui.quit) {
        if (GetMessageW(&mensagem, nullptr, 0, 0) <= 0) {
            CancelarEPedirFim();
            return;
        }
        if (Janela::TomarTecla(mensagem)) continue;
        TranslateMessage(&mensagem);
        DispatchMessageW(&mensagem);
    }
}

// The window's end posts WM_QUIT, which comes last: then the queue is empty.
void DesmontarPrincipal() {
    KillTimer(ObterInterface().principal, kRelogioDaPrincipal);
    DestroyWindow(ObterInterface().principal);
    MSG mensagem{};
    while (GetMessageW(&mensagem, nullptr, 0, 0) > 0)
        DispatchMessageW(&mensagem);
}

}  // namespace

int RodarInterface() {
    const HINSTANCE modulo = GetModuleHandleW(nullptr);
    LogoEncaixado logo = Preparar(modulo);
    const EstadoInterface& ui = ObterInterface();
    CriarPrincipal(std::move(logo));
    int codigo = kCodigoFim;
    if (ui.principal == nullptr) {
        LogLinha("Interface: CreateWindow falhou ({})", GetLastError());
        codigo = kCodigoFalha;
    } else {
        ObservadorDaInterface observador;
        ControladorLauncher& controlador = ObterControlador();
        controlador.DefinirObservador(&observador);
        controlador.DefinirSaida(PedirFim);
        MostrarJanela(ui.principal);
        Principal().Site().WebCreate(ui.principal);
        Habilitar(GetDlgItem(ui.principal, kBotaoOpcoes), false);
        Habilitar(GetDlgItem(ui.principal, kBotaoConectar), false);
        PostMessageW(ui.principal, MSG_INICIAR, 0, 0);
        SessaoDeCaptura captura;
        if (ModoCaptura()) captura.Iniciar();
        RodarMensagens();
        if (captura.Falhou()) codigo = kCodigoFalha;
        controlador.DefinirObservador(nullptr);
        controlador.DefinirSaida({});
        Principal().Site().Liberar();
        DesmontarPrincipal();
    }
    FecharEstadoDaInterface();
    EncerrarDesenho();
    return codigo;
}

}  // namespace zu::launcher

#include "app/sem_interface.h"

#include <chrono>
#include <thread>

#include "app/controlador.h"
#include "core/log.h"

namespace zu::launcher {
namespace {

constexpr std::chrono::milliseconds kIntervalo{100};

constexpr int kCodigoPronto = 0;
constexpr int kCodigoOutroFim = 1;
constexpr int kCodigoSaiu = 3;

// Whether the loop has something left to wait for beyond the update run itself.
bool EsperandoOJogo(ControladorLauncher& controlador) {
    return controlador.AbrindoJogo() || (controlador.InicioAutomaticoPorFazer() && controlador.PodeJogarAgora());
}

}  // namespace

int RodarSemInterface() {
    ControladorLauncher& controlador = ObterControlador();
    bool sair = false;
    controlador.DefinirSaida([&sair] { sair = true; });
    controlador.Iniciar();
    while (true) {
        std::this_thread::sleep_for(kIntervalo);
        controlador.Tick();
        if (sair) return kCodigoSaiu;
        if (controlador.Atualizando() || EsperandoOJogo(controlador)) continue;
        // While it is "reiniciando" the next tick hands the swaps over, and asks to quit or ends in an error.
        const EstadoAtualizacao estado = controlador.Estado();
        if (estado.status == StatusUpdate::kReiniciando) continue;
        LogLinha("Sem interface: terminou em \"{}\": {}", PalavraDoStatus(estado.status), estado.texto);
        return estado.status == StatusUpdate::kPronto ? kCodigoPronto : kCodigoOutroFim;
    }
}

}  // namespace zu::launcher

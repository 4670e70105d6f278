// Between the front ends and the workers: the one object that a window or a headless run drives.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>

#include "update/atualizador.h"

namespace zu::launcher {

// The status in one word, as the log has it; empty for a value that is no status.
std::string_view PalavraDoStatus(StatusUpdate status);

// All operations are called from the front end's one thread; the quit handler is called there too, from `Tick`.
class ControladorLauncher {
 public:
    // What `Tick` calls when the launcher has to end.
    void DefinirSaida(std::function<void()> saida) { saida_ = std::move(saida); }

    // Logs the title line and starts the update run.
    void Iniciar();

    // One step of polling; the front ends make one every 100 ms.
    void Tick();

    [[nodiscard]] bool Atualizando() const { return atualizador_.EmCurso(); }
    [[nodiscard]] EstadoAtualizacao Estado() const { return atualizador_.Estado(); }

    // Cancels what is under way and waits for it, but not for longer than `limite`: nothing on disk depends on it.
    void Encerrar(std::chrono::milliseconds limite);

 private:
    void EntregarTrocas();

    Atualizador atualizador_;
    std::function<void()> saida_;
    std::atomic<bool> sairPedido_ = false;
    bool entregaTentada_ = false;
};

// The process's one controller, made on first use and never destroyed.
ControladorLauncher& ObterControlador();

}  // namespace zu::launcher

// Between the front ends and the workers: the one object that a window or a headless run drives.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "game/resultado.h"
#include "update/atualizador.h"

namespace zu::launcher {

// The status in one word, as the log has it; empty for a value that is no status.
std::string_view PalavraDoStatus(StatusUpdate status);

enum class NumeroDoEvento : int {
    kJogoAbrindo = 0,   // a start with close-on-play begins: the front end may hide
    kJogoNaoAbriu = 1,  // that start failed: the front end shows itself again
};

struct EventoLauncher {
    NumeroDoEvento numero = NumeroDoEvento::kJogoAbrindo;
};

// A front end that wants to know. Notified on its own thread, from `Tick` and `Jogar`.
class ObservadorLauncher {
 public:
    virtual void Notificar(const EventoLauncher& evento) = 0;

 protected:
    ~ObservadorLauncher() = default;
};

// How long things may take; tests shorten it.
struct RegrasDoControlador {
    std::chrono::milliseconds limiteDoDiagnostico{30'000};
    std::chrono::milliseconds esperaConfirmacao{120'000};
    std::chrono::milliseconds esperaDoFim{250};  // for the update run, once the launcher ends
};

// All operations are called from the front end's one thread; the quit handler and the observer are called there too.
class ControladorLauncher {
 public:
    explicit ControladorLauncher(RegrasDoControlador regras = {}) : regras_(regras) {}

    // What `Tick` calls when the launcher has to end.
    void DefinirSaida(std::function<void()> saida) { saida_ = std::move(saida); }
    // Null: nobody is notified. The observer must outlive its use here.
    void DefinirObservador(ObservadorLauncher* observador) { observador_ = observador; }

    // Whether the game folder is this process's to write, as it is until this is told otherwise. Where it is not,
    // `Iniciar` starts no update, and the game's options are left as they are.
    void DefinirPosse(bool possui) { possui_ = possui; }

    // Logs the title line and starts the update run.
    void Iniciar();

    // One step of polling; the front ends make one every 100 ms. Throws nothing for trouble with files or threads: that
    // is logged.
    void Tick();

    // Whether the game may be started now. Throws std::filesystem::filesystem_error when "Zu.exe" cannot be asked for.
    [[nodiscard]] bool PodeJogar() const;
    // The same for who keeps asking: when the question fails the answer is no, and the log has the reason once.
    [[nodiscard]] bool PodeJogarAgora();
    // Starts the game on a thread of its own; does nothing while that is not possible. Throws std::system_error when
    // the thread cannot be made.
    void Jogar();

    // A front end's action by name: "registrar", "driver", "pasta", "log". Any other word does nothing.
    void Acao(std::string_view palavra);

    [[nodiscard]] bool Atualizando() const { return atualizador_.EmCurso(); }
    // A start of the game is under way until `Tick` has acted on how it went.
    [[nodiscard]] bool AbrindoJogo() const { return partida_->abrindo || partida_->sair || partida_->mostrar; }
    // From the start of a run until all that comes of it by itself has been done.
    [[nodiscard]] bool Ocupado() const { return Atualizando() || AbrindoJogo() || EntregaPorFazer(); }
    // Whether an update or a start of the game has begun since this was last asked; it may have ended meanwhile.
    bool TomarComeco() { return std::exchange(comecou_, false); }
    // With `--jogar`, until the start by itself has been made.
    [[nodiscard]] bool InicioAutomaticoPorFazer() const;
    [[nodiscard]] EstadoAtualizacao Estado() const { return atualizador_.Estado(); }

    // What a run that has just ended has to tell the player: why a start failed, or how the update went wrong. Empty
    // when there is nothing, as there is not where no update was to be had. Handed out once.
    std::string TomarMensagemFinal();

    // The report has come and the game's options have been corrected by it, where that was called for.
    [[nodiscard]] bool ApiConferida() const { return apiConferida_; }

    // Tells the update run to stop; returns at once.
    void Cancelar() { atualizador_.Cancelar(); }
    // Before the process ends: cancels the update run, waits a moment for it, saves the file cache and logs the exit
    // code. Only the first call does so. False when the run was not over by then and may still write to the folder.
    bool Encerrar(int codigo);

 private:
    // What a start of the game tells back. Shared with its thread, which may outlive the controller.
    struct Partida {
        std::atomic<bool> abrindo = false;
        std::atomic<bool> sair = false;
        std::atomic<bool> mostrar = false;
        std::recursive_mutex trava;
        std::string erro;  // of the last start
    };

    static void AbrirNaThread(const std::shared_ptr<Partida>& partida, bool fechar, std::chrono::milliseconds espera);

    void Notificar(NumeroDoEvento numero);
    [[nodiscard]] bool EntregaPorFazer() const;
    bool EntregarTrocas();
    void IniciarDiagnostico();
    void CorrigirApi(const SituacaoRequisitos& requisitos);
    void JogarSozinho(const SituacaoRequisitos& requisitos);

    RegrasDoControlador regras_;
    Atualizador atualizador_;
    std::function<void()> saida_;
    ObservadorLauncher* observador_ = nullptr;
    std::string falhaRegistrada_;  // what `PodeJogarAgora` has logged last
    std::shared_ptr<Partida> partida_ = std::make_shared<Partida>();
    bool possui_ = true;
    bool comecou_ = false;
    bool encerrado_ = false;
    bool entregaTentada_ = false;
    bool diagnosticoIniciado_ = false;
    bool apiConferida_ = false;
    bool inicioAutomaticoFeito_ = false;
    bool sentencaEntregue_ = false;
};

// The process's one controller, made on first use and never destroyed.
ControladorLauncher& ObterControlador();

}  // namespace zu::launcher

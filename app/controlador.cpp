#include "app/controlador.h"

#include <array>
#include <exception>
#include <utility>

#include "core/config.h"
#include "core/excecao.h"
#include "core/log.h"
#include "core/thread_solta.h"
#include "core/utf16.h"
#include "game/jogo.h"
#include "game/opcoes.h"
#include "game/requisitos.h"
#include "game/veredito.h"
#include "update/trocas.h"

namespace zu::launcher {
namespace {

// A file that some other program holds open must not make the launcher restart for ever.
constexpr std::uint32_t kMaximoDeReaberturas = 2;

// A run that ended so leaves the game as it can be played.
bool PermiteJogar(StatusUpdate status) {
    return status == StatusUpdate::kPronto || status == StatusUpdate::kSemServidor || status == StatusUpdate::kErro;
}

bool PedeExplicacao(StatusUpdate status) {
    return status == StatusUpdate::kSemServidor || status == StatusUpdate::kErro || status == StatusUpdate::kJogoAberto;
}

}  // namespace

std::string_view PalavraDoStatus(StatusUpdate status) {
    constexpr std::array<std::string_view, 10> kPalavras{"parado",      "conectando", "verificando", "baixando",
                                                         "aplicando",   "pronto",     "semservidor", "erro",
                                                         "reiniciando", "jogoaberto"};
    const auto codigo = static_cast<std::size_t>(status);
    return codigo < kPalavras.size() ? kPalavras[codigo] : std::string_view{};
}

void ControladorLauncher::Iniciar() {
    const ConfigLauncher& config = ObterConfig();
    LogLinha("ZuLauncher {} | cliente {} | update {}{}", VersaoDoLauncher(), ParaUtf8(config.pastaJogo.native()),
             config.urlUpdate.empty() ? "(não configurado)" : std::string_view(config.urlUpdate),
             config.reaberto > 0 ? " | reaberto pelo UpdaterHelper" : "");
    encerrado_ = false;
    // What was found out for an earlier run is not this one's answer.
    diagnosticoIniciado_ = false;
    apiConferida_ = false;
    RenovarRequisitos();
    if (!possui_) return;
    comecou_ = true;
    sentencaEntregue_ = false;
    entregaTentada_ = false;
    atualizador_.Iniciar(config.reparar);
}

void ControladorLauncher::Tick() {
    if (partida_->mostrar.exchange(false)) Notificar(NumeroDoEvento::kJogoNaoAbriu);
    if (partida_->sair.exchange(false) && saida_) {
        saida_();
        return;
    }
    // Asked for before the status: a run that ends in between is then seen as still running, not as ended too early.
    const bool atualizando = Atualizando();
    const StatusUpdate status = Estado().status;
    if (status == StatusUpdate::kReiniciando && !atualizando && !std::exchange(entregaTentada_, true) &&
        EntregarTrocas()) {
        return;
    }
    if (!atualizando && status != StatusUpdate::kReiniciando) IniciarDiagnostico();
    const SituacaoRequisitos requisitos = ObterSituacaoRequisitos();
    CorrigirApi(requisitos);
    JogarSozinho(requisitos);
}

void ControladorLauncher::Notificar(NumeroDoEvento numero) {
    if (observador_ != nullptr) observador_->Notificar({numero});
}

bool ControladorLauncher::EntregaPorFazer() const {
    return !entregaTentada_ && Estado().status == StatusUpdate::kReiniciando;
}

// True when the launcher has to quit for the helper; where there is none to quit for, the run ends in an error that the
// player sees.
bool ControladorLauncher::EntregarTrocas() {
    if (ObterConfig().reaberto >= kMaximoDeReaberturas) {
        LogLinha("UpdaterHelper: {}",
                 "arquivos ainda em uso depois de duas trocas pelo UpdaterHelper (outro programa usando a pasta do "
                 "jogo?)");
        atualizador_.Falhar(
            "Não foi possível trocar alguns arquivos em uso. Feche outros programas abertos na pasta do jogo e clique "
            "em Tentar de novo.");
        return false;
    }
    std::string erro;
    if (!IniciarUpdaterHelper(atualizador_.Trocas(), erro)) {
        LogLinha("UpdaterHelper: {}", erro);
        atualizador_.Falhar(erro);
        return false;
    }
    if (saida_) saida_();
    return true;
}

void ControladorLauncher::IniciarDiagnostico() {
    if (std::exchange(diagnosticoIniciado_, true)) return;
    try {
        IniciarRequisitos(regras_.limiteDoDiagnostico);
    } catch (const std::exception& falha) {
        LogLinha("Requisitos: {}", TextoDaExcecao(falha));
    }
}

// An interface that does not run here gives way to the other one, if that one does.
void ControladorLauncher::CorrigirApi(const SituacaoRequisitos& requisitos) {
    if (!possui_ || !requisitos.concluido || !requisitos.relatorioLido || std::exchange(apiConferida_, true)) return;
    OpcoesJogo opcoes = LerOpcoesJogo();
    const std::string api = ApiQueRoda(opcoes.api, requisitos);
    if (api == opcoes.api) return;
    LogLinha("A API gravada ({}) não roda neste PC: trocando para a outra", opcoes.api);
    opcoes.api = api;
    GravarOpcoesJogo(opcoes);
}

void ControladorLauncher::JogarSozinho(const SituacaoRequisitos& requisitos) {
    if (!InicioAutomaticoPorFazer() || !requisitos.concluido || !PodeJogarAgora()) return;
    inicioAutomaticoFeito_ = true;
    try {
        Jogar();
    } catch (const std::exception& falha) {
        LogLinha("Jogar: {}", TextoDaExcecao(falha));
    }
}

bool ControladorLauncher::InicioAutomaticoPorFazer() const {
    return ObterConfig().jogar && !inicioAutomaticoFeito_;
}

bool ControladorLauncher::PodeJogar() const {
    return !Ocupado() && PermiteJogar(Estado().status) && TemJogo();
}

bool ControladorLauncher::PodeJogarAgora() {
    try {
        return PodeJogar();
    } catch (const std::exception& falha) {
        std::string texto = TextoDaExcecao(falha);
        if (texto != falhaRegistrada_) LogLinha("Jogar: {}", texto);
        falhaRegistrada_ = std::move(texto);
        return false;
    }
}

void ControladorLauncher::Jogar() {
    if (!PodeJogar() || partida_->abrindo.exchange(true)) return;
    comecou_ = true;
    {
        const std::lock_guard guarda(partida_->trava);
        partida_->erro.clear();
    }
    const bool fechar = LerOpcoesJogo().fecharAoJogar != 0;
    if (fechar) Notificar(NumeroDoEvento::kJogoAbrindo);
    try {
        SoltarThread(&ControladorLauncher::AbrirNaThread, partida_, fechar, regras_.esperaConfirmacao);
    } catch (...) {
        partida_->abrindo = false;
        if (fechar) Notificar(NumeroDoEvento::kJogoNaoAbriu);
        throw;
    }
}

void ControladorLauncher::AbrirNaThread(const std::shared_ptr<Partida>& partida, bool fechar,
                                        std::chrono::milliseconds espera) {
    std::string erro;
    bool abriu = false;
    try {
        abriu = AbrirJogo(erro, espera);
    } catch (const std::exception& falha) {
        erro = TextoDaExcecao(falha);
    }
    if (!abriu) {
        const std::lock_guard guarda(partida->trava);
        partida->erro = erro;
        LogLinha("Jogar: {}", erro);
    }
    // Last, since the front end may act on it at once; the wish that goes with it is there before.
    if (fechar) (abriu ? partida->sair : partida->mostrar) = true;
    partida->abrindo = false;
}

void ControladorLauncher::Acao(std::string_view palavra) {
    const ConfigLauncher& config = ObterConfig();
    if (palavra == "registrar") {
        AbrirEndereco(config.urlRegistro.empty() ? config.urlSite : config.urlRegistro);
    } else if (palavra == "driver") {
        const std::string endereco = ObterRequisitos().acaoEndereco;
        if (endereco.starts_with("ms-settings:")) {
            AbrirNoShell(DeUtf8(endereco));
        } else {
            AbrirEndereco(endereco);
        }
    } else if (palavra == "pasta") {
        // With a separator at its end: else a link or a program of the folder's name beside it might open.
        AbrirNoShell((config.pastaJogo / L"").native());
    } else if (palavra == "log") {
        AbrirNoShell((config.pastaJogo / L"ZuLauncher.log").native());
    }
}

std::string ControladorLauncher::TomarMensagemFinal() {
    {
        const std::lock_guard guarda(partida_->trava);
        if (!partida_->erro.empty()) return std::exchange(partida_->erro, {});
    }
    const EstadoAtualizacao estado = Estado();
    if (Atualizando() || !PedeExplicacao(estado.status) || std::exchange(sentencaEntregue_, true)) return {};
    const bool semServico = estado.status == StatusUpdate::kSemServidor && ObterConfig().urlUpdate.empty();
    return semServico ? std::string() : estado.texto;
}

bool ControladorLauncher::Encerrar(int codigo) {
    if (std::exchange(encerrado_, true)) return !Atualizando();
    atualizador_.Cancelar();
    const bool terminou = atualizador_.Aguardar(regras_.esperaDoFim);
    atualizador_.GuardarCache();
    LogLinha("ZuLauncher encerrado (código {})", codigo);
    return terminou;
}

ControladorLauncher& ObterControlador() {
    static auto* const controlador = new ControladorLauncher;
    return *controlador;
}

}  // namespace zu::launcher

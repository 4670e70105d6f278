#include "app/controlador.h"

#include <array>

#include "core/config.h"
#include "core/log.h"
#include "core/utf16.h"
#include "update/trocas.h"

namespace zu::launcher {
namespace {

// A file that some other program holds open must not make the launcher restart for ever.
constexpr std::uint32_t kMaisReaberturas = 2;

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
    atualizador_.Iniciar(config.reparar);
}

void ControladorLauncher::Tick() {
    if (sairPedido_.exchange(false) && saida_) {
        saida_();
        return;
    }
    const bool atualizando = Atualizando();
    if (Estado().status == StatusUpdate::kReiniciando && !atualizando && !entregaTentada_) {
        entregaTentada_ = true;
        EntregarTrocas();
    }
}

// The launcher quits for the helper; where there is none to quit for, the run ends in an error that the player sees.
void ControladorLauncher::EntregarTrocas() {
    if (ObterConfig().reaberto >= kMaisReaberturas) {
        LogLinha("UpdaterHelper: {}",
                 "arquivos ainda em uso depois de duas trocas pelo UpdaterHelper (outro programa usando a pasta do "
                 "jogo?)");
        atualizador_.Falhar(
            "Não foi possível trocar alguns arquivos em uso. Feche outros programas abertos na pasta do jogo e clique "
            "em Tentar de novo.");
        return;
    }
    std::string erro;
    if (IniciarUpdaterHelper(atualizador_.Trocas(), erro)) {
        if (saida_) saida_();
        return;
    }
    LogLinha("UpdaterHelper: {}", erro);
    atualizador_.Falhar(erro);
}

void ControladorLauncher::Encerrar(std::chrono::milliseconds limite) {
    atualizador_.Cancelar();
    atualizador_.Aguardar(limite);
}

ControladorLauncher& ObterControlador() {
    static auto* const controlador = new ControladorLauncher;
    return *controlador;
}

}  // namespace zu::launcher

#include "update/atualizador.h"
#include "update/lista.h"

#include <windows.h>

#include <exception>
#include <system_error>
#include <utility>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/excecao.h"
#include "core/log.h"
#include "update/agendador.h"
#include "update/blocos.h"
#include "update/busca_lista.h"
#include "update/espaco.h"
#include "update/estado.h"
#include "update/jogo_aberto.h"
#include "update/limpeza.h"
#include "update/remocao.h"
#include "update/verificacao.h"

namespace zu::launcher {
namespace {

// Against a server that never settles.
constexpr int kMaximoDeRecomecos = 2;

bool PodeComecar(Andamento& andamento) {
    if (ObterConfig().urlUpdate.empty()) {
        andamento.Definir(StatusUpdate::kSemServidor,
                          "Atualização automática não configurada (Launcher.emu: AutoUpdate/UpdateUrl no Forjal).");
        return false;
    }
    if (JogoAberto(ObterConfig().pastaJogo)) {
        andamento.Definir(StatusUpdate::kJogoAberto, "O jogo está aberto: feche o Zu para verificar as atualizações.");
        return false;
    }
    return true;
}

// The system does not go to sleep while this lives on a thread; the display may.
class SemDormir {
 public:
    SemDormir() { SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED); }
    SemDormir(const SemDormir&) = delete;
    SemDormir& operator=(const SemDormir&) = delete;
    ~SemDormir() { SetThreadExecutionState(ES_CONTINUOUS); }
};

std::string FraseFinal(bool reparar, std::size_t baixados, std::size_t removidos) {
    if (baixados == 0) return Formatar("Cliente em dia{}.", reparar ? " — nenhum arquivo corrompido" : "");
    const std::string remocoes = removidos == 0 ? std::string() : Formatar(", {} removido(s)", removidos);
    return Formatar("Atualização concluída: {} arquivo(s) novo(s){}.", baixados, remocoes);
}

// The installed state counts from here on, also when the last swaps are still to be made.
void Concluir(Andamento& andamento, const update::UpdateList& lista, const std::string& frase) {
    const std::uint64_t pendentes = andamento.Copia().estacionados;
    if (pendentes == 0) {
        // What a hand-off or a helper that was interrupted left: nobody waits for it any more.
        DeleteFileW(CaminhoPendente().c_str());
        DeleteFileW(ComSufixo(CaminhoPendente(), L".tmp").c_str());
        GravarEstado(lista.seq, lista.versao);
        andamento.Definir(StatusUpdate::kPronto, frase);
        return;
    }
    andamento.Definir(StatusUpdate::kReiniciando, "Concluindo a atualização: o launcher vai reiniciar...");
    LogLinha("[update] {} arquivo(s) em uso: UpdaterHelper troca depois que o launcher fechar", pendentes);
    GravarEstado(lista.seq, lista.versao);
}

}  // namespace

Atualizador::Atualizador() : blocos_(std::make_unique<ReusoDeBlocos>()) {}

Atualizador::~Atualizador() {
    Cancelar();
    if (trabalhador_.joinable()) trabalhador_.join();
}

void Atualizador::Iniciar(bool reparar) {
    if (emCurso_.exchange(true)) return;
    if (trabalhador_.joinable()) trabalhador_.join();
    cancelar_ = false;
    andamento_.Zerar(reparar);
    try {
        trabalhador_ = std::thread(&Atualizador::RodarProtegido, this, reparar);
    } catch (const std::system_error& falha) {
        Falhar(Formatar("Falha inesperada na atualização: {}.", TextoDaExcecao(falha)));
        emCurso_ = false;
    }
}

void Atualizador::RodarProtegido(bool reparar) noexcept {
    const SemDormir semDormir;
    // Ordinary trouble never throws; what arrives here is memory or threads running out.
    try {
        Rodar(reparar);
    } catch (const std::exception& falha) {
        andamento_.Definir(StatusUpdate::kErro,
                           Formatar("Falha inesperada na atualização: {}.", TextoDaExcecao(falha)));
    }
    cache_.Gravar();
    const std::lock_guard guarda(travaAviso_);
    emCurso_ = false;
    aviso_.notify_all();
}

void Atualizador::Cancelar() {
    const std::lock_guard guarda(travaAviso_);
    cancelar_ = true;
    aviso_.notify_all();
}

bool Atualizador::Aguardar(std::chrono::milliseconds limite) {
    std::unique_lock guarda(travaAviso_);
    return aviso_.wait_for(guarda, limite, [this] { return !emCurso_; });
}

bool Atualizador::EsperarOuCancelar(std::chrono::milliseconds pausa) {
    std::unique_lock guarda(travaAviso_);
    return aviso_.wait_for(guarda, pausa, [this] { return cancelar_.load(); });
}

void Atualizador::Rodar(bool reparar) {
    if (!PodeComecar(andamento_)) return;
    ListaObtida obtida;
    if (!ObterLista(*this, obtida)) return;
    if (reparar) ApagarSobras(obtida.lista);
    blocos_->Esquecer();
    std::size_t baixados = 0;
    for (int recomecos = 0;; ++recomecos) {
        blocos_->Usar(obtida.lista);
        std::vector<std::size_t> indices;
        // What a run that begins anew has read already it need not read again.
        if (!VerificarArquivos(*this, obtida.lista, reparar && recomecos == 0, indices)) return;
        baixados += indices.size();
        if (indices.empty()) break;
        if (!HaEspaco(andamento_, obtida.lista, indices)) return;
        ListaObtida outra;
        bool publicada = false;
        const auto recomecar = [&] {
            publicada = recomecos < kMaximoDeRecomecos && ObterOutraLista(*this, obtida, outra);
            return publicada;
        };
        if (BaixarTodos(*this, obtida.lista, indices, recomecar)) break;
        if (!publicada) return;
        LogLinha("[update] o servidor publicou outra lista (seq {}): recomeçando com ela", outra.lista.seq);
        obtida = std::move(outra);
        andamento_.Recomecar();
    }
    andamento_.Definir(StatusUpdate::kAplicando, "Aplicando a atualização...");
    const std::size_t removidos = RemoverArquivos(*this, obtida.lista);
    Concluir(andamento_, obtida.lista, FraseFinal(reparar, baixados, removidos));
}

}  // namespace zu::launcher

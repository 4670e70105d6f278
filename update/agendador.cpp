#include "update/agendador.h"
#include "update/lista.h"

#include <algorithm>
#include <condition_variable>
#include <optional>
#include <thread>
#include <utility>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/log.h"
#include "core/texto.h"
#include "update/aplicar.h"
#include "update/velocidade.h"

namespace zu::launcher {
namespace {

constexpr int kTentativas = 3;
constexpr int kTentativasUmAUm = 2;
constexpr std::chrono::milliseconds kIntervaloDoProgresso{100};
constexpr std::chrono::milliseconds kPacienciaDaRodada{5000};

std::string TextoDoTamanho(std::uint64_t bytes) {
    constexpr double kPorMiB = 9.5367431640625e-7;  // 2^-20
    return Formatar("{:.1f} MB", static_cast<double>(bytes) * kPorMiB);
}

std::uint64_t SomarTamanhos(const update::UpdateList& lista, std::span<const std::size_t> indices) {
    std::uint64_t soma = 0;
    for (const std::size_t indice : indices)
        soma += lista.itens[indice].tamanho;
    return soma;
}

// The workers of one pass. Destroying it waits for them.
class Equipe {
 public:
    Equipe(ContextoDownload& contexto, std::span<const std::size_t> indices, int tentativas)
        : contexto_(contexto), indices_(indices), tentativas_(tentativas) {}

    void Comecar(std::size_t quantos) {
        // Those already at work stop at their next item when another one cannot be made.
        struct Freio {
            Equipe& equipe;
            bool solto = false;
            ~Freio() {
                if (!solto) equipe.proximo_ = equipe.indices_.size();
            }
        } freio{*this};
        ativos_ = quantos;
        for (std::size_t i = 0; i < quantos; ++i)
            threads_.emplace_back([this] { Trabalhar(); });
        freio.solto = true;
    }

    // True once all have ended; waits for that as long as `limite`.
    bool Terminaram(std::chrono::milliseconds limite) {
        std::unique_lock guarda(trava_);
        return fim_.wait_for(guarda, limite, [this] { return ativos_ == 0; });
    }

 private:
    void Trabalhar() {
        while (const std::optional<Vez> vez = Proxima())
            AplicarItem(contexto_, *vez, tentativas_);
        const std::lock_guard guarda(trava_);
        if (--ativos_ == 0) fim_.notify_all();
    }

    // None: cancelled, or all are done; nothing waits for the disk then but what another worker has just handed over,
    // and will wait for.
    std::optional<Vez> Proxima() {
        const Atualizador& atualizador = contexto_.atualizador;
        const std::size_t posicao = atualizador.Cancelado() ? indices_.size() : proximo_.fetch_add(1);
        if (posicao < indices_.size()) return Vez{indices_[posicao]};
        std::optional<Vez> vez;
        do {
            vez = contexto_.acabamento.Devolvida();
        } while (vez && atualizador.Cancelado());
        return vez;
    }

    ContextoDownload& contexto_;
    std::span<const std::size_t> indices_;
    int tentativas_;
    std::atomic<std::size_t> proximo_ = 0;
    std::mutex trava_;
    std::condition_variable fim_;
    std::size_t ativos_ = 0;
    std::vector<std::jthread> threads_;  // last, so that they end before what they use
};

void TentarDeNovo(ContextoDownload& contexto) {
    std::vector<std::size_t> indices;
    {
        const std::lock_guard guarda(contexto.travaFalhas);
        for (const auto& [caminho, falha] : contexto.falhas)
            indices.push_back(falha.indice);
        contexto.falhas.clear();
    }
    LogLinha("[update] {} arquivo(s) não vieram; baixando um de cada vez", indices.size());
    RodarTrabalhadores(contexto, indices, 1, kTentativasUmAUm);
}

// True when everything came; otherwise the status tells why not, unless the run begins anew.
bool Desfecho(ContextoDownload& contexto, const std::function<bool()>& recomecar) {
    Andamento& andamento = contexto.atualizador.ObterAndamento();
    if (contexto.atualizador.Cancelado()) {
        andamento.Definir(StatusUpdate::kErro, "Download cancelado.");
        return false;
    }
    if (contexto.falhas.empty()) return true;
    if (recomecar && recomecar()) return false;
    const std::size_t quantas = contexto.falhas.size();
    andamento.Definir(StatusUpdate::kErro,
                      Formatar("{} arquivo(s) não baixaram. {}{}", quantas, contexto.falhas.begin()->second.erro,
                               quantas > 1 ? " (veja o ZuLauncher.log)" : ""));
    return false;
}

}  // namespace

ContextoDownload::ContextoDownload(Atualizador& dono, const update::UpdateList& daLista)
    : atualizador(dono),
      lista(daLista),
      executavel(PastaDoPrograma() / L"ZuLauncher.exe"),
      paciencia(kPacienciaDaRodada, &dono.Cancelamento()) {}

int NumeroDeConexoes(int pedidas, std::string_view urlBase) {
    constexpr int kParaGithub = 8;
    if (pedidas >= 1) return pedidas;
    return MinusculasAscii(std::string(urlBase)).find("github") == std::string::npos ? 1 : kParaGithub;
}

bool BaixarTodos(Atualizador& atualizador, const update::UpdateList& lista, std::span<const std::size_t> indices,
                 const std::function<bool()>& recomecar) {
    const std::uint64_t bytes = SomarTamanhos(lista, indices);
    const int conexoes = NumeroDeConexoes(ObterConfig().conexoes, ObterConfig().urlUpdate);
    atualizador.ObterAndamento().Comecar(
        StatusUpdate::kBaixando, Formatar("Baixando {} arquivo(s) ({})...", indices.size(), TextoDoTamanho(bytes)),
        indices.size(), bytes);
    LogLinha("[update] baixando {} arquivo(s), {}, {} conexão(ões)", indices.size(), TextoDoTamanho(bytes), conexoes);

    ContextoDownload contexto(atualizador, lista);
    RodarTrabalhadores(contexto, indices, conexoes, kTentativas);
    if (!contexto.falhas.empty() && !atualizador.Cancelado()) TentarDeNovo(contexto);
    atualizador.Cache().Gravar();
    return Desfecho(contexto, recomecar);
}

void RodarTrabalhadores(ContextoDownload& contexto, std::span<const std::size_t> indices, int conexoes,
                        int tentativas) {
    Equipe equipe(contexto, indices, tentativas);
    equipe.Comecar(std::min(indices.size(), static_cast<std::size_t>(conexoes)));

    Andamento& andamento = contexto.atualizador.ObterAndamento();
    VelocidadeMedia velocidade(std::chrono::steady_clock::now(), contexto.bytesBaixados);
    for (bool fim = false; !fim;) {
        fim = equipe.Terminaram(kIntervaloDoProgresso);
        const std::uint64_t bytes = contexto.bytesBaixados;
        andamento.DefinirVelocidade(velocidade.Amostrar(std::chrono::steady_clock::now(), bytes));
        andamento.DefinirBytes(bytes);
        contexto.atualizador.Cache().GravarDeVezEmQuando();
    }
}

}  // namespace zu::launcher

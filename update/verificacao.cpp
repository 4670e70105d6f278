#include "update/verificacao.h"
#include "update/lista.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_set>
#include <utility>

#include "core/arquivo.h"
#include "core/log.h"
#include "core/texto.h"
#include "update/caminhos.h"
#include "update/cliente.h"
#include "update/hash_arquivo.h"
#include "update/mutirao.h"
#include "update/transferencia.h"

namespace zu::launcher {
namespace {

enum class Situacao : std::uint8_t {
    kProtegido,
    kIgual,
    kFaltando,
    kDiferente,
    kALer,      // known once it has been read
    kRepetido,  // as `kALer`, but an earlier item has the same path: the file is read for that one
};

bool Corresponde(const EntradaCache& entrada, const update::ItemLista& item) {
    return entrada.tamanho == item.tamanho && entrada.crc == item.crc &&
           (item.sha256.empty() || entrada.sha256 == item.sha256);
}

std::uint64_t SomarTamanhos(const update::UpdateList& lista) {
    std::uint64_t soma = 0;
    for (const update::ItemLista& item : lista.itens)
        soma += item.tamanho;
    return soma;
}

// First a look at every file, by several threads; then what the cache does not know is read, by several again, while
// the calling thread goes through the items in order and says what has come out.
class Verificacao {
 public:
    Verificacao(Atualizador& atualizador, const update::UpdateList& lista, bool reparar)
        : atualizador_(atualizador), lista_(lista), reparar_(reparar), situacoes_(lista.itens.size()) {}

    void Olhar() {
        const std::size_t fatias = (lista_.itens.size() + kFatia - 1) / kFatia;
        std::vector<std::vector<ALer>> achados(fatias);
        const std::vector<Mutirao::Tarefa> tarefas(fatias);
        const auto olhar = [&](std::size_t fatia) {
            OlharFatia(fatia * kFatia, achados[fatia]);
            return Mutirao::Leitura();
        };
        // A few files do not pay for a thread.
        std::optional<Mutirao> mutirao;
        if (fatias == 1) {
            olhar(0);
        } else {
            mutirao.emplace(tarefas, olhar);
        }
        std::unordered_set<std::string> aLer;
        for (std::size_t fatia = 0; fatia < fatias; ++fatia) {
            if (mutirao && !Esperar(*mutirao, fatia)) return;
            for (ALer& um : achados[fatia]) {
                if (!aLer.insert(std::move(um.chave)).second) {
                    situacoes_[um.indice] = Situacao::kRepetido;
                    continue;
                }
                leituras_.push_back({um.indice, um.info.modificado});
                tarefas_.push_back({um.info.tamanho, um.info.tamanho != lista_.itens[um.indice].tamanho});
            }
        }
    }

    void LerERelatar(std::vector<std::size_t>& indices) {
        Mutirao mutirao(tarefas_, [this](std::size_t tarefa) { return Abrir(tarefa); });
        std::size_t tarefa = 0;
        for (std::size_t i = 0; i < lista_.itens.size(); ++i) {
            // Until then its situation is the reading thread's to write.
            if (tarefa < leituras_.size() && leituras_[tarefa].indice == i && !Esperar(mutirao, tarefa++)) return;
            if (atualizador_.Cancelado()) return;
            if (situacoes_[i] == Situacao::kRepetido) ConhecerRepetido(i);
            Relatar(i, indices);
        }
    }

 private:
    static constexpr std::size_t kFatia = 256;  // items that one thread looks at in a row

    struct Leitura {
        std::size_t indice = 0;
        std::uint64_t modificado = 0;  // when it was looked at
    };
    struct ALer {
        std::size_t indice = 0;
        std::string chave;
        InfoArquivo info;
    };
    // What a look needs; kept from one to the next for its memory.
    struct Olho {
        CaminhosNoCliente caminhos;
        EntradaCache entrada;
    };

    void OlharFatia(std::size_t primeiro, std::vector<ALer>& aLer) {
        Olho olho;
        std::uint64_t bytes = 0;
        std::size_t prontos = 0;
        const std::size_t fim = std::min(primeiro + kFatia, lista_.itens.size());
        for (std::size_t i = primeiro; i < fim && !atualizador_.Cancelado(); ++i) {
            const std::string normal = update::NormalizarCaminho(lista_.itens[i].caminho);
            std::string chave = MinusculasAscii(normal);
            InfoArquivo info;
            situacoes_[i] = OlharUm(olho, lista_.itens[i], normal, chave, info);
            if (situacoes_[i] == Situacao::kALer) {
                aLer.push_back({i, std::move(chave), info});
            } else {
                bytes += lista_.itens[i].tamanho;
                ++prontos;
            }
        }
        SomarBytes(bytes);
        atualizador_.ObterAndamento().SomarArquivos(prontos);
    }

    Situacao OlharUm(Olho& olho, const update::ItemLista& item, const std::string& normal, const std::string& chave,
                     InfoArquivo& info) const {
        if (update::ChaveProtegida(chave)) return Situacao::kProtegido;
        // Each file by itself: of one with several names the listing of its folder may tell an older size and time.
        if (!LerInfoArquivo(olho.caminhos.De(normal), info) || info.Pasta()) return Situacao::kFaltando;
        if (reparar_ || !atualizador_.Cache().Achar(chave, info, olho.entrada)) return Situacao::kALer;
        return Corresponde(olho.entrada, item) ? Situacao::kIgual : Situacao::kDiferente;
    }

    Mutirao::Leitura Abrir(std::size_t tarefa) {
        if (atualizador_.Cancelado()) return {};
        const std::size_t indice = leituras_[tarefa].indice;
        const std::string normal = update::NormalizarCaminho(lista_.itens[indice].caminho);
        atualizador_.ObterAndamento().DefinirArquivo(normal);
        const auto arquivo = std::make_shared<HandleArquivo>(AbrirParaHash(CaminhoNoCliente(normal)));
        return [this, tarefa, arquivo] { Ler(leituras_[tarefa], *arquivo); };
    }

    void Ler(const Leitura& leitura, const HandleArquivo& arquivo) {
        const update::ItemLista& item = lista_.itens[leitura.indice];
        std::uint64_t restam = item.tamanho;
        const auto progresso = [&](std::span<const std::uint8_t> bloco) {
            const std::uint64_t contam = std::min<std::uint64_t>(bloco.size(), restam);
            restam -= contam;
            SomarBytes(contam);
        };
        const ResultadoHash hash = HashDoAberto(arquivo, progresso, &atualizador_.Cancelamento());
        if (atualizador_.Cancelado() && !hash.ok) return;
        situacoes_[leitura.indice] = Situacao::kDiferente;
        if (hash.ok) {
            EntradaCache entrada{.tamanho = hash.bytes,
                                 .modificado = leitura.modificado,
                                 .sha256 = ParaHex(hash.sha256),
                                 .crc = hash.crc};
            if (Corresponde(entrada, item)) situacoes_[leitura.indice] = Situacao::kIgual;
            atualizador_.Cache().Registrar(update::ChaveDoCaminho(item.caminho), std::move(entrada));
        }
        Feito(restam);
    }

    // False when the run has been cancelled before the task was done.
    bool Esperar(Mutirao& mutirao, std::size_t tarefa) {
        constexpr std::chrono::milliseconds kEntreGravacoes{100};
        while (!mutirao.Esperar(tarefa, kEntreGravacoes)) {
            if (atualizador_.Cancelado()) return false;
            atualizador_.Cache().GravarDeVezEmQuando();
        }
        atualizador_.Cache().GravarDeVezEmQuando();
        return true;
    }

    // The earlier item of this path has been read: what came of it stands in the cache.
    void ConhecerRepetido(std::size_t indice) {
        const update::ItemLista& item = lista_.itens[indice];
        InfoArquivo info;
        EntradaCache entrada;
        const std::string normal = update::NormalizarCaminho(item.caminho);
        const bool igual = LerInfoArquivo(CaminhoNoCliente(normal), info) &&
                           atualizador_.Cache().Achar(MinusculasAscii(normal), info, entrada) &&
                           Corresponde(entrada, item);
        situacoes_[indice] = igual ? Situacao::kIgual : Situacao::kDiferente;
        Feito(item.tamanho);
    }

    void Relatar(std::size_t indice, std::vector<std::size_t>& indices) {
        const Situacao situacao = situacoes_[indice];
        const update::ItemLista& item = lista_.itens[indice];
        if (situacao == Situacao::kProtegido || (situacao == Situacao::kIgual && item.partes == 0)) return;
        const std::string normal = update::NormalizarCaminho(item.caminho);
        // Parts that could not be deleted once they were joined.
        if (situacao == Situacao::kIgual) {
            ApagarPartes(ComSufixo(CaminhoNoCliente(normal), L".upd"), item.partes);
            return;
        }
        // A path listed twice is fetched once: two downloads would write one temporary file.
        if (!pedidos_.insert(MinusculasAscii(normal)).second) return;
        const std::string_view palavra = situacao == Situacao::kFaltando ? "faltando" : "diferente";
        LogLinha("[update] {}: {}", normal, palavra);
        atualizador_.ObterAndamento().Anotar({normal, std::string(palavra)});
        indices.push_back(indice);
    }

    void SomarBytes(std::uint64_t bytes) {
        const std::lock_guard guarda(travaDosBytes_);
        bytesFeitos_ += bytes;
        atualizador_.ObterAndamento().DefinirBytes(bytesFeitos_);
    }

    // An item is settled, whatever came of it; `bytes`: those of it that do not count yet.
    void Feito(std::uint64_t bytes) {
        SomarBytes(bytes);
        atualizador_.ObterAndamento().SomarArquivos(1);
    }

    Atualizador& atualizador_;
    const update::UpdateList& lista_;
    bool reparar_;
    std::vector<Situacao> situacoes_;
    std::vector<Leitura> leituras_;
    std::vector<Mutirao::Tarefa> tarefas_;
    std::unordered_set<std::string> pedidos_;
    std::mutex travaDosBytes_;
    std::uint64_t bytesFeitos_ = 0;
};

}  // namespace

bool VerificarArquivos(Atualizador& atualizador, const update::UpdateList& lista, bool reparar,
                       std::vector<std::size_t>& indices) {
    Andamento& andamento = atualizador.ObterAndamento();
    andamento.Comecar(StatusUpdate::kVerificando,
                      reparar ? "Reparando: conferindo todos os arquivos..." : "Verificando arquivos...",
                      lista.itens.size(), SomarTamanhos(lista));
    atualizador.Cache().Carregar();
    Verificacao verificacao(atualizador, lista, reparar);
    verificacao.Olhar();
    verificacao.LerERelatar(indices);
    atualizador.Cache().Gravar();
    if (!atualizador.Cancelado()) return true;
    andamento.Definir(StatusUpdate::kErro, "Cancelado.");
    return false;
}

}  // namespace zu::launcher

#include "tools/forjal/conferir_url.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <random>
#include <thread>

#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/sonda.h"
#include "update/caminhos.h"
#include "update/http.h"
#include "update/url.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::size_t kConexoes = 16;
constexpr int kTentativas = 3;
constexpr std::chrono::milliseconds kEntreTentativas{500};
// Files in a row that got no answer, after which the server is taken for gone.
constexpr int kDesistencia = 32;
// Servers leave smaller files uncompressed, so they prove nothing.
constexpr std::uint64_t kMenorQueComprimem = 4096;
constexpr std::string_view kLista = "UpdateList.txt";

// One file of the list under the check.
struct Alvo {
    const update::ItemLista* item;
    const update::IndiceListado* indice;  // null: the list names none
    bool exemplo = false;                 // of its kind
};

// Whether `novo` shows better than `velho` what happens to files of their kind, at little cost.
bool MelhorExemplo(std::uint64_t novo, std::uint64_t velho) {
    return std::min(novo, velho) >= kMenorQueComprimem ? novo < velho : novo > velho;
}

// A server tells kinds of files by the ending of the name.
std::string Terminacao(std::string_view caminho) {
    const std::size_t ponto = caminho.find_last_of("./\\");
    if (ponto == std::string_view::npos || caminho[ponto] != '.') return {};
    return MinusculasAscii(std::string(caminho.substr(ponto)));
}

std::vector<Alvo> Escolher(const update::UpdateList& lista, Fileira<update::IndiceListado>& indices,
                           std::size_t amostra) {
    std::vector<Alvo> todos;
    for (const update::ItemLista& item : lista.itens)
        todos.push_back({&item, indices.Achar(update::NormalizarCaminho(item.caminho))});
    if (amostra > 0 && amostra < todos.size()) {
        std::vector<Alvo> sorteados;
        std::ranges::sample(todos, std::back_inserter(sorteados), static_cast<std::ptrdiff_t>(amostra),
                            std::mt19937_64(std::random_device()()));
        todos.swap(sorteados);
    }
    std::map<std::string, Alvo*> exemplos;
    for (Alvo& alvo : todos) {
        if (alvo.item->partes > 0 || alvo.item->tamanho == 0) continue;
        Alvo*& exemplo = exemplos[Terminacao(alvo.item->caminho)];
        if (exemplo == nullptr || MelhorExemplo(alvo.item->tamanho, exemplo->item->tamanho)) exemplo = &alvo;
    }
    for (const auto& [terminacao, alvo] : exemplos)
        alvo->exemplo = true;
    return todos;
}

// One try at a file.
struct Tentativa {
    Diferencas diferencas;
    bool passageira = false;  // what differs may be gone at the next one
};

using Pergunta = std::function<Achado(const std::wstring& url)>;

class Conferencia {
 public:
    Conferencia(const PedidoAoServidor& pedido, Andamento& andamento) : pedido_(pedido), andamento_(andamento) {}

    Diferencas Conferir(const Alvo& alvo) {
        Tentativa tentativa;
        if (semResposta_ >= kDesistencia) {
            ++pulados_;
            return {};
        }
        for (int vez = 0; vez < kTentativas; ++vez) {
            if (vez > 0) std::this_thread::sleep_for(kEntreTentativas);
            tentativa = Tentar(alvo);
            if (!tentativa.passageira) break;
        }
        semResposta_ = tentativa.passageira ? semResposta_ + 1 : 0;
        return std::move(tentativa.diferencas);
    }
    // Files that were left unasked because the server no longer answered.
    [[nodiscard]] std::size_t Pulados() const { return pulados_; }

 private:
    Tentativa Tentar(const Alvo& alvo) const {
        Tentativa t;
        const update::ItemLista& item = *alvo.item;
        if ((item.partes > 0 ? FaixasDasPartes(item, t) : FaixaDoArquivo(alvo, t)) && pedido_.completo) {
            Conteudo(item, t);
        }
        if (t.diferencas.linhas.empty() && alvo.indice != nullptr) Indice(alvo, t);
        return t;
    }

    bool FaixaDoArquivo(const Alvo& alvo, Tentativa& t) const {
        const std::uint64_t tamanho = alvo.item->tamanho;
        const std::string nome = NomesPublicados(*alvo.item).front();
        const auto faixa = [tamanho](const std::wstring& url) {
            std::uint64_t total = 0;
            Achado achado = SondarFaixa(url, tamanho - 1, false, total);
            if (achado.motivo.empty() && total != tamanho) {
                achado.motivo = Formatar("Content-Range diz {} bytes, esperado {}", total, tamanho);
            }
            return achado;
        };
        const auto cabeca = [tamanho](const std::wstring& url) { return SondarCabeca(url, tamanho); };
        // An empty file has no range.
        if (tamanho > 0 && !Provar(*alvo.item, nome, faixa, t)) return false;
        return pedido_.completo || !(alvo.exemplo || tamanho == 0) || Provar(*alvo.item, nome, cabeca, t);
    }

    // The parts have no sizes of their own in the list; together they are the file.
    bool FaixasDasPartes(const update::ItemLista& item, Tentativa& t) const {
        std::uint64_t soma = 0;
        bool todas = true;
        for (const std::string& nome : NomesPublicados(item)) {
            std::uint64_t total = 0;
            todas &= Provar(
                item, nome, [&](const std::wstring& url) { return SondarFaixa(url, 0, true, total); }, t);
            soma += total;
        }
        if (todas && soma != item.tamanho) {
            t.diferencas.Diferente(NomeInteiro(item), Formatar("{} bytes, esperado {}", soma, item.tamanho));
        }
        return todas && soma == item.tamanho;
    }

    void Conteudo(const update::ItemLista& item, Tentativa& t) const {
        HashCorrente hash;
        const auto receber = [&](const char* bloco, std::size_t tamanho) {
            hash.Alimentar(bloco, tamanho);
            andamento_.bytes += tamanho;
        };
        for (const std::string& nome : NomesPublicados(item)) {
            if (!Provar(
                    item, nome, [&](const std::wstring& url) { return SondarInteiro(url, receber); }, t))
                return;
        }
        const ResultadoHash resultado = hash.Terminar(true);
        const std::string motivo = DiferencaDoConteudo(item, resultado);
        if (motivo.empty()) return;
        // Some ends of a line look like the end of the file.
        t.passageira = resultado.bytes < item.tamanho;
        t.diferencas.Diferente(NomeInteiro(item), motivo);
    }

    void Indice(const Alvo& alvo, Tentativa& t) const {
        const std::string nome = NomeDoIndice(alvo.indice->caminho);
        HashCorrente hash;
        const auto receber = [&](const char* bloco, std::size_t tamanho) { hash.Alimentar(bloco, tamanho); };
        const auto pergunta = [&](const std::wstring& url) { return SondarInteiro(url, receber); };
        if (!Provar(*alvo.item, nome, pergunta, t)) return;
        const ResultadoHash resultado = hash.Terminar(true);
        const std::string motivo = DiferencaDoIndice(*alvo.indice, resultado);
        if (motivo.empty()) return;
        t.passageira = resultado.bytes < alvo.indice->tamanho;
        t.diferencas.Diferente(nome, motivo);
    }

    // Asks at the address that a launcher uses. When the answer is wrong but right without the query, that is told too.
    bool Provar(const update::ItemLista& item, const std::string& nome, const Pergunta& pergunta, Tentativa& t) const {
        const std::string url = MontarUrl(pedido_.base, nome);
        Achado achado = pergunta(DeUtf8(Formatar("{}?v={:08x}", url, item.crc)));
        if (achado.motivo.empty()) return true;
        if (achado.passageiro) {
            t.passageira = true;
        } else if (pergunta(DeUtf8(url)).motivo.empty()) {
            achado.motivo += "; sem ?v= confere: o servidor trata ?v= como outro arquivo";
        }
        if (achado.falta) {
            t.diferencas.Faltando(nome, achado.motivo);
        } else {
            t.diferencas.Diferente(nome, achado.motivo);
        }
        return false;
    }

    const PedidoAoServidor& pedido_;
    Andamento& andamento_;
    std::atomic<int> semResposta_ = 0;
    std::atomic<std::size_t> pulados_ = 0;
};

// Each call makes an address that no cache on the way has seen.
std::wstring UrlDaLista(const std::string& base) {
    return DeUtf8(Formatar("{}{}?t={}", base, kLista, std::chrono::system_clock::now().time_since_epoch().count()));
}

bool BaixarTexto(const std::string& base, std::string& texto, std::string& erro) {
    return HttpBaixarTexto(UrlDaLista(base), texto, erro, update::kLimiteDaLista);
}

}  // namespace

bool BaixarLista(const std::string& base, const UpdateSigningKey& publica, ListaDoServidor& obtida, std::string& erro) {
    if (!BaixarTexto(base, obtida.texto, erro)) return false;
    const Achado cabeca = SondarLista(UrlDaLista(base));
    if (!ProvarLista(obtida.texto, {&publica, 1}, obtida.lista, erro)) {
        if (!cabeca.motivo.empty()) erro = Formatar("{} ({})", erro, cabeca.motivo);
        return false;
    }
    if (!cabeca.motivo.empty()) obtida.diferencas.Diferente(kLista, cabeca.motivo);
    ConferirValidade(obtida.lista, obtida.diferencas);
    return true;
}

std::vector<Diferencas> ConferirServidor(const PedidoAoServidor& pedido, const ListaDoServidor& obtida, Saida& saida,
                                         std::size_t& conferidos) {
    Fileira<update::IndiceListado> indices = IndicesDe(obtida.lista);
    const std::vector<Alvo> alvos = Escolher(obtida.lista, indices, pedido.amostra);
    conferidos = alvos.size();
    std::vector<Diferencas> diferencas(alvos.size() + 1);
    std::vector<std::uint64_t> tamanhos;
    Andamento andamento;
    andamento.totalDeArquivos = alvos.size();
    for (const Alvo& alvo : alvos) {
        tamanhos.push_back(pedido.completo ? alvo.item->tamanho : 0);
        andamento.totalDeBytes += tamanhos.back();
    }
    Conferencia conferencia(pedido, andamento);
    const auto trabalho = [&](std::size_t i) {
        diferencas[i] = conferencia.Conferir(alvos[i]);
        ++andamento.arquivos;
    };
    EmParalelo(
        tamanhos, trabalho, [&] { andamento.Mostrar(saida, "Conferindo o servidor"); }, kConexoes);

    Diferencas& doFim = diferencas.back();
    if (conferencia.Pulados() > 0) {
        doFim.linhas.push_back(
            Formatar("o servidor parou de atender: {} arquivo(s) não conferido(s)", conferencia.Pulados()));
    }
    std::string agora;
    std::string erro;
    if (!BaixarTexto(pedido.base, agora, erro)) {
        doFim.Diferente(kLista, erro);
    } else if (agora != obtida.texto) {
        doFim.Diferente(kLista, "mudou durante a conferência, ou nem sempre vem a mesma");
    }
    return diferencas;
}

}  // namespace zu::launcher::forjal

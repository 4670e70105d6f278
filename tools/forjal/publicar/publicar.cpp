// "Forjal publicar": a client folder becomes a published one. Everything is prepared and checked first; then the
// published folder changes at once, its signed list last.

#include <windows.h>

#include <algorithm>
#include <mutex>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/publicar/chaves_no_cliente.h"
#include "tools/forjal/publicar/copia.h"
#include "tools/forjal/publicar/mudancas.h"
#include "tools/forjal/publicar/na_saida.h"
#include "tools/forjal/publicar/pedido.h"
#include "tools/forjal/publicar/remocoes.h"
#include "tools/forjal/publicar/trava.h"
#include "tools/forjal/publicar/troca.h"
#include "tools/forjal/relatorio.h"
#include "tools/forjal/varredura.h"
#include "update/blocos_indice.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::size_t kUmDecimo = 10;

class Publicacao {
 public:
    Publicacao(Pedido& pedido, const ChaveDaLista& chave, Saida& saida)
        : pedido_(pedido), chave_(chave), saida_(saida), troca_(pedido.saida) {}

    int Rodar() {
        const bool pronta = Levantar() && Trancar() && ConferirAnterior() && ConferirRemocoes() && OlharSaida() &&
                            Copiar() && ConferirCliente() && Preparar();
        const bool publicada = pronta && (pedido_.simular || Trocar());
        if (publicada) Resumir();
        const bool tudo = publicada && (pedido_.simular || Limpar());
        for (const std::string& recusa : recusas_)
            saida_.Erro(recusa);
        if (!publicada) saida_.Erro(Formatar("{} problema(s): a lista não foi publicada", recusas_.size()));
        return tudo ? kFeito : kRecusado;
    }

 private:
    bool Levantar() {
        const auto aviso = [this](std::size_t quantos) {
            saida_.Progresso(0, Formatar("Listando: {} arquivo(s)", quantos));
        };
        const auto excluido = [this](const std::string& caminho, bool pasta) {
            return pedido_.exclusoes.Exclui(caminho, pasta);
        };
        Varredura varredura = VarrerCliente(pedido_.cliente, excluido, aviso);
        recusas_ = std::move(varredura.recusas);
        arquivos_ = std::move(varredura.arquivos);
        Dividir(arquivos_, pedido_.bytesPorParte);
        if (pedido_.blocos) PedirIndices(arquivos_);
        recusas_.merge(RecusarNomes(arquivos_, [this] { saida_.Progresso(0, "Conferindo os nomes"); }));
        recusas_.merge(RecusarChaves(pedido_.cliente, arquivos_, pedido_.chave));
        recusas_.merge(RecusarRemocoes(arquivos_, pedido_.lista.remover));
        if (arquivos_.empty() && recusas_.empty()) recusas_.insert("--cliente: não há nenhum arquivo para publicar");
        if (varredura.protegidos > 0) {
            saida_.Linha(Formatar("{} arquivo(s) protegido(s) fora da publicação", varredura.protegidos));
        }
        for (const std::string& caminho : varredura.excluidos)
            saida_.Linha(Formatar("excluído: {}", caminho));
        return recusas_.empty();
    }

    bool Trancar() {
        std::string erro;
        if (pedido_.simular) return !TrocaInterrompida(pedido_.saida) || Recusar("--saida: {}", kTrocaInterrompida);
        if (!trava_.Trancar(pedido_.saida, erro)) return Recusar("--saida: {}", erro);
        if (!TrocaInterrompida(pedido_.saida)) return true;
        if (!ContinuarTroca(pedido_.saida, erro)) return Recusar("--saida: {}", erro);
        saida_.Linha("A publicação anterior, interrompida no meio da troca, foi terminada.");
        return true;
    }

    bool ConferirAnterior() {
        std::string erro;
        if (!publicados_.Ler(pedido_.saida, erro)) return Recusar("--saida: {}", erro);
        InfoArquivo info;
        if (!LerInfoArquivo(pedido_.saida / kNomeDaLista, info)) return true;
        if (!LerListaAnterior(pedido_.saida, chave_, pedido_.chaveAnterior, anterior_, erro)) {
            return Recusar("--saida: já há uma lista publicada que não confere com --chave: {}", erro);
        }
        for (update::ItemLista& item : anterior_.itens)
            item.caminho = anterior_.Guardar(update::NormalizarCaminho(item.caminho));
        indicesAnteriores_ = IndicesDe(anterior_);
        if (pedido_.lista.seq >= anterior_.seq) return true;
        return Recusar("--seq: {} é menor que o já publicado, {}", pedido_.lista.seq, anterior_.seq);
    }

    // A client folder that is not all there, a drive that did not come up, must not empty the players' folders.
    bool ConferirRemocoes() {
        const Ausentes ausentes = AcharAusentes(anterior_, arquivos_);
        if (pedido_.removerAusentes) Acrescentar(ausentes.caminhos, pedido_.lista.remover);
        if (ausentes.arquivos * kUmDecimo <= anterior_.itens.size() || pedido_.muitasRemocoes) return true;
        return Recusar(
            "--cliente: faltam {} dos {} arquivos da lista publicada, o primeiro é {}; se é isso mesmo, "
            "--muitas-remocoes",
            ausentes.arquivos, anterior_.itens.size(), ausentes.caminhos.front());
    }

    // What stands there under another letter case is part of the change, the folders first.
    bool OlharSaida() {
        std::set<std::string> pastas{std::string()};
        VisitarPastas(arquivos_, [&](std::string_view pasta) { pastas.emplace(pasta); });
        std::string erro;
        if (!naSaida_.Ler(pedido_.saida, pastas, erro)) return Recusar("--saida: {}", erro);
        for (const std::string& pasta : pastas) {
            if (!pasta.empty() && naSaida_.OutraCaixa(pasta)) troca_.AcertarCaixa(pasta);
        }
        const auto acertar = [this](const std::string& caminho) {
            if (naSaida_.OutraCaixa(caminho)) troca_.AcertarCaixa(caminho);
        };
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            for (const Trecho& trecho : TrechosDe(arquivo, pedido_.bytesPorParte))
                acertar(trecho.caminho);
            if (arquivo.comIndice) acertar(NomeDoIndice(arquivo.caminho));
        }
        acertar(ParaUtf8(kNomeDaLista));
        return true;
    }

    bool Copiar() {
        std::string erro;
        if (!pedido_.simular && !troca_.Iniciar(erro)) return Recusar("--saida: {}", erro);
        resultados_.resize(arquivos_.size());
        std::vector<std::uint64_t> tamanhos;
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            bytes_ += arquivos_[i].tamanho;
            if (pedido_.confiarNaData && Confiar(i)) continue;
            aLer_.push_back(i);
            tamanhos.push_back(arquivos_[i].tamanho);
            andamento_.totalDeBytes += arquivos_[i].tamanho;
        }
        andamento_.totalDeArquivos = aLer_.size();
        const std::string_view verbo = pedido_.simular ? "Simulando" : "Publicando";
        EmParalelo(
            tamanhos, [this](std::size_t n) { CopiarUm(aLer_[n]); },
            [this, verbo] { andamento_.Mostrar(saida_, verbo); });
        for (const std::size_t i : aLer_) {
            if (!resultados_[i].erro.empty() && resultados_[i].erro != kInterrompido) {
                recusas_.insert(Formatar("{}: {}", arquivos_[i].caminho, resultados_[i].erro));
            }
            copiados_ += resultados_[i].copiados;
            indicesNovos_ += resultados_[i].indiceNovo ? 1U : 0U;
        }
        return recusas_.empty();
    }

    void CopiarUm(std::size_t i) {
        resultados_[i] =
            PrepararArquivo(pedido_.cliente, arquivos_[i], pedido_.bytesPorParte, pedido_.saida,
                            pedido_.simular ? nullptr : &troca_, {.bytes = andamento_.bytes, .parar = parar_});
        ++andamento_.arquivos;
        if (!resultados_[i].erro.empty()) parar_ = true;
    }

    // Takes a file as it was read for the list before, when nothing speaks against it: not its own size and time, nor
    // what stands in the published folder. Leaves the result without the pieces' CRCs, which are in the record.
    bool Confiar(std::size_t i) {
        const ArquivoDoCliente& arquivo = arquivos_[i];
        const Leitura* const lida = publicados_.Lida(arquivo.caminho);
        if (lida == nullptr || lida->tamanho != arquivo.tamanho || lida->modificado != arquivo.modificado ||
            lida->partes != arquivo.partes) {
            return false;
        }
        for (const Trecho& trecho : TrechosDe(arquivo, pedido_.bytesPorParte)) {
            std::uint64_t tamanho = 0;
            const NaSaida::Entrada* const ali = naSaida_.Achar(trecho.caminho);
            if (!publicados_.Tamanho(trecho.caminho, tamanho) || tamanho != trecho.tamanho || ali == nullptr ||
                ali->pasta || ali->tamanho != trecho.tamanho) {
                return false;
            }
        }
        if (arquivo.comIndice && !ConfiarNoIndice(arquivo, resultados_[i].indice)) return false;
        resultados_[i].crc = lida->crc;
        resultados_[i].sha256 = lida->sha256;
        return true;
    }

    // Whether the index that the list before names stands there, whole and in today's format; then it is `indice`.
    // Small as it is, it is read.
    bool ConfiarNoIndice(const ArquivoDoCliente& arquivo, update::IndiceListado& indice) {
        const std::string nome = NomeDoIndice(arquivo.caminho);
        const update::IndiceListado* const listado = indicesAnteriores_.Achar(arquivo.caminho);
        std::uint64_t tamanho = 0;
        std::string bytes;
        update::IndiceDeBlocos lido;
        if (listado == nullptr || !publicados_.Tamanho(nome, tamanho) ||
            !LerArquivoInteiro(pedido_.saida / DeUtf8(nome), bytes) ||
            !DiferencaDoIndice(*listado, HashDoTexto(bytes)).empty() || !update::LerIndice(bytes, lido) ||
            lido.tamanho != arquivo.tamanho || lido.parte != (arquivo.partes > 0 ? pedido_.bytesPorParte : 0)) {
            return false;
        }
        indice = *listado;
        indice.caminho = arquivo.caminho;
        return true;
    }

    // Of what has been read: a file that was not read is as it was in the list before.
    bool ConferirCliente() {
        std::mutex mutex;
        const auto conferir = [&](std::size_t n) {
            const ArquivoDoCliente& arquivo = arquivos_[aLer_[n]];
            InfoArquivo info;
            if (LerInfoArquivo(pedido_.cliente / DeUtf8(arquivo.caminho), info) && info.tamanho == arquivo.tamanho &&
                info.modificado == arquivo.modificado) {
                return;
            }
            const std::lock_guard tranca(mutex);
            recusas_.insert(Formatar("{}: {}", arquivo.caminho, kMudou));
        };
        EmFatias(aLer_.size(), conferir, [] {});
        return recusas_.empty();
    }

    bool Preparar() {
        naSaida_ = {};  // what is no longer needed goes as soon as it can: all of it grows with the number of files
        Anotar();
        pedido_.lista.itens.reserve(arquivos_.size());
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            update::IndiceListado& indice = resultados_[i].indice;
            bytesDosIndices_ += indice.tamanho;
            if (!indice.caminho.empty()) pedido_.lista.blocos.push_back(std::move(indice));
            pedido_.lista.itens.push_back({.caminho = pedido_.lista.Guardar(arquivos_[i].caminho),
                                           .sha256 = pedido_.lista.Guardar(ParaHex(resultados_[i].sha256)),
                                           .tamanho = arquivos_[i].tamanho,
                                           .crc = resultados_[i].crc,
                                           .partes = arquivos_[i].partes});
        }
        resultados_ = {};
        mudancas_ = Comparar(std::exchange(anterior_, {}), pedido_.lista);
        std::string erro;
        std::string lista;
        return (AssinarLista(chave_, pedido_.lista, lista, erro) &&
                (pedido_.simular || troca_.Preparar(publicados_.Texto(), lista, erro))) ||
               Recusar("--saida: {}", erro);
    }

    void Anotar() {
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            const ArquivoDoCliente& arquivo = arquivos_[i];
            const ResultadoDaCopia& resultado = resultados_[i];
            const std::vector<Trecho> trechos = TrechosDe(arquivo, pedido_.bytesPorParte);
            for (std::size_t t = 0; t < trechos.size(); ++t) {
                if (resultado.crcDosTrechos.empty()) {
                    publicados_.Manter(trechos[t].caminho);
                } else {
                    publicados_.Anotar(trechos[t].caminho, resultado.crcDosTrechos[t], trechos[t].tamanho);
                }
            }
            if (!resultado.indice.caminho.empty()) {
                const std::string nome = NomeDoIndice(arquivo.caminho);
                if (resultado.crcDosTrechos.empty()) {
                    publicados_.Manter(nome);
                } else {
                    publicados_.Anotar(nome, resultado.crcDoIndice, resultado.indice.tamanho);
                }
            }
            publicados_.AnotarLeitura({.caminho = arquivo.caminho,
                                       .tamanho = arquivo.tamanho,
                                       .modificado = arquivo.modificado,
                                       .crc = resultado.crc,
                                       .partes = arquivo.partes,
                                       .sha256 = resultado.sha256});
        }
        for (const update::ItemLista& item : anterior_.itens) {
            for (const std::string& nome : NomesPublicados(item))
                publicados_.Conservar(nome);
        }
        for (const update::IndiceListado& indice : indicesAnteriores_.Itens())
            publicados_.Conservar(NomeDoIndice(indice.caminho));
    }

    bool Trocar() {
        std::string erro;
        return troca_.Efetivar(erro) || Recusar("--saida: {}", erro);
    }

    void Resumir() {
        saida_.Linha(Formatar("{}: seq {}, {} arquivo(s), {} MiB; {} copiado(s)",
                              pedido_.simular ? "Simulação, nada foi gravado" : "Publicado", pedido_.lista.seq,
                              arquivos_.size(), bytes_ / kMiB, copiados_));
        if (!pedido_.lista.blocos.empty()) {
            saida_.Linha(Formatar("{} índice(s) de blocos, {:.1f} MiB; {} copiado(s)", pedido_.lista.blocos.size(),
                                  static_cast<double>(bytesDosIndices_) / static_cast<double>(kMiB), indicesNovos_));
        }
        saida_.Linha(Formatar("{}; {} caminho(s) a remover", mudancas_.Texto(), pedido_.lista.remover.size()));
        if (pedido_.confiarNaData) {
            saida_.Linha(
                Formatar("{} arquivo(s) não lido(s), com o tamanho e a data da última leitura "
                         "(--confiar-na-data)",
                         arquivos_.size() - aLer_.size()));
        }
        saida_.Linha(Formatar("Fora da publicação: {}", pedido_.exclusoes.Texto()));
        if (pedido_.lista.validade) {
            saida_.Linha(Formatar("A lista vale até {}", update::TextoDoInstante(*pedido_.lista.validade)));
        }
    }

    bool Limpar() {
        const Publicados::Antigos antigos = publicados_.ContarAntigos();
        if (antigos.conservados > 0) {
            saida_.Linha(Formatar("{} arquivo(s) que só a lista anterior cita ficam na saída até a próxima publicação",
                                  antigos.conservados));
        }
        if (!pedido_.limpar && antigos.livres > 0) {
            saida_.Linha(Formatar("{} arquivo(s) que a lista não cita mais continuam na saída (--limpar os apaga)",
                                  antigos.livres));
        }
        if (!pedido_.limpar || antigos.livres == 0) return true;
        saida_.Linha(
            Formatar("{} arquivo(s) antigo(s) apagado(s)", publicados_.ApagarAntigos(pedido_.saida, recusas_)));
        // What could not be deleted is still in the record.
        std::string erro;
        Troca registro(pedido_.saida);
        if (!registro.Iniciar(erro) || !registro.Preparar(publicados_.Texto(), {}, erro) || !registro.Efetivar(erro)) {
            return Recusar("--saida: {}", erro);
        }
        return publicados_.ContarAntigos().livres == 0;
    }

    template <class... Argumentos>
    bool Recusar(FormatoDe<std::type_identity_t<Argumentos>...> formato, const Argumentos&... argumentos) {
        recusas_.insert(Formatar<Argumentos...>(formato, argumentos...));
        return false;
    }

    Pedido& pedido_;
    const ChaveDaLista& chave_;
    Saida& saida_;
    std::set<std::string> recusas_;
    std::vector<ArquivoDoCliente> arquivos_;
    std::vector<ResultadoDaCopia> resultados_;  // one a file
    std::vector<std::size_t> aLer_;             // the files to be read
    std::uint64_t bytes_ = 0;                   // of all files
    Mudancas mudancas_;
    std::size_t copiados_ = 0;
    std::size_t indicesNovos_ = 0;
    std::uint64_t bytesDosIndices_ = 0;
    Trava trava_;
    update::UpdateList anterior_;  // without files: nothing is published yet
    Fileira<update::IndiceListado> indicesAnteriores_;
    Publicados publicados_;
    NaSaida naSaida_;
    Troca troca_;
    Andamento andamento_;
    std::atomic<bool> parar_ = false;
};

}  // namespace

int RodarPublicar(const Opcoes& opcoes, Saida& saida) {
    Pedido pedido;
    ChaveDaLista chave;
    std::string erro;
    if (!LerPedido(opcoes, pedido, erro)) return Falhar(saida, kUsoErrado, erro);
    if (!chave.Ler(opcoes.Texto(L"--chave"), erro)) return Falhar(saida, kUsoErrado, Formatar("--chave: {}", erro));
    return Publicacao(pedido, chave, saida).Rodar();
}

}  // namespace zu::launcher::forjal

// "Forjal publicar": a client folder becomes a published one. Everything is prepared and checked first; then the
// published folder changes at once, its signed list last.

#include <windows.h>

#include <algorithm>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/publicar/copia.h"
#include "tools/forjal/publicar/na_saida.h"
#include "tools/forjal/publicar/pedido.h"
#include "tools/forjal/publicar/remocoes.h"
#include "tools/forjal/publicar/trava.h"
#include "tools/forjal/publicar/troca.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

class Publicacao {
 public:
    Publicacao(Pedido& pedido, const ChaveDaLista& chave, Saida& saida)
        : pedido_(pedido), chave_(chave), saida_(saida), troca_(pedido.saida) {}

    int Rodar() {
        const bool publicada = Levantar() && Trancar() && ConferirAnterior() && OlharSaida() && Copiar() &&
                               ConferirCliente() && Preparar() && Trocar();
        const bool tudo = publicada && Limpar();
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
        Varredura varredura = VarrerCliente(
            pedido_.cliente, [](const auto&, bool) { return false; }, aviso);
        recusas_ = std::move(varredura.recusas);
        arquivos_ = std::move(varredura.arquivos);
        Dividir(arquivos_, pedido_.bytesPorParte);
        recusas_.merge(RecusarNomes(arquivos_));
        recusas_.merge(RecusarRemocoes(arquivos_, pedido_.lista.remover));
        if (arquivos_.empty() && recusas_.empty()) recusas_.insert("--cliente: não há nenhum arquivo para publicar");
        if (varredura.protegidos > 0) {
            saida_.Linha(Formatar("{} arquivo(s) protegido(s) fora da publicação", varredura.protegidos));
        }
        return recusas_.empty();
    }

    bool Trancar() {
        std::string erro;
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
        UpdateSigningKey publica;
        if (!chave_.ExportarPublica(publica) || !LerListaPublicada(pedido_.saida, publica, anterior_, erro)) {
            return Recusar("--saida: já há uma lista publicada que não confere com --chave: {}", erro);
        }
        if (pedido_.lista.seq >= anterior_.seq) return true;
        return Recusar("--seq: {} é menor que o já publicado, {}", pedido_.lista.seq, anterior_.seq);
    }

    // What stands there under another letter case is part of the change, the folders first.
    bool OlharSaida() {
        std::set<std::string> pastas{std::string()};
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            for (std::string& pasta : PastasDe(arquivo.caminho))
                pastas.insert(std::move(pasta));
        }
        std::string erro;
        if (!naSaida_.Ler(pedido_.saida, pastas, erro)) return Recusar("--saida: {}", erro);
        for (const std::string& pasta : pastas) {
            if (!pasta.empty() && naSaida_.OutraCaixa(pasta)) troca_.AcertarCaixa(pasta);
        }
        ParaCadaTrecho([this](const Trecho& trecho) {
            if (naSaida_.OutraCaixa(trecho.caminho)) troca_.AcertarCaixa(trecho.caminho);
        });
        const std::string lista = ParaUtf8(kNomeDaLista);
        if (naSaida_.OutraCaixa(lista)) troca_.AcertarCaixa(lista);
        return true;
    }

    bool Copiar() {
        std::string erro;
        if (!troca_.Iniciar(erro)) return Recusar("--saida: {}", erro);
        std::vector<std::uint64_t> tamanhos;
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            tamanhos.push_back(arquivo.tamanho);
            andamento_.totalDeBytes += arquivo.tamanho;
        }
        andamento_.totalDeArquivos = arquivos_.size();
        resultados_.resize(arquivos_.size());
        EmParalelo(
            tamanhos, [this](std::size_t i) { CopiarUm(i); }, [this] { andamento_.Mostrar(saida_, "Publicando"); });
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            if (!resultados_[i].erro.empty() && resultados_[i].erro != kInterrompido) {
                recusas_.insert(Formatar("{}: {}", arquivos_[i].caminho, resultados_[i].erro));
            }
            copiados_ += resultados_[i].copiados;
        }
        return recusas_.empty();
    }

    void CopiarUm(std::size_t i) {
        resultados_[i] = PrepararArquivo(pedido_.cliente / DeUtf8(arquivos_[i].caminho),
                                         TrechosDe(arquivos_[i], pedido_.bytesPorParte), pedido_.saida, &troca_,
                                         {.bytes = andamento_.bytes, .parar = parar_});
        ++andamento_.arquivos;
        if (!resultados_[i].erro.empty()) parar_ = true;
    }

    bool ConferirCliente() {
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            InfoArquivo info;
            if (!LerInfoArquivo(pedido_.cliente / DeUtf8(arquivo.caminho), info) || info.tamanho != arquivo.tamanho ||
                info.modificado != arquivo.modificado) {
                recusas_.insert(Formatar("{}: {}", arquivo.caminho, kMudou));
            }
        }
        return recusas_.empty();
    }

    bool Preparar() {
        Anotar();
        pedido_.lista.itens.reserve(arquivos_.size());
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            pedido_.lista.itens.push_back({.caminho = arquivos_[i].caminho,
                                           .sha256 = ParaHex(resultados_[i].sha256),
                                           .tamanho = arquivos_[i].tamanho,
                                           .crc = resultados_[i].crc,
                                           .partes = arquivos_[i].partes});
        }
        std::string erro;
        std::string lista;
        return (AssinarLista(chave_, pedido_.lista, lista, erro) &&
                troca_.Preparar(publicados_.Texto(), lista, erro)) ||
               Recusar("--saida: {}", erro);
    }

    void Anotar() {
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            const std::vector<Trecho> trechos = TrechosDe(arquivos_[i], pedido_.bytesPorParte);
            for (std::size_t t = 0; t < trechos.size(); ++t)
                publicados_.Anotar(trechos[t].caminho, resultados_[i].crcDosTrechos[t], trechos[t].tamanho);
        }
        for (const update::ItemLista& item : anterior_.itens) {
            for (const std::string& nome : NomesPublicados(item))
                publicados_.Conservar(nome);
        }
    }

    bool Trocar() {
        std::string erro;
        return troca_.Efetivar(erro) || Recusar("--saida: {}", erro);
    }

    bool Limpar() {
        saida_.Linha(Formatar("Publicado: seq {}, {} arquivo(s), {} MiB; {} copiado(s)", pedido_.lista.seq,
                              arquivos_.size(), andamento_.totalDeBytes / kMiB, copiados_));
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

    void ParaCadaTrecho(const std::function<void(const Trecho&)>& visita) const {
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            for (const Trecho& trecho : TrechosDe(arquivo, pedido_.bytesPorParte))
                visita(trecho);
        }
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
    std::size_t copiados_ = 0;
    Trava trava_;
    update::UpdateList anterior_;  // without files: nothing is published yet
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

int RodarContinuar(const Opcoes& opcoes, Saida& saida) {
    const std::filesystem::path pasta = opcoes.Texto(L"--saida");
    InfoArquivo info;
    if (!LerInfoArquivo(pasta, info) || !info.Pasta()) {
        return Falhar(saida, kUsoErrado, Formatar("--saida: {} não é uma pasta", ParaUtf8(pasta.native())));
    }
    Trava trava;
    std::string erro;
    if (!trava.Trancar(pasta, erro)) return Falhar(saida, kRecusado, Formatar("--saida: {}", erro));
    const bool interrompida = TrocaInterrompida(pasta);
    if (!ContinuarTroca(pasta, erro)) return Falhar(saida, kRecusado, Formatar("--saida: {}", erro));
    saida.Linha(interrompida ? "A publicação interrompida foi terminada."
                             : "Nenhuma publicação foi interrompida aqui.");
    return kFeito;
}

}  // namespace zu::launcher::forjal

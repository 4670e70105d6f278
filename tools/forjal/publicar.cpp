// "Forjal publicar": a client folder becomes a published one, its signed list last.

#include <windows.h>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/copia.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/pedido.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {
namespace {

class Publicacao {
 public:
    Publicacao(Pedido& pedido, const ChaveDaLista& chave, Saida& saida)
        : pedido_(pedido), chave_(chave), saida_(saida) {}

    int Rodar() {
        const bool publicada =
            Levantar() && Trancar() && ConferirAnterior() && Copiar() && ConferirCliente() && GravarLista();
        const bool tudo = publicada && Limpar();
        for (const std::string& recusa : recusas_)
            saida_.Erro(recusa);
        if (!publicada) saida_.Erro(Formatar("{} problema(s): a lista não foi publicada", recusas_.size()));
        return tudo ? kFeito : kRecusado;
    }

 private:
    bool Levantar() {
        Varredura varredura = VarrerCliente(pedido_.cliente);
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

    // Two publications at once would leave a list beside the other's files.
    bool Trancar() {
        if (!CriarPastas(pedido_.saida))
            return Recusar("--saida: não foi possível criar a pasta (erro {})", GetLastError());
        trava_.Trocar(CreateFileW((pedido_.saida / kNomeDaTrava).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (trava_) return true;
        return GetLastError() == ERROR_SHARING_VIOLATION
                   ? Recusar("--saida: outra publicação nesta pasta está em andamento")
                   : Recusar("--saida: não foi possível gravar na pasta (erro {})", GetLastError());
    }

    bool ConferirAnterior() {
        std::string erro;
        if (!publicados_.Ler(pedido_.saida, erro)) return Recusar("--saida: {}", erro);
        InfoArquivo info;
        if (!LerInfoArquivo(pedido_.saida / kNomeDaLista, info)) return true;
        UpdateSigningKey publica;
        update::UpdateList anterior;
        if (!chave_.ExportarPublica(publica) || !LerListaPublicada(pedido_.saida, publica, anterior, erro)) {
            return Recusar("--saida: já há uma lista publicada que não confere com --chave: {}", erro);
        }
        if (pedido_.lista.seq >= anterior.seq) return true;
        return Recusar("--seq: {} é menor que o já publicado, {}", pedido_.lista.seq, anterior.seq);
    }

    bool Copiar() {
        std::vector<std::uint64_t> tamanhos;
        std::set<std::string> pastasCertas;
        std::string erro;
        for (const ArquivoDoCliente& arquivo : arquivos_) {
            for (const Trecho& trecho : TrechosDe(arquivo, pedido_.bytesPorParte)) {
                if (!AcertarCaixa(pedido_.saida, trecho.caminho, pastasCertas, erro)) return Recusar("{}", erro);
            }
            tamanhos.push_back(arquivo.tamanho);
            andamento_.totalDeBytes += arquivo.tamanho;
        }
        if (!AcertarCaixa(pedido_.saida, ParaUtf8(kNomeDaLista), pastasCertas, erro)) return Recusar("{}", erro);
        andamento_.totalDeArquivos = arquivos_.size();
        resultados_.resize(arquivos_.size());
        EmParalelo(
            tamanhos, [this](std::size_t i) { CopiarUm(i); }, [this] { andamento_.Mostrar(saida_, "Publicando"); });
        return Anotar();
    }

    void CopiarUm(std::size_t i) {
        resultados_[i] =
            PublicarArquivo(pedido_.cliente / DeUtf8(arquivos_[i].caminho),
                            TrechosDe(arquivos_[i], pedido_.bytesPorParte), pedido_.saida, andamento_.bytes, parar_);
        ++andamento_.arquivos;
        if (!resultados_[i].erro.empty()) parar_ = true;
    }

    // Also after a failure: what has been put into the folder is Forjal's from now on.
    bool Anotar() {
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            const std::vector<Trecho> trechos = TrechosDe(arquivos_[i], pedido_.bytesPorParte);
            for (std::size_t t = 0; t < resultados_[i].crcDosTrechos.size(); ++t) {
                publicados_.Anotar(trechos[t].caminho, resultados_[i].crcDosTrechos[t], trechos[t].tamanho);
            }
            for (const Trecho& trecho : trechos)
                chaves_.insert(ChaveDoNome(trecho.caminho));
            copiados_ += resultados_[i].copiados;
            if (!resultados_[i].erro.empty() && resultados_[i].erro != kInterrompido) {
                recusas_.insert(Formatar("{}: {}", arquivos_[i].caminho, resultados_[i].erro));
            }
        }
        return GravarPublicados() && recusas_.empty();
    }

    bool GravarPublicados() {
        return publicados_.Gravar(pedido_.saida) ||
               Recusar("--saida: não foi possível gravar {} (erro {})", ParaUtf8(kNomeDoRegistro), GetLastError());
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

    bool GravarLista() {
        for (std::size_t i = 0; i < arquivos_.size(); ++i) {
            pedido_.lista.itens.push_back({.caminho = arquivos_[i].caminho,
                                           .sha256 = ParaHex(resultados_[i].sha256),
                                           .tamanho = arquivos_[i].tamanho,
                                           .crc = resultados_[i].crc,
                                           .partes = arquivos_[i].partes});
        }
        std::string erro;
        return GravarListaPublicada(pedido_.saida, chave_, pedido_.lista, erro) || Recusar("--saida: {}", erro);
    }

    bool Limpar() {
        saida_.Linha(Formatar("Publicado: seq {}, {} arquivo(s), {} MiB; {} copiado(s)", pedido_.lista.seq,
                              arquivos_.size(), andamento_.totalDeBytes / kMiB, copiados_));
        const std::size_t antigos = publicados_.Antigos(chaves_);
        if (!pedido_.limpar) {
            if (antigos > 0) {
                saida_.Linha(Formatar("{} arquivo(s) que a lista não cita mais continuam na saída (--limpar os apaga)",
                                      antigos));
            }
            return true;
        }
        saida_.Linha(Formatar("{} arquivo(s) antigo(s) apagado(s)",
                              publicados_.ApagarAntigos(pedido_.saida, chaves_, recusas_)));
        // What could not be deleted is still in the record.
        return GravarPublicados() && publicados_.Antigos(chaves_) == 0;
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
    std::set<std::wstring> chaves_;             // of every file that the new list publishes
    std::size_t copiados_ = 0;
    HandleArquivo trava_;
    Publicados publicados_;
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

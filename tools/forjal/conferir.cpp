// "Forjal conferir": proves a published folder, a live server, or both.

#include <windows.h>

#include <limits>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/conferir_pasta.h"
#include "tools/forjal/conferir_url.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/publicar/troca.h"

namespace zu::launcher::forjal {
namespace {

struct PedidoDeConferencia {
    UpdateSigningKey publica;
    std::filesystem::path pasta;  // empty: none
    PedidoAoServidor servidor;    // without a base: none
};

bool LerPedidoAoServidor(const Opcoes& opcoes, PedidoAoServidor& pedido, std::string& erro) {
    pedido.base = ParaUtf8(opcoes.Texto(L"--url"));
    pedido.completo = opcoes.Tem(L"--completo");
    std::uint64_t amostra = 0;
    if (!opcoes.LerNumero(L"--amostra", 1, std::numeric_limits<std::int32_t>::max(), amostra, erro)) return false;
    pedido.amostra = amostra;
    if (pedido.base.empty() && (pedido.completo || amostra > 0)) {
        erro = "--completo e --amostra= só com --url=";
    } else if (!pedido.base.empty() && !pedido.base.starts_with("http://") && !pedido.base.starts_with("https://")) {
        erro = Formatar("--url: \"{}\" não começa com http:// ou https://", pedido.base);
    }
    if (!pedido.base.ends_with('/') && !pedido.base.empty()) pedido.base.push_back('/');
    return erro.empty();
}

bool LerConferencia(const Opcoes& opcoes, PedidoDeConferencia& pedido, std::string& erro) {
    BytesSecretos pub;
    if (!pub.Ler(opcoes.Texto(L"--pub"), kTamanhoPublica, erro)) {
        erro = Formatar("--pub: {}", erro);
        return false;
    }
    pedido.publica.assign(pub.Bytes().begin(), pub.Bytes().end());
    pedido.pasta = opcoes.Texto(L"--publicado");
    InfoArquivo info;
    if (!opcoes.Tem(L"--publicado") && !opcoes.Tem(L"--url")) {
        erro = "falta a opção --publicado= ou --url=";
        return false;
    }
    if (!pedido.pasta.empty() && (!LerInfoArquivo(pedido.pasta, info) || !info.Pasta())) {
        erro = Formatar("--publicado: {} não é uma pasta", ParaUtf8(pedido.pasta.native()));
        return false;
    }
    return LerPedidoAoServidor(opcoes, pedido.servidor, erro);
}

}  // namespace

int RodarConferir(const Opcoes& opcoes, Saida& saida) {
    PedidoDeConferencia pedido;
    std::string erro;
    if (!LerConferencia(opcoes, pedido, erro)) return Falhar(saida, kUsoErrado, erro);

    Relatorio relatorio(saida);
    std::vector<std::string> certo;
    update::UpdateList naPasta;
    if (!pedido.pasta.empty()) {
        if (TrocaInterrompida(pedido.pasta)) return Falhar(saida, kRecusado, kTrocaInterrompida);
        if (!LerListaPublicada(pedido.pasta, {&pedido.publica, 1}, naPasta, erro))
            return Falhar(saida, kRecusado, erro);
        Diferencas daLista;
        ConferirValidade(naPasta, daLista);
        relatorio.Juntar(daLista);
        relatorio.Juntar(ConferirPasta(pedido.pasta, naPasta, saida));
        certo.push_back(Formatar("Tudo confere: seq {}, {} arquivo(s)", naPasta.seq, naPasta.itens.size()));
    }
    if (!pedido.servidor.base.empty()) {
        ListaDoServidor noAr;
        if (!BaixarLista(pedido.servidor.base, pedido.publica, noAr, erro)) return Falhar(saida, kRecusado, erro);
        if (!pedido.pasta.empty() && update::EscreverLista(noAr.lista) != update::EscreverLista(naPasta)) {
            noAr.diferencas.Diferente("UpdateList.txt",
                                      Formatar("no servidor seq {}, na pasta seq {}", noAr.lista.seq, naPasta.seq));
        }
        relatorio.Juntar(noAr.diferencas);
        std::size_t conferidos = 0;
        relatorio.Juntar(ConferirServidor(pedido.servidor, noAr, saida, conferidos));
        certo.push_back(Formatar("Tudo confere em {}: seq {}, {} de {} arquivo(s), {}", pedido.servidor.base,
                                 noAr.lista.seq, conferidos, noAr.lista.itens.size(),
                                 pedido.servidor.completo ? "cada byte" : "por faixas"));
    }
    return relatorio.Encerrar(certo);
}

}  // namespace zu::launcher::forjal

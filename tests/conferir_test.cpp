// "Forjal conferir --url=" against servers that lie.

#include <algorithm>

#include "core/formato.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/publicacao.h"
#include "update/transferencia.h"
#include "update/url.h"

namespace zu::launcher::forjal {
namespace {

using namespace std::string_literals;
using namespace teste;
using Opcoes = std::vector<std::string>;

class Conferir : public Forjal {
 protected:
    Conferir() {
        publicacao_.arquivos = {{"Data/é ç.pak", Bytes(9000)}, {"b.pak", Bytes(3000, 2)}, {"curto.exe", "x"},
                                {"longo.exe", Bytes(9001)},    {"vazio.txt", ""},         {"Zu.exe", Bytes(5000, 3)}};
        publicacao_.partes = {{"b.pak", 3}};
        publicacao_.blocos = true;
        publicacao_.Servir(servidor_);
    }

    int ConferirUrl(Opcoes mais = {}) {
        std::string url = servidor_.Url();
        url.pop_back();  // the slash
        mais.insert(mais.begin(), {"conferir", "--pub=#\\lista.pub", "--url=" + url});
        return Rodar(mais);
    }
    [[nodiscard]] std::string Assinada(const std::string& antes) const {
        return Assinar(antes + update::EscreverLista(publicacao_.Lista()));
    }

    Publicacao publicacao_;
    Servidor servidor_;
};

TEST_F(Conferir, PerguntaComoOLauncher) {
    for (const char* opcao : {"--completo", "--amostra=9", "--amostra=2"}) {
        Diz(ConferirUrl({opcao}), kFeito, Formatar(": seq 1, {} de 6 arquivo(s)", opcao == "--amostra=2"s ? 2 : 6));
    }

    servidor_.EsquecerPedidos();
    ASSERT_EQ(ConferirUrl(), kFeito) << saida_;
    Configurar("", servidor_.Url());
    const std::vector<std::pair<std::string, std::string>> faixas{{"", "bytes=8999-"},    {"", "bytes=4999-"},
                                                                  {".p002", "bytes=0-0"}, {"", "bytes=0-"},
                                                                  {"", "bytes=9000-"},    {"", ""}};
    const update::UpdateList lista = publicacao_.Lista();
    for (std::size_t i = 0; i < lista.itens.size(); ++i) {
        const auto& [sufixo, faixa] = faixas[i];
        const std::string caminho = MontarUrl("", lista.itens[i].caminho).substr(1) + sufixo;
        const Pedido pedido = servidor_.Pedidos(caminho).at(0);
        EXPECT_EQ(DeUtf8(servidor_.Url() + caminho + "?" + pedido.consulta), UrlDoItem(lista.itens[i], sufixo));
        EXPECT_EQ(pedido.Cabecalho("range"), faixa);
        EXPECT_EQ(pedido.Cabecalho("user-agent"), "ZuLauncher/1.0");
    }
    // Of a kind the shortest is asked for whole that a server would compress.
    EXPECT_EQ(servidor_.Pedidos("Zu.exe").size(), 2U);
    EXPECT_EQ(servidor_.Pedidos("curto.exe").size() + servidor_.Pedidos("longo.exe").size(), 2U);
}

TEST_F(Conferir, DizOQueOServidorFazDeErrado) {
    const std::string exe = publicacao_.arquivos["Zu.exe"];
    const auto outro = [](const std::string& conteudo) {
        return [servir = Servir(conteudo)](const Pedido& p, Resposta& r) { r = servir(p); };
    };
    const auto com = [](const std::string& nome, const std::string& valor) {
        return [=](const Pedido&, Resposta& r) { r.cabecalhos[nome] = valor; };
    };
    const auto soInteira = [](const Mentira& mentira) {
        return [=](const Pedido& p, Resposta& r) { p.Cabecalho("range").empty() ? mentira(p, r) : void(); };
    };
    const auto comCodigo = [](int status) { return [=](const Pedido&, Resposta& r) { r = {.status = status}; }; };
    std::atomic<int> pedidosDaLista = 0;
    // The line of the output, or its beginning: only who reads everything knows a CRC.
    const std::tuple<std::string, Mentira, std::string> casos[]{
        {"Zu.exe", [&](const Pedido&, Resposta& r) { r = {.corpo = exe}; },
         "diferente: Zu.exe (HTTP 200 a um pedido de faixa: nenhum download pode ser retomado)"},
        {"Zu.exe", com("Content-Range", "bytes 4999-4999/5001"),
         "diferente: Zu.exe (Content-Range diz 5001 bytes, esperado 5000)"},
        {"Zu.exe", com("Content-Range", "bytes 0-0/5000"),
         "diferente: Zu.exe (pedida a faixa 4999-, veio Content-Range \"bytes 0-0/5000\")"},
        {"Zu.exe", com("Content-Range", ""), "diferente: Zu.exe (pedida a faixa 4999-, veio Content-Range \"\")"},
        {"Zu.exe", outro("curto"), "diferente: Zu.exe (HTTP 416, Content-Range \"bytes */5\")"},
        {"Zu.exe", com("Content-Encoding", "gzip"),
         "diferente: Zu.exe (Content-Encoding: gzip: alguém no caminho recomprime)"},
        // Whole answers alone are recompressed, or rewritten: a range shows nothing.
        {"Zu.exe", soInteira(com("Content-Encoding", "br")),
         "diferente: Zu.exe (Content-Encoding: br: alguém no caminho recomprime)"},
        {"Zu.exe", soInteira(outro(Bytes(4000))), "diferente: Zu.exe (Content-Length diz 4000 bytes, esperado 5000)"},
        {"Zu.exe", [](const Pedido& p, Resposta& r) { r.status = p.consulta.empty() ? r.status : 404; },
         "faltando: Zu.exe (HTTP 404; sem ?v= confere: o servidor trata ?v= como outro arquivo)"},
        {"Zu.exe", comCodigo(503), "diferente: Zu.exe (HTTP 503)"},
        {"b.pak.p002", comCodigo(410), "faltando: b.pak.p002 (HTTP 410)"},
        {"b.pak.p003", outro(Bytes(999)), "diferente: b.pak em 3 parte(s) (2999 bytes, esperado 3000)"},
        {"vazio.txt", outro("<html>"), "diferente: vazio.txt (Content-Length diz 6 bytes, esperado 0)"},
        {"b.pak.blocos", comCodigo(404), "faltando: b.pak.blocos (HTTP 404)"},
        {"Zu.exe.blocos", outro("x"), "diferente: Zu.exe.blocos (1 bytes, esperado 57)"},
        {"Zu.exe.blocos", outro(Bytes(57)), "diferente: Zu.exe.blocos (SHA-256 diferente)"},
        {"Zu.exe", outro(Bytes(5000, 4)), "diferente: Zu.exe (CRC "},
        {"b.pak.p003", outro(Bytes(1000, 4)), "diferente: b.pak em 3 parte(s) (CRC "},
        {"UpdateList.txt", outro("<html>"), "UpdateList.txt não tem uma assinatura válida desta chave"},
        {"UpdateList.txt", outro(Assinar(";seq\t1\n")), "UpdateList.txt inválida: lista vazia"},
        {"UpdateList.txt", outro(Assinada(";validade\t2020-01-31T00:00:00Z\n")),
         "diferente: UpdateList.txt (venceu em 31/01/2020)"},
        {"UpdateList.txt", com("Age", "600"),
         "diferente: UpdateList.txt (um cache respondeu com o que guarda há 600 s a um ?t= nunca visto)"},
        {"UpdateList.txt",
         [&](const Pedido&, Resposta& r) { r = {.corpo = Assinada(++pedidosDaLista > 2 ? ";versao\t2\n" : "")}; },
         "diferente: UpdateList.txt (mudou durante a conferência, ou nem sempre vem a mesma)"}};
    for (const auto& [caminho, mentira, linha] : casos) {
        publicacao_.Servir(servidor_);
        servidor_.Mentir(caminho, mentira);
        EXPECT_EQ(ConferirUrl(linha.ends_with("(CRC ") ? Opcoes{"--completo"} : Opcoes{}), kRecusado) << linha;
        EXPECT_TRUE(("\n" + saida_.linhas + saida_.erros).find("\n" + linha) != std::string::npos) << linha << saida_;
        EXPECT_EQ(std::ranges::count(saida_.linhas + saida_.erros, '\n'), linha.starts_with("Update") ? 1 : 2)
            << saida_;
    }
}

TEST_F(Conferir, UmTropecoNaoEDiferencaEUmServidorMortoNaoSeInsiste) {
    std::map<std::string, std::atomic<int>> vezes;
    for (const auto& [caminho, status] : {std::pair{"Zu.exe", 500}, {"vazio.txt", 429}, {"longo.exe", 408}})
        servidor_.Mentir(caminho, [&vez = vezes[caminho], codigo = status](const Pedido&, Resposta& r) {
            if (++vez == 1) r.status = codigo;
        });
    EXPECT_EQ(ConferirUrl(), kFeito) << saida_;

    for (int i = 0; i < 200; ++i)
        publicacao_.arquivos[std::to_string(i)] = Bytes(1);
    publicacao_.Servir(servidor_);
    for (const auto& [caminho, conteudo] : publicacao_.arquivos)
        servidor_.Mentir(caminho, [](const Pedido&, Resposta& r) {
            r = {.status = 206, .cabecalhos = r.cabecalhos, .anunciado = 1, .fim = teste::Fim::kDerrubar};
        });
    Diz(ConferirUrl(), kRecusado, "o servidor parou de atender");
    EXPECT_LT(servidor_.QuantosPedidos(), 200U);
}

// A server that still has the publication before: only the folder tells.
TEST_F(Conferir, PastaEServidorTemAMesmaLista) {
    publicacao_.partes.clear();
    publicacao_.blocos = false;
    publicacao_.Servir(servidor_);
    for (const auto& [caminho, conteudo] : publicacao_.arquivos)
        pasta_.Escrever("saida/" + caminho, conteudo);
    pasta_.Escrever("saida/UpdateList.txt", Assinada(""));
    EXPECT_EQ(ConferirUrl({"--publicado=@\\saida"}), kFeito) << saida_;
    publicacao_.versao = "nova";
    pasta_.Escrever("saida/UpdateList.txt", Assinada(""));
    Diz(ConferirUrl({"--publicado=@\\saida"}), kRecusado, "(no servidor seq 1, na pasta seq 1");
}

}  // namespace
}  // namespace zu::launcher::forjal

// "Forjal conferir --url=" against servers that lie.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "core/formato.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/publicacao.h"
#include "update/transferencia.h"
#include "update/url.h"

namespace zu::launcher::forjal {
namespace {

using teste::Pedido;
using teste::Resposta;

class Conferir : public testing::Test {
 protected:
    Conferir() {
        publicacao_.arquivos = {{"Data/é ç.pak", teste::Bytes(9000)},
                                {"b.pak", teste::Bytes(3000, 2)},
                                {"curto.exe", "x"},
                                {"longo.exe", teste::Bytes(9001)},
                                {"vazio.txt", ""},
                                {"Zu.exe", teste::Bytes(5000, 3)}};
        publicacao_.partes = {{"b.pak", 3}};
        publicacao_.Servir(servidor_);
    }

    int Rodar(const std::vector<std::string>& mais = {}) {
        std::vector<std::wstring> argumentos{L"conferir", DeUtf8("--pub=" ZU_PASTA_CHAVES "/lista.pub"),
                                             DeUtf8("--url=" + servidor_.Url())};
        for (const std::string& um : mais)
            argumentos.push_back(DeUtf8(um));
        saida_.linhas.clear();
        saida_.erros.clear();
        return RodarForjal(argumentos, saida_);
    }
    // Lets `mentira` spoil every good answer for this path.
    void Mentir(const std::string& caminho, const std::string& conteudo,
                const std::function<void(const Pedido&, Resposta&)>& mentira) {
        servidor_.Definir(caminho, [=, servir = teste::Servir(conteudo)](const Pedido& pedido) {
            Resposta resposta = servir(pedido);
            mentira(pedido, resposta);
            return resposta;
        });
    }
    std::string Assinada(const std::string& antes) const {
        return teste::Assinar(antes + update::EscreverLista(publicacao_.Lista()));
    }

    teste::Publicacao publicacao_;
    teste::Servidor servidor_;
    SaidaDeTeste saida_;
};

TEST_F(Conferir, PerguntaComoOLauncher) {
    for (const std::vector<std::string>& opcoes : {std::vector<std::string>{}, {"--completo"}, {"--amostra=9"}}) {
        EXPECT_EQ(Rodar(opcoes), kFeito) << saida_.Tudo();
        EXPECT_NE(saida_.Tudo().find(": seq 1, 6 de 6 arquivo(s)"), std::string::npos) << saida_.Tudo();
    }
    EXPECT_EQ(Rodar({"--amostra=2"}), kFeito) << saida_.Tudo();
    EXPECT_NE(saida_.Tudo().find(": seq 1, 2 de 6 arquivo(s)"), std::string::npos) << saida_.Tudo();

    servidor_.EsquecerPedidos();
    ASSERT_EQ(Rodar(), kFeito) << saida_.Tudo();
    teste::Configurar("", servidor_.Url());
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
    const auto exeQue = [&](const std::function<void(const Pedido&, Resposta&)>& mentira) {
        return [=, this] { Mentir("Zu.exe", exe, mentira); };
    };
    const auto lista = [&](const std::string& texto) {
        return [=, this] { servidor_.Definir("UpdateList.txt", teste::Servir(texto)); };
    };
    struct Caso {
        std::function<void()> estragar;
        std::vector<std::string> opcoes;
        std::string linha;  // the whole of one line of the output, or its beginning when it ends in "…"
    };
    const std::vector<Caso> casos{
        {exeQue([&](const Pedido&, Resposta& r) { r = {.corpo = exe}; }),
         {},
         "diferente: Zu.exe (HTTP 200 a um pedido de faixa: nenhum download pode ser retomado)"},
        {exeQue([](const Pedido&, Resposta& r) { r.cabecalhos["Content-Range"] = "bytes 4999-4999/5001"; }),
         {},
         "diferente: Zu.exe (Content-Range diz 5001 bytes, esperado 5000)"},
        {exeQue([](const Pedido&, Resposta& r) { r.cabecalhos["Content-Range"] = "bytes 0-0/5000"; }),
         {},
         "diferente: Zu.exe (pedida a faixa 4999-, veio Content-Range \"bytes 0-0/5000\")"},
        {exeQue([](const Pedido&, Resposta& r) { r.cabecalhos.erase("Content-Range"); }),
         {},
         "diferente: Zu.exe (pedida a faixa 4999-, veio Content-Range \"\")"},
        {[&] { servidor_.Definir("Zu.exe", teste::Servir("curto")); },
         {},
         "diferente: Zu.exe (HTTP 416, Content-Range \"bytes */5\")"},
        {exeQue([](const Pedido&, Resposta& r) { r.cabecalhos["Content-Encoding"] = "gzip"; }),
         {},
         "diferente: Zu.exe (Content-Encoding: gzip: alguém no caminho recomprime)"},
        // Whole answers alone are recompressed, or rewritten: a range shows nothing.
        {exeQue([](const Pedido& p, Resposta& r) {
             if (p.Cabecalho("range").empty()) r.cabecalhos["Content-Encoding"] = "br";
         }),
         {},
         "diferente: Zu.exe (Content-Encoding: br: alguém no caminho recomprime)"},
        {exeQue([](const Pedido& p, Resposta& r) {
             if (p.Cabecalho("range").empty()) r.corpo.resize(4000);
         }),
         {},
         "diferente: Zu.exe (Content-Length diz 4000 bytes, esperado 5000)"},
        {exeQue([](const Pedido& p, Resposta& r) {
             if (!p.consulta.empty()) r = {.status = 404};
         }),
         {},
         "faltando: Zu.exe (HTTP 404; sem ?v= confere: o servidor trata ?v= como outro arquivo)"},
        {[&] { servidor_.Definir("b.pak.p002", [](const Pedido&) { return Resposta{.status = 404}; }); },
         {},
         "faltando: b.pak.p002 (HTTP 404)"},
        {[&] { servidor_.Definir("b.pak.p003", teste::Servir(teste::Bytes(999))); },
         {},
         "diferente: b.pak em 3 parte(s) (2999 bytes, esperado 3000)"},
        {[&] { servidor_.Definir("vazio.txt", teste::Servir("<html>")); },
         {},
         "diferente: vazio.txt (Content-Length diz 6 bytes, esperado 0)"},
        {[&] { servidor_.Definir("Zu.exe", teste::Servir(teste::Bytes(5000, 4))); },
         {"--completo"},
         "diferente: Zu.exe (CRC …"},
        {[&] { servidor_.Definir("b.pak.p003", teste::Servir(teste::Bytes(1000, 4))); },
         {"--completo"},
         "diferente: b.pak em 3 parte(s) (CRC …"},
        {exeQue([](const Pedido&, Resposta& r) { r = {.status = 503}; }), {}, "diferente: Zu.exe (HTTP 503)"},
        {lista(Assinada("") + "x"), {}, "UpdateList.txt não tem uma assinatura válida desta chave"},
        {lista("<html>"), {}, "UpdateList.txt não tem uma assinatura válida desta chave"},
        {lista(teste::Assinar(";seq\t1\n")), {}, "UpdateList.txt inválida: lista vazia"},
        {lista(Assinada(";validade\t2020-01-31T00:00:00Z\n")), {}, "diferente: UpdateList.txt (venceu em 31/01/2020)"},
        {[&] { Mentir("UpdateList.txt", Assinada(""), [](auto&, Resposta& r) { r.cabecalhos["Age"] = "600"; }); },
         {},
         "diferente: UpdateList.txt (um cache respondeu com o que guarda há 600 s a um ?t= nunca visto)"},
        {[&] {
             Mentir("UpdateList.txt", Assinada(""),
                    [=, this, vez = std::make_shared<std::atomic<int>>(0)](auto&, Resposta& r) {
                        if (++*vez > 2) r.corpo = Assinada(";versao\t2\n");
                    });
         },
         {},
         "diferente: UpdateList.txt (mudou durante a conferência, ou nem sempre vem a mesma)"},
    };
    for (const auto& [estragar, opcoes, linha] : casos) {
        publicacao_.Servir(servidor_);
        estragar();
        EXPECT_EQ(Rodar(opcoes), kRecusado) << linha;
        const std::size_t corte = linha.find("…");
        const std::string parte = corte == std::string::npos ? linha + "\n" : linha.substr(0, corte);
        EXPECT_NE(("\n" + saida_.Tudo()).find("\n" + parte), std::string::npos) << linha << "\n" << saida_.Tudo();
        EXPECT_EQ(std::ranges::count(saida_.Tudo(), '\n'), linha.starts_with("Update") ? 1 : 2) << saida_.Tudo();
    }
}

TEST_F(Conferir, UmTropecoNaoEDiferencaEUmServidorMortoNaoSeInsiste) {
    Mentir("Zu.exe", publicacao_.arquivos["Zu.exe"], [vez = std::make_shared<std::atomic<int>>(0)](auto&, Resposta& r) {
        if (++*vez == 1) r = {.status = 503};
    });
    EXPECT_EQ(Rodar(), kFeito) << saida_.Tudo();

    for (int i = 0; i < 200; ++i)
        publicacao_.arquivos[std::to_string(i)] = teste::Bytes(1);
    publicacao_.Servir(servidor_);
    for (const auto& [caminho, conteudo] : publicacao_.arquivos)
        Mentir(caminho, conteudo,
               [](auto&, Resposta& r) { r.fim = teste::Fim::kDerrubar, r.corpo = "", r.anunciado = 1; });
    servidor_.EsquecerPedidos();
    EXPECT_EQ(Rodar(), kRecusado);
    EXPECT_NE(saida_.Tudo().find("o servidor parou de atender"), std::string::npos) << saida_.Tudo();
    EXPECT_LT(servidor_.QuantosPedidos(), 200U);
}

// A server that still has the publication before: only the folder tells.
TEST_F(Conferir, PastaEServidorTemAMesmaLista) {
    teste::PastaTemporaria pasta;
    for (const std::string nova : {"", ";versao\tnova\n"}) {
        publicacao_.partes.clear();
        publicacao_.Servir(servidor_);
        for (const auto& [caminho, conteudo] : publicacao_.arquivos)
            pasta.Escrever(caminho, conteudo);
        pasta.Escrever("UpdateList.txt", teste::Assinar(update::EscreverLista(publicacao_.Lista()) + nova));
        EXPECT_EQ(Rodar({"--publicado=" + ParaUtf8(pasta.Caminho().native())}), nova.empty() ? kFeito : kRecusado);
        const bool difere = saida_.Tudo().find("(no servidor seq 1, na pasta seq 1") != std::string::npos;
        EXPECT_EQ(difere, !nova.empty()) << saida_.Tudo();
    }
}

TEST_F(Conferir, UsoErrado) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> casos{
        {{"--amostra=0"}, "--amostra"}, {{"--url=http://a/"}, "--url"}, {{"--publicado=@nada"}, "--publicado"}};
    for (const auto& [opcoes, parte] : casos) {
        EXPECT_EQ(Rodar(opcoes), kUsoErrado);
        EXPECT_NE(saida_.Tudo().find(parte), std::string::npos) << saida_.Tudo();
    }
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);
}

}  // namespace
}  // namespace zu::launcher::forjal

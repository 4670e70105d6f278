#include "update/http.h"

#include <gtest/gtest.h>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

using teste::Fim;
using teste::Pedido;
using teste::Resposta;
using teste::Servidor;

class Http : public testing::Test {
 protected:
    struct Resultado {
        bool ok;
        std::string erro;
    };

    std::wstring Url(const std::string& caminho) { return DeUtf8(servidor_.Url() + caminho); }

    Resultado Baixar(const std::string& caminho, std::uint64_t esperado, const ProgressCallback& progresso = {}) {
        std::string erro;
        const bool ok = HttpBaixarArquivo(Url(caminho), pasta_ / "f", esperado, progresso, cancelar_, erro);
        return {ok, erro};
    }
    std::string HttpEm(int status, const std::string& caminho) {
        return Formatar("HTTP {} em {}{}", status, servidor_.Url(), caminho);
    }

    teste::PastaTemporaria pasta_;
    Servidor servidor_;
    std::atomic<bool> cancelar_ = false;
};

TEST_F(Http, TextoComLimiteStatusESemCache) {
    servidor_.Definir("a", teste::Servir(std::string(1000, 'x')));
    std::string corpo;
    std::string erro;
    EXPECT_TRUE(HttpBaixarTexto(Url("a?t=1"), corpo, erro, 1000));
    EXPECT_EQ(corpo, std::string(1000, 'x'));
    EXPECT_FALSE(HttpBaixarTexto(Url("a?t=2"), corpo, erro, 999));
    EXPECT_EQ(erro, "resposta grande demais");
    EXPECT_FALSE(HttpBaixarTexto(Url("falta"), corpo, erro, 999));
    EXPECT_EQ(erro, HttpEm(404, "falta"));
    const Pedido pedido = servidor_.Pedidos("a").front();
    EXPECT_EQ(pedido.consulta, "t=1");
    EXPECT_EQ(pedido.Cabecalho("cache-control"), "no-cache");
    EXPECT_EQ(pedido.Cabecalho("pragma"), "no-cache");
    EXPECT_EQ(pedido.Cabecalho("user-agent"), "ZuLauncher/1.0");

    servidor_.Definir("sem-fim", [](const Pedido&) {
        return Resposta{.corpo = std::string(8 << 20, 'x'), .semTamanho = true, .fim = Fim::kFechar};
    });
    EXPECT_FALSE(HttpBaixarTexto(Url("sem-fim"), corpo, erro, 1 << 20));
    EXPECT_EQ(erro, "resposta grande demais");
}

TEST_F(Http, EnderecosRuinsEServidorAusente) {
    std::string corpo;
    std::string erro;
    EXPECT_FALSE(HttpBaixarTexto(L"ftp://127.0.0.1/a", corpo, erro, 10));
    EXPECT_EQ(erro, "URL: URL deve começar com http:// ou https://");
    EXPECT_FALSE(HttpBaixarTexto(L"http://127.0.0.1:1/a", corpo, erro, 10));
    EXPECT_EQ(erro, "download: não conectou ao servidor");
    EXPECT_FALSE(HttpBaixarTexto(L"", corpo, erro, 10));
    EXPECT_TRUE(erro.starts_with("URL: ")) << erro;
}

TEST_F(Http, RetomaAtravesDeUmRedirecionamento) {
    servidor_.Definir("novo", teste::Servir("conteúdo"));
    servidor_.Definir("velho", [](const Pedido&) {
        return Resposta{.status = 302, .cabecalhos = {{"Location", "/novo"}}};
    });
    pasta_.Escrever("f", "cont");
    EXPECT_TRUE(Baixar("velho", 9).ok);
    EXPECT_EQ(pasta_.Ler("f"), "conteúdo");
    EXPECT_EQ(servidor_.Pedidos("novo")[0].Cabecalho("range"), "bytes=4-");
}

TEST_F(Http, ArquivoInteiroRetomadoOuJaCompleto) {
    const std::string conteudo = teste::Bytes(600'000);
    servidor_.Definir("f", teste::Servir(conteudo));
    std::uint64_t soma = 0;
    int zeros = 0;  // one tells that what was there counts
    const auto progresso = [&](std::uint64_t bytes) { soma += bytes, zeros += bytes == 0 ? 1 : 0; };

    EXPECT_TRUE(Baixar("f", conteudo.size(), progresso).ok);
    EXPECT_EQ(pasta_.Ler("f"), conteudo);
    EXPECT_EQ(std::pair(soma, zeros), std::pair(conteudo.size(), 0));
    EXPECT_EQ(servidor_.Pedidos("f")[0].Cabecalho("range"), "");

    servidor_.EsquecerPedidos();
    EXPECT_TRUE(Baixar("f", conteudo.size()).ok);
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);

    pasta_.Escrever("f", conteudo.substr(0, 100'001));
    soma = 0;
    EXPECT_TRUE(Baixar("f", conteudo.size(), progresso).ok);
    EXPECT_EQ(pasta_.Ler("f"), conteudo);
    EXPECT_EQ(std::pair(soma, zeros), std::pair(conteudo.size() - 100'001, 1));
    EXPECT_EQ(servidor_.Pedidos("f")[0].Cabecalho("range"), "bytes=100001-");

    pasta_.Escrever("f", conteudo + "sobra");
    EXPECT_TRUE(Baixar("f", conteudo.size()).ok);
    EXPECT_EQ(pasta_.Ler("f"), conteudo);
}

TEST_F(Http, ServidorQueIgnoraAFaixaRecomeca) {
    const std::string conteudo = teste::Bytes(50'000);
    servidor_.Definir("f", [&](const Pedido&) { return Resposta{.corpo = conteudo}; });
    pasta_.Escrever("f", std::string(20'000, '!'));
    EXPECT_TRUE(Baixar("f", conteudo.size()).ok);
    EXPECT_EQ(pasta_.Ler("f"), conteudo);
}

TEST_F(Http, StatusQueNaoServem) {
    for (const int status : {206, 204, 403, 500, 503}) {
        const std::string caminho = std::to_string(status);
        servidor_.Definir(caminho, [status](const Pedido&) { return Resposta{.status = status, .corpo = "12345"}; });
        EXPECT_EQ(Baixar(caminho, 5).erro, HttpEm(status, caminho));
        EXPECT_FALSE(pasta_.Tem("f"));
    }
    // 416 alone also takes the partial file away, and the next attempt starts from zero.
    servidor_.Definir("f", teste::Servir("123"));
    pasta_.Escrever("f", "1234");
    EXPECT_EQ(Baixar("500", 5).erro, HttpEm(500, "500"));
    EXPECT_EQ(pasta_.Ler("f"), "1234");
    EXPECT_EQ(Baixar("f", 5).erro, HttpEm(416, "f"));
    EXPECT_FALSE(pasta_.Tem("f"));
}

TEST_F(Http, CorpoCurtoGuardaOQueVeio) {
    const std::string conteudo = teste::Bytes(300'000);
    for (const bool semTamanho : {false, true}) {
        servidor_.Definir("f", [&](const Pedido&) {
            return Resposta{.corpo = conteudo.substr(0, 100'000),
                            .anunciado = 300'000,
                            .semTamanho = semTamanho,
                            .fim = Fim::kFechar};
        });
        const Resultado curto = Baixar("f", 300'000);
        EXPECT_FALSE(curto.ok);
        EXPECT_TRUE(!semTamanho || curto.erro == "download incompleto (100000 de 300000 bytes)") << curto.erro;
        EXPECT_EQ(pasta_.Ler("f"), conteudo.substr(0, 100'000));
        std::filesystem::remove(pasta_ / "f");
    }
}

// A read that waits for a whole block loses what has arrived of it.
TEST_F(Http, ConexaoQueSempreCaiEntregaTudoAosPoucos) {
    const std::string conteudo = teste::Bytes(600'000);
    servidor_.Definir("f", [&](const Pedido& pedido) {
        Resposta resposta = teste::Servir(conteudo)(pedido);
        resposta.anunciado = resposta.corpo.size();
        resposta.corpo.resize(std::min<std::size_t>(resposta.corpo.size(), 100'000));
        resposta.fim = resposta.corpo.size() < *resposta.anunciado ? Fim::kDerrubar : Fim::kNormal;
        resposta.bloco = 10'000;
        resposta.pausa = std::chrono::milliseconds(2);
        return resposta;
    });
    for (std::size_t vez = 1; vez < 6; ++vez) {
        EXPECT_FALSE(Baixar("f", conteudo.size()).ok);
        EXPECT_EQ(pasta_.Ler("f").size(), vez * 100'000);
    }
    EXPECT_TRUE(Baixar("f", conteudo.size()).ok);
    EXPECT_EQ(pasta_.Ler("f"), conteudo);
}

TEST_F(Http, DadosAMaisSaoRecusadosEApagados) {
    servidor_.Definir("f", teste::Servir(std::string(1 << 20, 'x')));
    EXPECT_EQ(Baixar("f", 1000).erro, "o servidor mandou mais dados que o esperado");
    EXPECT_FALSE(pasta_.Tem("f"));
}

TEST_F(Http, CancelamentoNumaLinhaLentaAcabaLogoEGuardaTudo) {
    const std::string conteudo = teste::Bytes(1 << 20);
    servidor_.Definir("f", [&](const Pedido&) {
        return Resposta{.corpo = conteudo, .bloco = 1000, .pausa = std::chrono::milliseconds(100)};
    });
    std::uint64_t soma = 0;
    std::atomic<ULONGLONG> pedido = 0;
    const auto noMeio = [&](std::uint64_t bytes) {
        soma += bytes;
        if (soma < 3000 || cancelar_) return;
        cancelar_ = true;
        pedido = GetTickCount64();
    };
    EXPECT_EQ(Baixar("f", conteudo.size(), noMeio).erro, "cancelado");
    EXPECT_LT(GetTickCount64() - pedido, 300U);
    EXPECT_EQ(pasta_.Ler("f"), conteudo.substr(0, soma));

    std::filesystem::remove(pasta_ / "f");
    EXPECT_EQ(Baixar("f", conteudo.size()).erro, "cancelado");  // before the first read too
    EXPECT_EQ(pasta_.Ler("f"), "");
}

TEST_F(Http, DestinoQueNaoAbre) {
    servidor_.Definir("f", teste::Servir("abc"));
    std::filesystem::create_directory(pasta_ / "f");
    const Resultado resultado = Baixar("f", 3);
    EXPECT_FALSE(resultado.ok);
    EXPECT_TRUE(resultado.erro.starts_with("não foi possível gravar " + ParaUtf8((pasta_ / "f").native()) + " (erro "))
        << resultado.erro;
}

}  // namespace
}  // namespace zu::launcher

#include <gtest/gtest.h>

#include <array>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"
#include "update/atualizador.h"

namespace zu::launcher {
namespace {

using teste::Pedido;
using teste::Resposta;

class Item : public testing::Test {
 protected:
    Item() { teste::Configurar(pasta_.Caminho(), servidor_.Url()); }

    // Publishes one file and returns its line of the list.
    update::ItemLista Publicar(const std::string& caminho, const std::string& conteudo, std::uint32_t partes = 0) {
        teste::Publicacao publicacao;
        publicacao.arquivos[caminho] = conteudo;
        publicacao.partes[caminho] = partes;
        publicacao.Servir(servidor_);
        return publicacao.Lista().itens.front();
    }
    std::string Baixar(const update::ItemLista& item) {
        std::string erro;
        std::string sha256;
        const bool ok = atualizador_.BaixarItem(item, pasta_ / "f.upd", bytes_, sha256, erro);
        EXPECT_EQ(ok, erro.empty());
        return ok ? "baixado" : erro;
    }

    teste::PastaTemporaria pasta_;
    teste::Servidor servidor_;
    Atualizador atualizador_;
    std::atomic<std::uint64_t> bytes_ = 0;
};

TEST_F(Item, EnderecoEscapadoComOCrc) {
    const std::string conteudo = teste::Bytes(1000);
    update::ItemLista item = Publicar("a b/ç.pak", conteudo);
    item.caminho = "\\a b\\ç.pak";
    EXPECT_EQ(Baixar(item), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), conteudo);
    EXPECT_EQ(bytes_, conteudo.size());
    const auto pedidos = servidor_.Pedidos("a%20b/%C3%A7.pak");
    ASSERT_EQ(pedidos.size(), 1U);
    EXPECT_EQ(pedidos[0].consulta, Formatar("v={:08x}", item.crc));
}

TEST_F(Item, ConteudoErradoDoTamanhoCertoEApagado) {
    update::ItemLista item = Publicar("f", "certo");
    servidor_.Definir("f", teste::Servir("errad"));
    EXPECT_EQ(Baixar(item), Formatar("o arquivo baixado não confere (CRC32/SHA-256: CRC {:08X} esperado {:08X})",
                                     0x378A24AEU, item.crc));
    EXPECT_FALSE(pasta_.Tem("f.upd"));

    // A partial file of the wrong bytes is found out in the same way, and the next attempt starts from zero.
    servidor_.Definir("f", teste::Servir("certo"));
    pasta_.Escrever("f.upd", "err");
    EXPECT_TRUE(Baixar(item).starts_with("o arquivo baixado não confere"));
    EXPECT_EQ(Baixar(item), "baixado");

    // Complete already, so taken without a request, but proved all the same.
    pasta_.Escrever("f.upd", "errad");
    servidor_.EsquecerPedidos();
    EXPECT_TRUE(Baixar(item).starts_with("o arquivo baixado não confere"));
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);

    item.sha256 = std::string(64, '!');
    EXPECT_EQ(Baixar(item), "o arquivo baixado não confere (CRC32/SHA-256)");
    item.sha256.clear();
    EXPECT_EQ(Baixar(item), "baixado");
}

// A large file is hashed behind its writer, also behind what was there and when the server begins anew.
TEST_F(Item, GrandeEConferidoEnquantoChega) {
    const std::string conteudo = teste::Bytes(12 << 20);
    const update::ItemLista item = Publicar("f", conteudo);
    struct Caso {
        std::string presente;
        bool faixas;
        const char* fim;
    };
    const Caso casos[] = {{"", true, "baixado"},
                          {conteudo.substr(0, 5'000'001), true, "baixado"},
                          {conteudo.substr(0, 5'000'001), false, "baixado"},
                          {std::string(5'000'001, '?'), false, "baixado"},
                          {std::string(5'000'001, '?'), true, "o arquivo baixado não confere"}};
    for (const Caso& caso : casos) {
        pasta_.Escrever("f.upd", caso.presente);
        servidor_.Definir("f", [&](const Pedido& pedido) {
            return caso.faixas ? teste::Servir(conteudo)(pedido) : Resposta{.corpo = conteudo};
        });
        const std::string fim = Baixar(item);
        EXPECT_TRUE(fim.starts_with(caso.fim)) << fim;
        EXPECT_TRUE(pasta_.Ler("f.upd") == (fim == "baixado" ? conteudo : "(nada)"));
    }
}

TEST_F(Item, ArquivoVazioEPartesVazias) {
    pasta_.Escrever("f.upd", "resto de outra versão");
    EXPECT_EQ(Baixar(Publicar("vazio", "")), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), "");
    EXPECT_EQ(Baixar(Publicar("partido", "ab", 2)), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), "ab");
}

// After an interruption: what each part had on the disk, and the range that it is asked for.
TEST_F(Item, PartesEmOrdemJuntasERetomadas) {
    const std::string conteudo = teste::Bytes(900'000);
    const update::ItemLista item = Publicar("g.pak", conteudo, 3);
    constexpr std::size_t kFalta = std::string::npos;
    struct Caso {
        const char* nome;
        std::array<std::size_t, 3> presentes;
        std::array<const char*, 3> faixas;
        std::uint64_t bytes;
    };
    const Caso casos[] = {
        {"nothing yet", {kFalta, kFalta, kFalta}, {"", "", ""}, 900'000},
        {"in the second part", {300'000, 100'000, kFalta}, {"bytes=299999-", "bytes=100000-", ""}, 500'001},
        {"between two parts", {300'000, 0, kFalta}, {"bytes=299999-", "", ""}, 600'001},
        {"while joining", {300'000, 300'000, 300'000}, {"bytes=299999-", "bytes=299999-", "bytes=299999-"}, 3},
        {"of an older version", {800'000, 200'000, 5}, {"bytes=799999-", "bytes=199999-", "bytes=5-"}, 699'996},
    };
    for (const Caso& caso : casos) {
        SCOPED_TRACE(caso.nome);
        std::filesystem::remove(pasta_ / "f.upd");
        servidor_.EsquecerPedidos();
        bytes_ = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            if (caso.presentes[i] == kFalta) continue;
            pasta_.Escrever(Formatar("f.upd.p00{}", i + 1), conteudo.substr(i * 300'000, caso.presentes[i]));
        }
        EXPECT_EQ(Baixar(item), "baixado");
        EXPECT_EQ(pasta_.Ler("f.upd"), conteudo);
        EXPECT_EQ(pasta_.Tudo().size(), 1U) << "the parts are gone";
        EXPECT_EQ(bytes_, caso.bytes);
        for (std::size_t i = 0; i < 3; ++i) {
            const auto pedidos = servidor_.Pedidos(Formatar("g.pak.p00{}", i + 1));
            ASSERT_FALSE(pedidos.empty());
            EXPECT_EQ(pedidos[0].Cabecalho("range"), caso.faixas[i]);
            EXPECT_EQ(pedidos[0].consulta, Formatar("v={:08x}", item.crc));
        }
    }
}

TEST_F(Item, JuntadoAntesDaInterrupcaoNaoVemDeNovo) {
    const std::string conteudo = teste::Bytes(900'000);
    const update::ItemLista item = Publicar("g.pak", conteudo, 3);
    servidor_.EsquecerPedidos();
    pasta_.Escrever("f.upd", conteudo);
    pasta_.Escrever("f.upd.p001", conteudo.substr(0, 300'000));
    EXPECT_EQ(Baixar(item), "baixado");
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);
    EXPECT_FALSE(pasta_.Tem("f.upd.p001"));
}

// Together the parts never take more than the whole, and a mirror that sends more is not believed in any of them.
TEST_F(Item, EspelhoRuimNaoEncheODisco) {
    const update::ItemLista item = Publicar("g.pak", teste::Bytes(100'000), 10);
    for (int parte = 1; parte <= 10; ++parte)
        servidor_.Definir(Formatar("g.pak.p{:03}", parte), teste::Servir(teste::Bytes(90'000)));
    for (int vez = 0; vez < 2; ++vez) {
        bytes_ = 0;
        EXPECT_EQ(Baixar(item), "o servidor mandou mais dados que o esperado");
        EXPECT_LE(bytes_, 180'000U);
        EXPECT_TRUE(pasta_.Tudo().empty());
    }
    EXPECT_EQ(Baixar(Publicar("g.pak", teste::Bytes(100'000), 10)), "baixado") << "a good mirror mends it";
}

TEST_F(Item, ParteQueFaltaOuCancelamentoGuardaAsOutras) {
    const std::string conteudo = teste::Bytes(900'000);
    const update::ItemLista item = Publicar("g.pak", conteudo, 3);
    servidor_.Definir("g.pak.p002", [](const Pedido&) { return Resposta{.status = 500}; });
    EXPECT_EQ(Baixar(item), Formatar("HTTP 500 em {}g.pak.p002?v={:08x}", servidor_.Url(), item.crc));
    EXPECT_EQ(pasta_.Ler("f.upd.p001"), conteudo.substr(0, 300'000));

    servidor_.Definir("g.pak.p002", [this, conteudo](const Pedido&) {
        atualizador_.Cancelar();
        return Resposta{.corpo = conteudo.substr(300'000, 300'000)};
    });
    EXPECT_EQ(Baixar(item), "cancelado");
    EXPECT_TRUE(pasta_.Tem("f.upd.p001"));
}

}  // namespace
}  // namespace zu::launcher

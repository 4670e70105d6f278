#include <gtest/gtest.h>

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

TEST_F(Item, ArquivoVazioEPartesVazias) {
    EXPECT_EQ(Baixar(Publicar("vazio", "")), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), "");
    pasta_.Escrever("f.upd", "resto de outra versão");
    EXPECT_NE(Baixar(Publicar("vazio", "")), "baixado");  // refused range: the rest is thrown away
    EXPECT_EQ(Baixar(Publicar("vazio", "")), "baixado");
    EXPECT_EQ(Baixar(Publicar("partido", "ab", 2)), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), "ab");
}

TEST_F(Item, PartesEmOrdemJuntasERetomadas) {
    const std::string conteudo = teste::Bytes(900'000);
    const update::ItemLista item = Publicar("g.pak", conteudo, 3);
    EXPECT_EQ(Baixar(item), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), conteudo);
    EXPECT_EQ(pasta_.Tudo().size(), 1U) << "the parts are gone";
    for (const char* parte : {"g.pak.p001", "g.pak.p002", "g.pak.p003"}) {
        ASSERT_EQ(servidor_.Pedidos(parte).size(), 1U) << parte;
        EXPECT_EQ(servidor_.Pedidos(parte)[0].consulta, Formatar("v={:08x}", item.crc));
    }

    // After an interruption: the first part complete, the second begun. Neither is fetched again from its start.
    servidor_.EsquecerPedidos();
    bytes_ = 0;
    pasta_.Escrever("f.upd.p001", conteudo.substr(0, 300'000));
    pasta_.Escrever("f.upd.p002", conteudo.substr(300'000, 100'000));
    EXPECT_EQ(Baixar(item), "baixado");
    EXPECT_EQ(pasta_.Ler("f.upd"), conteudo);
    EXPECT_EQ(servidor_.Pedidos("g.pak.p002")[0].Cabecalho("range"), "bytes=99999-");
    EXPECT_EQ(bytes_, 500'002U);
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

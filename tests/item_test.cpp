#include <gmock/gmock.h>

#include <array>
#include <deque>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"
#include "update/atualizador.h"
#include "update/http.h"

namespace zu::launcher {
namespace {

using namespace teste;
using namespace testing;

// One file of the list, and the transfer below it.
class Item : public Test {
 protected:
    Item() { Configurar(pasta_.Caminho(), servidor_.Url()); }

    // Publishes one file and returns its line of the list.
    update::ItemLista Publicar(const std::string& caminho, const std::string& conteudo, std::uint32_t partes = 0) {
        const Publicacao publicacao{.arquivos = {{caminho, conteudo}}, .partes = {{caminho, partes}}};
        publicacao.Servir(servidor_);
        return listas_.emplace_back(publicacao.Lista()).itens.front();
    }
    // Into "f.upd"; why it failed, if it did.
    std::string Baixar(const update::ItemLista& item) {
        std::string erro;
        ItemBaixado baixado;
        bytes_ = 0;
        return atualizador_.BaixarItem(item, pasta_ / "f.upd", bytes_, baixado, erro) &&
                       atualizador_.DescarregarItem(pasta_ / "f.upd", baixado, erro)
                   ? "baixado"
                   : erro;
    }
    std::string HttpEm(int status, const std::string& caminho) {
        return Formatar("HTTP {} em {}{}", status, servidor_.Url(), caminho);
    }

    PastaTemporaria pasta_;
    Servidor servidor_;
    Atualizador atualizador_;
    std::deque<update::UpdateList> listas_;  // the texts of what was published
    std::atomic<std::uint64_t> bytes_ = 0;
};

// Whatever lies there: large files are hashed behind their writer, also behind what was there and when the server
// begins anew.
TEST_F(Item, DeQualquerComecoChegaAoConteudoOuSeApaga) {
    const std::string conteudo = Bytes(12 << 20);
    constexpr std::size_t kMeio = 5'000'001;
    const std::string meio = conteudo.substr(0, kMeio);
    const std::string errado(kMeio, '?');
    update::ItemLista item = Publicar("a b/ç.pak", conteudo);
    item.caminho = "\\a b\\ç.pak";
    const Roteiro servir = Servir(conteudo);
    const Roteiro inteiro = [&](const Pedido&) { return Resposta{.corpo = conteudo}; };
    servidor_.Definir("outro", servir);
    const Roteiro noutro = [](const Pedido&) {
        return Resposta{.status = 302, .cabecalhos = {{"Location", "/outro"}}};
    };
    const std::tuple<const char*, std::string, Roteiro, std::string, std::size_t> casos[] = {
        {"nothing", "", servir, "baixado", conteudo.size()},
        {"a part of it", meio, servir, "baixado", conteudo.size() - kMeio},
        {"a part of it, redirected", meio, noutro, "baixado", conteudo.size() - kMeio},
        {"range ignored", meio, inteiro, "baixado", conteudo.size()},
        {"wrong bytes, range ignored", errado, inteiro, "baixado", conteudo.size()},
        {"wrong bytes", errado, servir, "o arquivo baixado não confere", conteudo.size() - kMeio},
        {"too much", conteudo + "?", servir, "baixado", conteudo.size()},
        {"all of it", conteudo, servir, "baixado", 0},
        {"wrong bytes to the end", std::string(conteudo.size(), '?'), servir, "o arquivo baixado não confere", 0}};
    for (const auto& [nome, presente, roteiro, fim, bytes] : casos) {
        SCOPED_TRACE(nome);
        pasta_.Escrever("f.upd", presente);
        servidor_.EsquecerPedidos();
        servidor_.Definir("a%20b/%C3%A7.pak", roteiro);
        EXPECT_THAT(Baixar(item), StartsWith(fim));
        EXPECT_TRUE(pasta_.Ler("f.upd") == (fim == "baixado" ? conteudo : "(nada)"));
        EXPECT_EQ(bytes_, bytes);
        EXPECT_EQ(servidor_.Pedidos("a%20b/%C3%A7.pak").size(), bytes == 0 ? 0U : 1U);
    }
}

TEST_F(Item, PequenoErradoDoTamanhoCerto) {
    update::ItemLista item = Publicar("f", "certo");
    item.sha256 = {};
    servidor_.Definir("f", Servir("errad"));
    EXPECT_EQ(Baixar(item), Formatar("o arquivo baixado não confere (CRC32/SHA-256: CRC {:08X} esperado {:08X})",
                                     0x378A24AEU, item.crc));
    servidor_.Definir("f", Servir("certo"));
    EXPECT_EQ(Baixar(item), "baixado");
    const std::string errado(64, '!');
    item.sha256 = errado;
    EXPECT_EQ(Baixar(item), "o arquivo baixado não confere (CRC32/SHA-256)");
}

// After an interruption: what each part had on the disk, and the bytes that come. A part that is known to be complete
// is asked for its last one again.
TEST_F(Item, PartesEmOrdemJuntasERetomadas) {
    const std::string conteudo = Bytes(900'000);
    const update::ItemLista item = Publicar("g.pak", conteudo, 3);
    constexpr std::size_t kFalta = std::string::npos;
    const std::tuple<const char*, std::array<std::size_t, 3>, std::size_t> casos[] = {
        {"nothing yet", {kFalta, kFalta, kFalta}, 900'000},
        {"in the second part", {300'000, 100'000, kFalta}, 500'001},
        {"between two parts", {300'000, 0, kFalta}, 600'001},
        {"while joining", {300'000, 300'000, 300'000}, 3},
        {"of an older version", {800'000, 200'000, 5}, 699'996},
        {"joined", {300'000, kFalta, kFalta}, 0}};
    for (const auto& [nome, presentes, bytes] : casos) {
        SCOPED_TRACE(nome);
        if (bytes != 0) std::filesystem::remove(pasta_ / "f.upd");
        for (std::size_t i = 0; i < 3; ++i)
            if (presentes[i] != kFalta)
                pasta_.Escrever(Formatar("f.upd.p00{}", i + 1), conteudo.substr(i * 300'000, presentes[i]));
        EXPECT_EQ(Baixar(item), "baixado");
        EXPECT_EQ(pasta_.Ler("f.upd"), conteudo);
        EXPECT_EQ(pasta_.Tudo().size(), 1U) << "the parts are gone";
        EXPECT_EQ(bytes_, bytes);
    }
}

// What came stays when one part does not; but together the parts never take more than the whole, and a mirror that
// sends more is not believed in any of them.
TEST_F(Item, ParteQueFaltaEEspelhoQueEncheriaODisco) {
    const update::ItemLista item = Publicar("g.pak", Bytes(100'000), 10);
    servidor_.Definir("g.pak.p002", {.status = 500});
    EXPECT_EQ(Baixar(item), HttpEm(500, Formatar("g.pak.p002?v={:08x}", item.crc)));
    EXPECT_EQ(pasta_.Ler("f.upd.p001"), Bytes(10'000));
    EXPECT_EQ(pasta_.Ler("f.upd.p002"), "") << "tells that the first is complete";
    for (int parte = 1; parte <= 10; ++parte)
        servidor_.Definir(Formatar("g.pak.p{:03}", parte), Servir(Bytes(90'000)));
    EXPECT_EQ(Baixar(item), "o servidor mandou mais dados que o esperado");
    EXPECT_LE(bytes_, 180'000U);
    EXPECT_TRUE(pasta_.Tudo().empty());
}

TEST_F(Item, TextoAteOLimiteESemCache) {
    servidor_.Definir("a", Servir(std::string(1000, 'x')));
    const auto baixar = [](const std::string& url, std::uint64_t maximo) {
        std::string corpo, erro;
        return HttpBaixarTexto(DeUtf8(url), corpo, erro, maximo) ? corpo : erro;
    };
    EXPECT_EQ(baixar(servidor_.Url() + "a", 1000), std::string(1000, 'x'));
    EXPECT_EQ(baixar(servidor_.Url() + "a", 999), "resposta grande demais");
    EXPECT_EQ(baixar("ftp://127.0.0.1/a", 10), "URL: URL deve começar com http:// ou https://");
    const Pedido pedido = servidor_.Pedidos("a").front();
    EXPECT_EQ(pedido.Cabecalho("cache-control"), "no-cache");
    EXPECT_EQ(pedido.Cabecalho("pragma"), "no-cache");
}

TEST_F(Item, RespostasQueNaoServem) {
    // The answer, the bytes expected, and what lies there then: what came of a body that is too short stays. Of the
    // refusals 416 alone takes it away, so that the next attempt starts from zero.
    const std::tuple<Resposta, std::uint64_t, std::string, const char*> casos[] = {
        {{.status = 206, .corpo = "12345"}, 5, HttpEm(206, "f?v=00000000"), "(nada)"},
        {{.status = 204, .corpo = "12345"}, 5, HttpEm(204, "f?v=00000000"), "(nada)"},
        {{.corpo = "1234", .fim = Fim::kFechar}, 5, "download incompleto (4 de 5 bytes)", "1234"},
        {{.status = 404}, 5, HttpEm(404, "f?v=00000000"), "1234"},
        {{.status = 416}, 5, HttpEm(416, "f?v=00000000"), "(nada)"},
        {{.corpo = "123"}, 2, "o servidor mandou mais dados que o esperado", "(nada)"}};
    for (const auto& [resposta, esperado, fim, fica] : casos) {
        servidor_.Definir("f", resposta);
        EXPECT_EQ(Baixar({.caminho = "f", .tamanho = esperado}), fim);
        EXPECT_EQ(pasta_.Ler("f.upd"), fica) << fim;
    }
    std::filesystem::create_directory(pasta_ / "f.upd");
    EXPECT_THAT(Baixar({.caminho = "f", .tamanho = 3}),
                StartsWith("não foi possível gravar " + ParaUtf8((pasta_ / "f.upd").native()) + " (erro "));
}

}  // namespace
}  // namespace zu::launcher

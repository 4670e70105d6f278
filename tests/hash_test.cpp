#include "core/hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/assinatura.h"
#include "core/texto.h"
#include "tests/suporte/pasta.h"
#include "tests/suporte/publicacao.h"
#include "update/hash_arquivo.h"

namespace zu::launcher {
namespace {

std::vector<std::uint8_t> DeHex(std::string_view hex) {
    std::vector<std::uint8_t> bytes(hex.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::uint32_t valor = 0;
        LerNumeroInteiro(hex.substr(2 * i, 2), valor, 16);
        bytes[i] = static_cast<std::uint8_t>(valor);
    }
    return bytes;
}

std::vector<std::uint8_t> ComoBytes(std::string_view texto) {
    return {texto.begin(), texto.end()};
}

// FIPS 180-4 examples.
TEST(Hash, Sha256DosExemplosPublicados) {
    const std::pair<std::string, const char*> casos[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& [texto, esperado] : casos) {
        EXPECT_EQ(ParaHex(Sha256Of(ComoBytes(texto))), esperado);
        Sha256Incremental contexto = Sha256Begin();
        Sha256Feed(contexto, nullptr, 0);
        Sha256Feed(contexto, texto.data(), texto.size() / 3);
        Sha256Feed(contexto, texto.data() + texto.size() / 3, texto.size() - texto.size() / 3);
        Sha256Digest digest{};
        Sha256Finish(contexto, digest);
        EXPECT_EQ(ParaHex(digest), esperado);
    }
    Sha256Incremental nulo;
    Sha256Digest digest{1, 2, 3};
    Sha256Feed(nulo, "abc", 3);
    Sha256Finish(nulo, digest);
    EXPECT_EQ(digest, Sha256Digest{});
}

// RFC 4231, cases 1, 2, 3 and 6.
TEST(Hash, HmacDosExemplosPublicados) {
    const std::tuple<std::string, std::string, const char*> casos[] = {
        {std::string(20, '\x0b'), "Hi There", "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7"},
        {"Jefe", "what do ya want for nothing?", "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"},
        {std::string(20, '\xaa'), std::string(50, '\xdd'),
         "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe"},
        {std::string(131, '\xaa'), "Test Using Larger Than Block-Size Key - Hash Key First",
         "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54"},
    };
    for (const auto& [chave, dados, esperado] : casos) {
        EXPECT_EQ(ParaHex(HmacSha256(ComoBytes(chave), ComoBytes(dados))), esperado);
    }
}

struct CasoDeAssinatura {
    const char* nome;
    const char* chave;
    const char* mensagem;
    const char* assinatura;
    bool boa;
};
constexpr CasoDeAssinatura kAssinaturas[] = {
#include "tests/dados/assinaturas.inc"
};

TEST(Assinatura, CasosDoNistEDoOpenssl) {
    for (const CasoDeAssinatura& caso : kAssinaturas) {
        const std::vector<UpdateSigningKey> chaves{DeHex(caso.chave)};
        EXPECT_EQ(VerifyListSignature(chaves, DeHex(caso.mensagem), DeHex(caso.assinatura)), caso.boa) << caso.nome;
    }
}

TEST(Assinatura, QualquerChaveDaListaENenhumaOutra) {
    const CasoDeAssinatura& boa = kAssinaturas[0];
    const CasoDeAssinatura* outra = std::ranges::find_if(
        kAssinaturas, [&](const CasoDeAssinatura& c) { return std::string_view(c.chave) != boa.chave; });
    const auto mensagem = DeHex(boa.mensagem);
    const auto assinatura = DeHex(boa.assinatura);
    ASSERT_TRUE(boa.boa);
    const UpdateSigningKey certa = DeHex(boa.chave);
    const UpdateSigningKey errada = DeHex(outra->chave);
    const UpdateSigningKey quebrada(20, 7);
    const std::vector<UpdateSigningKey> comACerta{quebrada, errada, certa};
    const std::vector<UpdateSigningKey> semACerta{quebrada, errada};
    EXPECT_TRUE(VerifyListSignature(comACerta, mensagem, assinatura));
    EXPECT_FALSE(VerifyListSignature(semACerta, mensagem, assinatura));
    EXPECT_FALSE(VerifyListSignature({}, mensagem, assinatura));

    auto curta = assinatura;
    curta.resize(assinatura.size() - 1);
    auto longa = assinatura;
    longa.resize(assinatura.size() + 1);
    auto mudada = assinatura;
    mudada[100] ^= 1;
    for (const auto& ruim : {curta, longa, mudada, std::vector<std::uint8_t>{}}) {
        EXPECT_FALSE(VerifyListSignature(comACerta, mensagem, ruim));
    }
}

TEST(Hash, ArquivoInteiroEEmPartesNumaPassada) {
    const teste::PastaTemporaria pasta;
    const std::string conteudo = teste::Bytes(2'500'000);
    pasta.Escrever("f", conteudo);
    pasta.Escrever("g.p001", conteudo.substr(0, 1'000'000));
    pasta.Escrever("g.p002", "");
    pasta.Escrever("g.p003", conteudo.substr(1'000'000));
    std::uint64_t soma = 0;
    const ResultadoHash inteiro = HashArquivo(pasta / "f", 0, [&](std::uint64_t bytes) { soma += bytes; });
    const ResultadoHash partes = HashArquivo(pasta / "g", 3);
    EXPECT_TRUE(inteiro.ok);
    EXPECT_EQ(soma, conteudo.size());
    EXPECT_EQ(inteiro.bytes, conteudo.size());
    EXPECT_EQ(inteiro.sha256, Sha256Of(ComoBytes(conteudo)));
    EXPECT_EQ(partes.bytes, inteiro.bytes);
    EXPECT_EQ(partes.crc, inteiro.crc);
    EXPECT_EQ(partes.sha256, inteiro.sha256);
    EXPECT_FALSE(HashArquivo(pasta / "g", 4).ok);
    EXPECT_FALSE(HashArquivo(pasta / "falta", 0).ok);
    const std::atomic<bool> cancelado = true;
    EXPECT_FALSE(HashArquivo(pasta / "f", 0, {}, &cancelado).ok);
}

TEST(Hash, BytesAoAcasoEnchemTudo) {
    std::vector<std::uint8_t> a(64);
    std::vector<std::uint8_t> b(64);
    EXPECT_TRUE(RandomBytes(a) && RandomBytes(b));
    EXPECT_NE(a, b);
    EXPECT_NE(a, std::vector<std::uint8_t>(64));
}

}  // namespace
}  // namespace zu::launcher

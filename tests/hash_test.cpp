#include "core/hash.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/assinatura.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"
#include "update/hash_arquivo.h"

namespace zu::launcher {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes DeHex(std::string_view hex) {
    Bytes bytes(hex.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        LerNumeroInteiro(hex.substr(2 * i, 2), bytes[i], 16);
    return bytes;
}
Bytes ComoBytes(std::string_view texto) {
    return {texto.begin(), texto.end()};
}

// The second of the FIPS 180-4 examples.
TEST(Hash, Sha256ESemContexto) {
    EXPECT_EQ(ParaHex(Sha256Of(Bytes(1'000'000, 'a'))),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
    Sha256Incremental nulo;
    Sha256Digest digest{1, 2, 3};
    Sha256Feed(nulo, "abc", 3);
    Sha256Finish(nulo, digest);
    EXPECT_EQ(digest, Sha256Digest{});
}

// RFC 4231, case 2.
TEST(Hash, HmacDaChaveEDosDados) {
    EXPECT_EQ(ParaHex(HmacSha256(ComoBytes("Jefe"), ComoBytes("what do ya want for nothing?"))),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

struct CasoDeAssinatura {
    const char *nome, *chave, *mensagem, *assinatura;
    bool boa;
};
constexpr CasoDeAssinatura kAssinaturas[] = {
#include "tests/dados/assinaturas.inc"
};

// Any key of the list will do, among others and behind one that is none; and no other.
TEST(Assinatura, CasosDoNistEDoOpenssl) {
    for (const CasoDeAssinatura& caso : kAssinaturas) {
        const char* const ultima = std::end(kAssinaturas)[-1].chave;
        const char* const outra = caso.chave == std::string_view(ultima) ? kAssinaturas[0].chave : ultima;
        std::vector<UpdateSigningKey> chaves{UpdateSigningKey(20, 7), DeHex(outra)};
        Bytes assinatura = DeHex(caso.assinatura);
        EXPECT_FALSE(VerifyListSignature(chaves, DeHex(caso.mensagem), assinatura)) << caso.nome;
        chaves.push_back(DeHex(caso.chave));
        EXPECT_EQ(VerifyListSignature(chaves, DeHex(caso.mensagem), assinatura), caso.boa) << caso.nome;
        assinatura.push_back(0);
        EXPECT_FALSE(VerifyListSignature(chaves, DeHex(caso.mensagem), assinatura)) << caso.nome;
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
    EXPECT_EQ(std::tuple(inteiro.ok, soma, inteiro.bytes), std::tuple(true, conteudo.size(), conteudo.size()));
    EXPECT_EQ(inteiro.sha256, Sha256Of(ComoBytes(conteudo)));
    EXPECT_EQ(std::tuple(partes.bytes, partes.crc, partes.sha256),
              std::tuple(inteiro.bytes, inteiro.crc, inteiro.sha256));
    EXPECT_FALSE(HashArquivo(pasta / "g", 4).ok);
    EXPECT_FALSE(HashArquivo(pasta / "falta", 0).ok);
    const std::atomic<bool> cancelado = true;
    EXPECT_FALSE(HashArquivo(pasta / "f", 0, {}, &cancelado).ok);
}

}  // namespace
}  // namespace zu::launcher

#include <gtest/gtest.h>

#include <vector>

#include "core/assinatura.h"
#include "core/hash.h"
#include "core/texto.h"

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

}  // namespace
}  // namespace zu::launcher

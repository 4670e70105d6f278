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

// RFC 4231, case 2.
TEST(Hash, HmacDaChaveEDosDados) {
    EXPECT_EQ(ParaHex(HmacSha256(DeHex("4a656665"), DeHex("7768617420646f2079612077616e7420666f72206e6f7468696e673f"))),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

constexpr std::tuple<const char*, const char*, const char*, const char*, bool> kAssinaturas[] = {
#include "tests/dados/assinaturas.inc"
};

// Any key of the list will do, among others and behind one that is none; and no other.
TEST(Assinatura, CasosDoNistEDoOpenssl) {
    const std::string_view primeira = std::get<1>(kAssinaturas[0]);
    const std::string_view ultima = std::get<1>(std::end(kAssinaturas)[-1]);
    for (const auto& [nome, chave, mensagem, assinada, boa] : kAssinaturas) {
        const std::string_view outra = chave == ultima ? primeira : ultima;
        std::vector<UpdateSigningKey> chaves{UpdateSigningKey(20, 7), DeHex(outra)};
        Bytes assinatura = DeHex(assinada);
        EXPECT_FALSE(VerifyListSignature(chaves, DeHex(mensagem), assinatura)) << nome;
        chaves.push_back(DeHex(chave));
        EXPECT_EQ(VerifyListSignature(chaves, DeHex(mensagem), assinatura), boa) << nome;
        assinatura.push_back(0);
        EXPECT_FALSE(VerifyListSignature(chaves, DeHex(mensagem), assinatura)) << nome;
    }
}

}  // namespace
}  // namespace zu::launcher

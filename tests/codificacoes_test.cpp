#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/base64.h"
#include "core/crc32.h"
#include "core/texto.h"

namespace zu::launcher {
namespace {

std::vector<std::uint8_t> Sortear(std::size_t tamanho) {
    static std::mt19937 sorteio(7);
    std::vector<std::uint8_t> bytes(tamanho);
    std::ranges::generate(bytes, [] { return static_cast<std::uint8_t>(sorteio()); });
    return bytes;
}

TEST(Base64, DecodificaSemPerdoarNadaESemGuardarOQueHavia) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::string_view> casos[] = {{"", ""},
                                                                   {"=", ""},
                                                                   {"QQ==", "A"},
                                                                   {"QQ", "A"},
                                                                   {"Zm9vYg==", "foob"},
                                                                   {"Q", ""},
                                                                   {"Zm9v=!", "foo"},
                                                                   {"+/+/", "\xFB\xFF\xBF"},
                                                                   {"Zm 9v", "recusado"},
                                                                   {"Zm9v\n", "recusado"},
                                                                   {"-_-_", "recusado"},
                                                                   {"Zm9v\0"sv, "recusado"},
                                                                   {"\xC3\xA9", "recusado"}};
    for (const auto& [texto, esperado] : casos) {
        std::vector<std::uint8_t> bytes{'x', 'y'};
        const bool aceito = Base64Decode(texto, bytes);
        EXPECT_EQ(aceito ? std::string(bytes.begin(), bytes.end()) : "recusado", esperado) << texto;
    }
    for (std::size_t tamanho = 0; tamanho < 100; ++tamanho) {
        const std::vector<std::uint8_t> bytes = Sortear(tamanho);
        std::vector<std::uint8_t> volta;
        const std::string texto = Base64Encode(bytes);
        EXPECT_EQ(texto.size() % 4, 0U);
        EXPECT_TRUE(Base64Decode(texto, volta));
        EXPECT_EQ(volta, bytes);
    }
}

// Bit by bit, straight from the definition.
std::uint32_t CrcPelaDefinicao(const std::vector<std::uint8_t>& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

// The processor's way and the table's, in one go and in two.
TEST(Crc32, IgualADefinicaoEmQualquerTamanhoECorte) {
    EXPECT_EQ(~Crc32Update(kCrc32Inicial, "123456789", 9), 0xCBF43926U);
    for (std::size_t tamanho = 0; tamanho < 600; ++tamanho) {
        const std::vector<std::uint8_t> bytes = Sortear(tamanho);
        const std::uint32_t esperado = CrcPelaDefinicao(bytes);
        const std::size_t corte = tamanho * 2 / 5;
        const std::uint32_t primeira = Crc32Update(kCrc32Inicial, bytes.data(), corte);
        EXPECT_EQ(~Crc32Update(kCrc32Inicial, bytes.data(), tamanho), esperado) << tamanho;
        EXPECT_EQ(~Crc32Update(primeira, bytes.data() + corte, tamanho - corte), esperado) << tamanho;
        EXPECT_EQ(~detalhe::Crc32PorTabela(kCrc32Inicial, bytes.data(), tamanho), esperado) << tamanho;
    }
}

TEST(Texto, HexMinusculasENumeros) {
    EXPECT_EQ(ParaHex(std::vector<std::uint8_t>{0x00, 0x0F, 0xA5, 0xFF}), "000fa5ff");
    EXPECT_EQ(MinusculasAscii("AÉBz[@`"), "aÉbz[@`");

    std::uint32_t valor = 77;
    for (const char* ruim : {"", " 1", "1 ", "+1", "-1", "0x1", "4294967296", "1a"}) {
        EXPECT_FALSE(LerNumeroInteiro(ruim, valor)) << ruim;
        EXPECT_EQ(valor, 77U);
    }
    EXPECT_TRUE(LerNumeroInteiro("004294967295", valor));
    EXPECT_EQ(valor, 0xFFFFFFFFU);
    EXPECT_TRUE(LerNumeroInteiro("0cBf43926", valor, 16));
    EXPECT_EQ(valor, 0xCBF43926U);
}

}  // namespace
}  // namespace zu::launcher

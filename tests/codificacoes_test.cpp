#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/base64.h"
#include "core/crc32.h"
#include "core/texto.h"

namespace zu::launcher {
namespace {

std::string Decodificar(std::string_view texto) {
    std::vector<std::uint8_t> bytes;
    return Base64Decode(texto, bytes) ? std::string(bytes.begin(), bytes.end()) : "recusado";
}

TEST(Base64, DecodificaSemPerdoarNada) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::string_view> casos[] = {
        {"", ""},
        {"=", ""},
        {"QQ==", "A"},
        {"QQ", "A"},
        {"Zm9v", "foo"},
        {"Zm9vYg==", "foob"},
        {"Zm9v=lixo!", "foo"},
        {"Q", ""},
        {"Zm 9v", "recusado"},
        {"Zm9v\n", "recusado"},
        {"Zm\t9v", "recusado"},
        {"-_-_", "recusado"},
        {"Zm9v\0"sv, "recusado"},
        {"\xC3\xA9", "recusado"},
    };
    for (const auto& [texto, esperado] : casos)
        EXPECT_EQ(Decodificar(texto), esperado) << texto;
}

TEST(Base64, IdaEVoltaEmTodosOsRestos) {
    std::mt19937 sorteio(7);
    for (std::size_t tamanho = 0; tamanho < 100; ++tamanho) {
        std::vector<std::uint8_t> bytes(tamanho);
        for (auto& b : bytes)
            b = static_cast<std::uint8_t>(sorteio());
        std::vector<std::uint8_t> volta;
        const std::string texto = Base64Encode(bytes);
        EXPECT_EQ(texto.size() % 4, 0U);
        EXPECT_TRUE(Base64Decode(texto, volta));
        EXPECT_EQ(volta, bytes);
    }
}

// Bit by bit, straight from the definition.
std::uint32_t CrcPelaDefinicao(const std::vector<std::uint8_t>& bytes) {
    std::uint32_t crc = kCrc32Inicial;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

TEST(Crc32, IgualADefinicaoEmQualquerTamanhoECorte) {
    EXPECT_EQ(~Crc32Update(kCrc32Inicial, "123456789", 9), 0xCBF43926U);
    EXPECT_EQ(~Crc32Update(kCrc32Inicial, nullptr, 0), 0U);
    std::mt19937 sorteio(11);
    for (std::size_t tamanho = 0; tamanho < 600; ++tamanho) {
        std::vector<std::uint8_t> bytes(tamanho);
        for (auto& b : bytes)
            b = static_cast<std::uint8_t>(sorteio());
        const std::uint32_t esperado = CrcPelaDefinicao(bytes);
        EXPECT_EQ(~Crc32Update(kCrc32Inicial, bytes.data(), tamanho), esperado) << tamanho;
        EXPECT_EQ(~detalhe::Crc32PorTabela(kCrc32Inicial, bytes.data(), tamanho), esperado) << tamanho;
        const std::size_t corte = tamanho == 0 ? 0 : sorteio() % tamanho;
        const std::uint32_t primeira = Crc32Update(kCrc32Inicial, bytes.data(), corte);
        EXPECT_EQ(~Crc32Update(primeira, bytes.data() + corte, tamanho - corte), esperado) << tamanho << " " << corte;
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
    EXPECT_FALSE(LerNumeroInteiro("1CBF43926", valor, 16));
}

}  // namespace
}  // namespace zu::launcher

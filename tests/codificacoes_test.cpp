#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/base64.h"
#include "core/crc32.h"

namespace zu::launcher {
namespace {

std::vector<std::uint8_t> Sortear(std::size_t tamanho) {
    std::vector<std::uint8_t> bytes(tamanho);
    std::ranges::generate(bytes, std::mt19937(7));
    return bytes;
}

TEST(Base64, DecodificaSemPerdoarNadaESemGuardarOQueHavia) {
    const std::pair<std::string_view, std::string_view> casos[] = {{"QQ", "A"},
                                                                   {"Q", ""},
                                                                   {"Zm9v=!", "foo"},
                                                                   {"+/+/", "\xFB\xFF\xBF"},
                                                                   {"Zm 9v", "recusado"},
                                                                   {"-_-_", "recusado"},
                                                                   {std::string_view("Zm9v\0", 5), "recusado"},
                                                                   {"\xC3\xA9", "recusado"}};
    for (const auto& [texto, esperado] : casos) {
        std::vector<std::uint8_t> bytes{'x', 'y'};
        const bool aceito = Base64Decode(texto, bytes);
        EXPECT_EQ(aceito ? std::string(bytes.begin(), bytes.end()) : "recusado", esperado) << texto;
    }
    for (std::size_t tamanho = 0; tamanho < 100; ++tamanho) {
        std::vector<std::uint8_t> volta;
        const std::string texto = Base64Encode(Sortear(tamanho));
        EXPECT_EQ(texto.size() % 4, 0U);
        EXPECT_TRUE(Base64Decode(texto, volta));
        EXPECT_EQ(volta, Sortear(tamanho));
    }
}

// The table's way, of which one known sum is proof enough, and the processor's, in one go and in two.
TEST(Crc32, OMesmoEmQualquerTamanhoECorte) {
    EXPECT_EQ(~Crc32Update(kCrc32Inicial, "123456789", 9), 0xCBF43926U);
    const std::vector<std::uint8_t> bytes = Sortear(600);
    for (std::size_t tamanho = 0; tamanho < bytes.size(); ++tamanho) {
        const std::uint32_t esperado = detalhe::Crc32PorTabela(kCrc32Inicial, bytes.data(), tamanho);
        const std::size_t corte = tamanho * 2 / 5;
        const std::uint32_t primeira = Crc32Update(kCrc32Inicial, bytes.data(), corte);
        EXPECT_EQ(Crc32Update(kCrc32Inicial, bytes.data(), tamanho), esperado) << tamanho;
        EXPECT_EQ(Crc32Update(primeira, bytes.data() + corte, tamanho - corte), esperado) << tamanho;
    }
}

}  // namespace
}  // namespace zu::launcher

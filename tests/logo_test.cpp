#include "ui/desenho/logo.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace zu::launcher {
namespace {

using Bytes = std::vector<std::pair<std::size_t, int>>;  // places in the header, and what stands there

// Of 2 x 2 pixels, top row first, unless `outros` says otherwise.
std::string Tga(const Bytes& outros, const std::string& corpo = std::string(8192, '\0')) {
    std::string cabecalho(18, '\0');
    for (const Bytes& bytes : {Bytes{{2, 2}, {12, 2}, {14, 2}, {16, 32}, {17, 0x28}}, outros})
        for (const auto& [lugar, valor] : bytes)
            cabecalho[lugar] = static_cast<char>(valor);
    return cabecalho + corpo;
}

TEST(Logo, PixelsSobrePretoNasDuasDirecoes) {
    const std::string corpo("\x0A\x14\x1E\xFF\xFF\xFF\xFF\x80\xC8\x64\x32\x00\x01\x02\x03\x7F", 16);
    const std::vector<std::uint32_t> deCima{0xFF1E140A, 0xFF808080, 0xFF000000, 0xFF010000};
    const std::vector<std::uint32_t> deBaixo{deCima[2], deCima[3], deCima[0], deCima[1]};
    EXPECT_EQ(LerLogo(Tga({}, corpo)).pixels, deCima);
    const std::string comId = Tga({{0, 3}, {17, 8}}, "iii" + corpo);
    EXPECT_EQ(LerLogo(comId + "resto").pixels, deBaixo);
    for (std::size_t n = 0; n < comId.size(); ++n)
        EXPECT_TRUE(LerLogo(comId.substr(0, n)).Vazia()) << n;
}

TEST(Logo, LimitesEEncaixeComAProporcao) {
    for (const auto& [largura, altura] : {std::pair{1024, 1}, {1, 1024}}) {
        const LogoCentral maior =
            LerLogo(Tga({{12, largura & 255}, {13, largura >> 8}, {14, altura & 255}, {15, altura >> 8}}));
        EXPECT_EQ(std::tuple(maior.largura, maior.altura, maior.pixels.size()), std::tuple(largura, altura, 1024U));
    }
    for (const Bytes& outros :
         {Bytes{{2, 10}}, {{16, 24}}, {{12, 0}}, {{14, 0}}, {{12, 1}, {13, 4}, {14, 1}}, {{14, 1}, {15, 4}, {12, 1}}})
        EXPECT_TRUE(LerLogo(Tga(outros)).Vazia()) << outros[0].first;
    for (const auto& [largura, altura, w, h] :
         {std::array{440, 310, 416, 293}, {416, 294, 414, 293}, {100, 1000, 29, 293}, {1024, 10, 416, 4}}) {
        const Tamanho t = EncaixarLogo(largura, altura);
        EXPECT_EQ(std::pair(t.largura, t.altura), std::pair(w, h)) << largura << " x " << altura;
    }
}

}  // namespace
}  // namespace zu::launcher

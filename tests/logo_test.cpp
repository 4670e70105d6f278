#include <gtest/gtest.h>

#include <string>

#include "ui/desenho/logo.h"

namespace zu::launcher {
namespace {

struct Tga {
    int id = 0;
    int tipo = 2;
    int largura = 2;
    int altura = 2;
    int profundidade = 32;
    int descritor = 0x28;

    // Zeroed pixels, when none are given.
    [[nodiscard]] std::string Arquivo(std::string corpo = {}) const {
        std::string c(18, '\0');
        const auto por = [&](std::size_t i, int valor) { c[i] = static_cast<char>(valor); };
        por(0, id), por(2, tipo), por(12, largura & 0xFF), por(13, largura >> 8), por(14, altura & 0xFF);
        por(15, altura >> 8), por(16, profundidade), por(17, descritor);
        corpo.resize(std::max<std::size_t>(corpo.size(), static_cast<std::size_t>(largura * altura * 4)));
        return c + std::string(static_cast<std::size_t>(id), 'i') + corpo;
    }
};

TEST(Logo, PixelsSobrePretoNasDuasDirecoes) {
    const std::string corpo("\x0A\x14\x1E\xFF\xFF\xFF\xFF\x80\xC8\x64\x32\x00\x01\x02\x03\x7F", 16);
    const std::vector<std::uint32_t> deCima{0xFF1E140A, 0xFF808080, 0xFF000000, 0xFF010000};
    const std::vector<std::uint32_t> deBaixo{deCima[2], deCima[3], deCima[0], deCima[1]};
    EXPECT_EQ(LerLogo(Tga{}.Arquivo(corpo)).pixels, deCima);
    EXPECT_EQ(LerLogo(Tga{.id = 7, .descritor = 8}.Arquivo(corpo) + "resto").pixels, deBaixo);
    for (const auto& [largura, altura] : {std::pair{1024, 1}, std::pair{1, 1024}}) {
        const LogoCentral maior = LerLogo(Tga{.largura = largura, .altura = altura}.Arquivo());
        EXPECT_EQ(std::pair(maior.largura, maior.altura), std::pair(largura, altura));
        EXPECT_EQ(maior.pixels.size(), 1024U);
    }
}

TEST(Logo, OQueNaoServeFicaVazio) {
    for (const Tga& t : {Tga{.tipo = 10}, Tga{.profundidade = 24}, Tga{.largura = 0}, Tga{.altura = 0},
                         Tga{.largura = 1025, .altura = 1}, Tga{.largura = 1, .altura = 1025}}) {
        EXPECT_TRUE(LerLogo(t.Arquivo()).Vazia()) << t.tipo << " " << t.profundidade << " " << t.largura;
    }
    const std::string inteira = Tga{.id = 3}.Arquivo();
    for (std::size_t n = 0; n < inteira.size(); ++n)
        EXPECT_TRUE(LerLogo(inteira.substr(0, n)).Vazia()) << n;
}

TEST(Logo, EncaixeGuardaAProporcao) {
    const struct {
        int largura, altura, w, h;
    } casos[] = {{440, 310, 416, 293}, {416, 294, 414, 293}, {100, 1000, 29, 293}, {1024, 10, 416, 4}};
    for (const auto& [largura, altura, w, h] : casos) {
        const Tamanho t = EncaixarLogo(largura, altura);
        EXPECT_EQ(std::pair(t.largura, t.altura), std::pair(w, h)) << largura << " x " << altura;
    }
}

}  // namespace
}  // namespace zu::launcher

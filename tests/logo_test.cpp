#include <gtest/gtest.h>

#include <string>

#include "ui/logo.h"

namespace zu::launcher {
namespace {

struct Tga {
    int id = 0;
    int tipo = 2;
    int largura = 2;
    int altura = 2;
    int profundidade = 32;
    int descritor = 0x28;

    [[nodiscard]] std::string Cabecalho() const {
        std::string c(18, '\0');
        const auto por = [&](std::size_t i, int valor) { c[i] = static_cast<char>(valor); };
        por(0, id), por(2, tipo), por(12, largura & 0xFF), por(13, largura >> 8), por(14, altura & 0xFF);
        por(15, altura >> 8), por(16, profundidade), por(17, descritor);
        return c + std::string(static_cast<std::size_t>(id), 'i');
    }
    [[nodiscard]] std::string Zerado() const {
        return Cabecalho() + std::string(static_cast<std::size_t>(largura * altura * 4), '\0');
    }
};

TEST(Logo, PixelsSobrePretoNasDuasDirecoes) {
    const std::string corpo(
        "\x0A\x14\x1E\xFF"
        "\xFF\xFF\xFF\x80"
        "\xC8\x64\x32\x00"
        "\x01\x02\x03\x7F",
        16);
    const std::vector<std::uint32_t> deCima{0xFF1E140A, 0xFF808080, 0xFF000000, 0xFF010000};
    EXPECT_EQ(LerLogo(Tga{}.Cabecalho() + corpo).pixels, deCima);
    const std::vector<std::uint32_t> deBaixo{deCima[2], deCima[3], deCima[0], deCima[1]};
    EXPECT_EQ(LerLogo(Tga{.id = 7, .descritor = 8}.Cabecalho() + corpo).pixels, deBaixo);
    const LogoCentral maior = LerLogo(Tga{.largura = 1024, .altura = 1}.Zerado() + "resto");
    EXPECT_EQ(maior.largura, 1024);
    EXPECT_EQ(maior.altura, 1);
}

TEST(Logo, OQueNaoServeFicaVazio) {
    for (const Tga& t : {Tga{.tipo = 10}, Tga{.profundidade = 24}, Tga{.largura = 0}, Tga{.altura = 0},
                         Tga{.largura = 1025, .altura = 1}, Tga{.largura = 1, .altura = 1025}}) {
        EXPECT_TRUE(LerLogo(t.Zerado()).Vazia()) << t.tipo << " " << t.profundidade << " " << t.largura;
    }
    const std::string inteira = Tga{.id = 3}.Zerado();
    EXPECT_FALSE(LerLogo(inteira).Vazia());
    for (std::size_t n = 0; n < inteira.size(); ++n)
        EXPECT_TRUE(LerLogo(inteira.substr(0, n)).Vazia()) << n;
}

TEST(Logo, EncaixeGuardaAProporcao) {
    struct Caso {
        int largura, altura, w, h;
    };
    for (const Caso& c : {Caso{440, 310, 416, 293}, Caso{416, 294, 414, 293}, Caso{100, 1000, 29, 293},
                          Caso{1024, 1024, 293, 293}, Caso{1024, 10, 416, 4}}) {
        const Tamanho t = EncaixarLogo(c.largura, c.altura);
        EXPECT_EQ(t.largura, c.w) << c.largura << " x " << c.altura;
        EXPECT_EQ(t.altura, c.h) << c.largura << " x " << c.altura;
    }
}

}  // namespace
}  // namespace zu::launcher

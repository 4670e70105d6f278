#include "ui/desenho/logo.h"

#include <cstddef>

namespace zu::launcher {
namespace {

// The header's fields that matter here.
constexpr std::size_t kCabecalho = 18;
constexpr std::size_t kTamanhoDoId = 0;
constexpr std::size_t kTipo = 2;
constexpr std::size_t kLargura = 12;
constexpr std::size_t kAltura = 14;
constexpr std::size_t kProfundidade = 16;
constexpr std::size_t kDescritor = 17;

constexpr unsigned kCorVerdadeira = 2;
constexpr unsigned kBitsPorPixel = 32;
constexpr unsigned kDeCimaParaBaixo = 1U << 5;
constexpr unsigned kMaiorLado = 1024;

constexpr int kLarguraDoEncaixe = 416;
constexpr int kAlturaDoEncaixe = 293;

unsigned Byte(std::string_view bytes, std::size_t lugar) {
    return static_cast<unsigned char>(bytes[lugar]);
}

unsigned Palavra(std::string_view bytes, std::size_t lugar) {
    return Byte(bytes, lugar) | Byte(bytes, lugar + 1) << 8;
}

// The pixel over black.
std::uint32_t Compor(std::string_view bytes, std::size_t lugar) {
    const unsigned alfa = Byte(bytes, lugar + 3);
    const auto canal = [&](std::size_t i) { return Byte(bytes, lugar + i) * alfa / 255; };
    return 0xFF000000U | canal(2) << 16 | canal(1) << 8 | canal(0);
}

}  // namespace

LogoCentral LerLogo(std::string_view tga) {
    if (tga.size() < kCabecalho) return {};
    const unsigned largura = Palavra(tga, kLargura);
    const unsigned altura = Palavra(tga, kAltura);
    if (Byte(tga, kTipo) != kCorVerdadeira || Byte(tga, kProfundidade) != kBitsPorPixel) return {};
    if (largura < 1 || largura > kMaiorLado || altura < 1 || altura > kMaiorLado) return {};
    const std::size_t inicio = kCabecalho + Byte(tga, kTamanhoDoId);
    const std::size_t porLinha = std::size_t{largura} * 4;
    if (tga.size() < inicio + porLinha * altura) return {};

    const bool deCima = (Byte(tga, kDescritor) & kDeCimaParaBaixo) != 0;
    LogoCentral logo{static_cast<int>(largura), static_cast<int>(altura), {}};
    logo.pixels.reserve(std::size_t{largura} * altura);
    for (unsigned y = 0; y < altura; ++y) {
        const std::size_t linha = inicio + porLinha * (deCima ? y : altura - 1 - y);
        for (std::size_t x = 0; x < porLinha; x += 4)
            logo.pixels.push_back(Compor(tga, linha + x));
    }
    return logo;
}

Tamanho EncaixarLogo(int largura, int altura) {
    const int encaixada = altura * kLarguraDoEncaixe / largura;
    if (encaixada <= kAlturaDoEncaixe) return {kLarguraDoEncaixe, encaixada};
    return {largura * kAlturaDoEncaixe / altura, kAlturaDoEncaixe};
}

}  // namespace zu::launcher

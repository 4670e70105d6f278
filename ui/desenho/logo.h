// The picture in the centre of the main window, `LogoCentral`. Decoding is pure; any thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace zu::launcher {

struct LogoCentral {
    int largura = 0;
    int altura = 0;
    // 32-bit BGRA, top row first, opaque: the picture as it looks on black.
    std::vector<std::uint32_t> pixels;

    [[nodiscard]] bool Vazia() const { return pixels.empty(); }
};

// Decodes an uncompressed true-colour image of 32 bits a pixel and at most 1024 pixels a side (Truevision TGA 2.0,
// image type 2). Empty for anything else.
LogoCentral LerLogo(std::string_view tga);

struct Tamanho {
    int largura = 0;
    int altura = 0;
};

// The picture's size in the centre's 416 x 293 pixels, with its proportions kept.
Tamanho EncaixarLogo(int largura, int altura);

}  // namespace zu::launcher

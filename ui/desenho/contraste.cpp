#include "ui/desenho/contraste.h"

#include <algorithm>

namespace zu::launcher {
namespace {

constexpr std::uint32_t kOpaca = 0xFF000000;
constexpr std::uint32_t kBranca = 0xFFFFFFFF;
constexpr std::uint32_t kDesligada = 0xFF808080;  // of the texts of what is disabled
constexpr std::uint32_t kColorida = 48;           // how far the channels of a colour that is no grey lie apart

bool alto = false;
unsigned geracao = 0;

// Of the two forms of a colour, the other one. Alpha is lost.
std::uint32_t Trocada(std::uint32_t cor) {
    return (cor & 0xFF) << 16 | (cor & 0xFF00) | (cor >> 16 & 0xFF);
}

bool Colorida(std::uint32_t argb) {
    const auto [menor, maior] = std::minmax({argb & 0xFF, argb >> 8 & 0xFF, argb >> 16 & 0xFF});
    return maior - menor > kColorida;
}

int CorDoSistema(std::uint32_t argb, Papel papel) {
    if (papel == Papel::kTexto) return argb == kDesligada ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT;
    if (papel == Papel::kSinal && argb == kBranca) return COLOR_HIGHLIGHTTEXT;
    if (Colorida(argb)) return COLOR_HIGHLIGHT;
    return papel == Papel::kTraco ? COLOR_WINDOWTEXT : COLOR_WINDOW;
}

}  // namespace

void LerContraste() {
    ++geracao;
    HIGHCONTRASTW contraste{.cbSize = sizeof contraste, .dwFlags = 0, .lpszDefaultScheme = nullptr};
    alto = SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contraste, &contraste, 0) != 0 &&
           (contraste.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

bool AltoContraste() {
    return alto;
}

unsigned GeracaoDasCores() {
    return geracao;
}

std::uint32_t NoContraste(std::uint32_t argb, Papel papel) {
    if (!alto) return argb;
    if (argb < kOpaca) return 0;
    return kOpaca | Trocada(GetSysColor(CorDoSistema(argb, papel)));
}

COLORREF CorNoContraste(COLORREF cor, Papel papel) {
    return alto ? Trocada(NoContraste(kOpaca | Trocada(cor), papel)) : cor;
}

}  // namespace zu::launcher

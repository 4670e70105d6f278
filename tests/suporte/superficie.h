// A picture in memory that a painter draws into and a test probes.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <span>

#include "ui/desenho.h"

namespace zu::launcher::teste {

struct Cor {
    int r = 0;
    int g = 0;
    int b = 0;
};
inline std::ostream& operator<<(std::ostream& saida, const Cor& c) {
    return saida << "RGB(" << c.r << "," << c.g << "," << c.b << ")";
}
constexpr Cor De(COLORREF c) {
    return {static_cast<int>(c & 0xFF), static_cast<int>(c >> 8 & 0xFF), static_cast<int>(c >> 16 & 0xFF)};
}
// `a` on the way to `b`.
constexpr Cor Entre(COLORREF a, COLORREF b, double quanto) {
    const auto canal = [&](int de, int ate) { return static_cast<int>(de + (ate - de) * quanto + 0.5); };
    return {canal(De(a).r, De(b).r), canal(De(a).g, De(b).g), canal(De(a).b, De(b).b)};
}
inline int Distancia(const Cor& a, const Cor& b) {
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)});
}
// Smoothing and rounding may move a channel a little.
inline testing::AssertionResult Perto(const Cor& vista, const Cor& esperada, int folga = 3) {
    if (Distancia(vista, esperada) <= folga) return testing::AssertionSuccess();
    return testing::AssertionFailure() << vista << " em vez de " << esperada;
}

class Superficie {
 public:
    static constexpr COLORREF kFundo = RGB(255, 0, 255);

    Superficie(int largura, int altura) : largura_(largura), altura_(altura), dc_(CreateCompatibleDC(nullptr)) {
        const BITMAPINFO info = InfoDoBitmap(largura, altura);
        bitmap_.Trocar(CreateDIBSection(dc_.Valor(), &info, DIB_RGB_COLORS, &pixels_, nullptr, 0));
        antigo_ = SelectObject(dc_.Valor(), bitmap_.Valor());
        PreencherRetangulo(dc_.Valor(), {0, 0, largura, altura}, kFundo);
    }
    Superficie(const Superficie&) = delete;
    Superficie& operator=(const Superficie&) = delete;
    ~Superficie() { SelectObject(dc_.Valor(), antigo_); }

    [[nodiscard]] HDC Dc() const { return dc_.Valor(); }
    [[nodiscard]] Cor Em(int x, int y) const {
        GdiFlush();
        const std::uint32_t p = Pixels()[static_cast<std::size_t>(y * largura_ + x)];
        return {static_cast<int>(p >> 16 & 0xFF), static_cast<int>(p >> 8 & 0xFF), static_cast<int>(p & 0xFF)};
    }
    // How many pixels look clearly other than in a picture of the same size.
    [[nodiscard]] int Diferentes(const Superficie& outra, int folga = 12) const {
        int n = 0;
        for (int y = 0; y < altura_; ++y) {
            for (int x = 0; x < largura_; ++x)
                n += Distancia(Em(x, y), outra.Em(x, y)) > folga ? 1 : 0;
        }
        return n;
    }

 private:
    [[nodiscard]] std::span<const std::uint32_t> Pixels() const {
        return {static_cast<const std::uint32_t*>(pixels_), static_cast<std::size_t>(largura_ * altura_)};
    }

    int largura_;
    int altura_;
    HandleDc dc_;
    HandleGdi bitmap_;
    HGDIOBJ antigo_ = nullptr;
    void* pixels_ = nullptr;
};

}  // namespace zu::launcher::teste

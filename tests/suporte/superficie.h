// A picture in memory that a painter draws into and a test probes.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "core/formato.h"
#include "ui/desenho/desenho.h"

namespace zu::launcher::teste {

inline RECT NaTela(HWND janela) {
    RECT r{};
    GetWindowRect(janela, &r);
    return r;
}
inline SIZE TamanhoDe(HWND janela) {
    const RECT r = NaTela(janela);
    return {r.right - r.left, r.bottom - r.top};
}

class Superficie {
 public:
    explicit Superficie(SIZE tamanho) : tamanho_(tamanho), dc_(CreateCompatibleDC(nullptr)) {
        const BITMAPINFO info = InfoDoBitmap(tamanho.cx, tamanho.cy);
        void* pixels = nullptr;
        bitmap_.Trocar(CreateDIBSection(dc_.Valor(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
        pixels_ = static_cast<const std::uint32_t*>(pixels);
        SelectObject(dc_.Valor(), bitmap_.Valor());
        PreencherRetangulo(dc_.Valor(), {0, 0, tamanho.cx, tamanho.cy}, RGB(255, 0, 255));
    }
    // What stands on the screen, once the window has drawn what it has said it would.
    explicit Superficie(HWND janela) : Superficie(TamanhoDe(janela)) {
        UpdateWindow(janela);
        const HDC tela = GetDC(janela);
        BitBlt(dc_.Valor(), 0, 0, tamanho_.cx, tamanho_.cy, tela, 0, 0, SRCCOPY);
        ReleaseDC(janela, tela);
    }

    [[nodiscard]] HDC Dc() const { return dc_.Valor(); }
    // 0xRRGGBB
    [[nodiscard]] std::uint32_t Em(int x, int y) const {
        GdiFlush();
        return pixels_[y * tamanho_.cx + x] & 0xFFFFFF;
    }
    // How many pixels of the area look clearly other than in a picture of the same size.
    [[nodiscard]] int Diferentes(const Superficie& outra, RECT area = {0, 0, 9'999, 9'999}) const {
        int n = 0;
        for (int y = area.top; y < std::min(area.bottom, tamanho_.cy); ++y) {
            for (int x = area.left; x < std::min(area.right, tamanho_.cx); ++x)
                n += Distancia(Em(x, y), outra.Em(x, y)) > 12 ? 1 : 0;
        }
        return n;
    }
    // Of "x,y=RRGGBB x,y=RRGGBB~N ..." those that look otherwise. N is by how much a channel may be off, since
    // smoothing and rounding move one a little.
    [[nodiscard]] std::string Provar(const std::string& provas) const {
        std::string faltas;
        std::istringstream fila(provas);
        for (std::string prova; fila >> prova;) {
            int x = 0;
            int y = 0;
            unsigned cor = 0;
            int folga = 3;
            const bool lida = std::sscanf(prova.c_str(), "%d,%d=%x~%d", &x, &y, &cor, &folga) >= 3;
            if (!lida || Distancia(Em(x, y), cor) > folga) faltas += Formatar("{} é {:06X}\n", prova, Em(x, y));
        }
        return faltas;
    }

 private:
    static int Distancia(std::uint32_t a, std::uint32_t b) {
        const auto canal = [&](int i) {
            return std::abs(static_cast<int>(a >> i & 255) - static_cast<int>(b >> i & 255));
        };
        return std::max({canal(0), canal(8), canal(16)});
    }

    SIZE tamanho_;
    HandleGdi bitmap_;
    HandleDc dc_;  // goes first, and lets go of the bitmap
    const std::uint32_t* pixels_ = nullptr;
};

}  // namespace zu::launcher::teste

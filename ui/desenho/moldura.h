// The shapes that every window is made of: frame, footer, border, panels and the progress bar. Each draws one state
// into a device context and reads nothing else.
#pragma once

#include <windows.h>

#include <string_view>

#include "ui/desenho/fontes.h"

namespace zu::launcher {

constexpr int kAlturaDaTira = 20;  // the title strip at the top of every window
constexpr COLORREF kCorDaJanela = RGB(212, 212, 212);
constexpr COLORREF kCorDoPainel = RGB(226, 226, 226);

// Which box of the title strip the pointer is over.
enum class CaixaDaTira : int {
    kNenhuma = -1,
    kMinimizar = 0,
    kFechar = 1,
};

// Where the pointer acts; the drawing of a box lies inside.
constexpr RECT kCaixaMinimizar{3, 2, 19, 18};
constexpr RECT CaixaFechar(int largura) {
    return {largura - 20, 3, largura - 5, 18};
}

struct AparenciaMoldura {
    int largura = 0;
    int altura = 0;
    std::wstring_view titulo;
    bool ativa = false;
    bool comMinimizar = false;
    CaixaDaTira sobre = CaixaDaTira::kNenhuma;
};

// The first thing that a window's painter draws: background, title strip, title and boxes.
void PintarMoldura(HDC dc, const AparenciaMoldura& aparencia, const Fontes& fontes);

// The band of `faixa` pixels at the window's bottom.
void PintarRodape(HDC dc, int largura, int altura, int faixa);

// The last thing that a window's painter draws.
void PintarBorda(HDC dc, int largura, int altura);

// The capsule behind a group of controls.
void PintarPainel(HDC dc, const RECT& r);

// `valor` is clamped to 0..100.
void PintarProgresso(HDC dc, int x, int y, int largura, int altura, int valor);

}  // namespace zu::launcher

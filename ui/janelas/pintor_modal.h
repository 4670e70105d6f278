// What the windows over the main window have in common to the eye.
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

#include "game/resultado.h"
#include "ui/desenho/fontes.h"
#include "ui/desenho/moldura.h"

namespace zu::launcher {

constexpr int kFaixaDosBotoes = 64;  // the footer
constexpr int kBotoesDoFim = 46;     // from the buttons' top to the window's end
constexpr int kAlturaDoBotao = 28;

constexpr COLORREF kCorDoTexto = RGB(20, 20, 20);
constexpr COLORREF kCorDoTextoMenor = RGB(80, 80, 80);

// Where a row of buttons begins and ends.
struct Trecho {
    int esquerda = 0;
    int direita = 0;

    bool operator==(const Trecho&) const = default;
};

// Frame, footer, and the panel around the buttons.
void PintarBase(HDC dc, const AparenciaMoldura& moldura, const Trecho& botoes, const Fontes& fontes);

// What is known of a thing that was examined.
using Situacao = std::optional<EstadoItem>;

// The round mark of a state.
constexpr int kLadoDoSinal = 13;
void PintarSinal(HDC dc, int x, int y, Situacao situacao);

// The colour of words that tell a state, dark enough to be read.
COLORREF CorDaSituacao(Situacao situacao);

// What the mark says to who cannot see it; empty for the mark of what is not known.
std::wstring PalavraDaSituacao(Situacao situacao);

// What the text takes over lines of this width, up to `maximo` lines; 0 for none. Pixels.
int AlturaDoTexto(HDC dc, std::wstring_view texto, HFONT fonte, int largura, int maximo);

}  // namespace zu::launcher

// What the options window looks like.
#pragma once

#include <windows.h>

#include "ui/desenho/fontes.h"
#include "ui/desenho/moldura.h"

namespace zu::launcher {

constexpr SIZE kTamanhoDasOpcoes{440, 492};

// The rows of lists, each with its label; a row is as high as a list.
constexpr int kYModo = 140;
constexpr int kYResolucao = 168;
constexpr int kYLimiteFps = 224;
constexpr int kYEfeitos = 280;
constexpr int kYMusica = 308;
constexpr int kYIdioma = 336;

// All but the controls and the border.
void PintarOpcoes(HDC dc, const AparenciaMoldura& moldura, const Fontes& fontes);

}  // namespace zu::launcher

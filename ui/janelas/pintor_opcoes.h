// What the options window looks like.
#pragma once

#include <windows.h>

#include "ui/desenho/fontes.h"
#include "ui/desenho/moldura.h"

namespace zu::launcher {

// All but the controls and the border.
void PintarOpcoes(HDC dc, const AparenciaMoldura& moldura, const Fontes& fontes);

}  // namespace zu::launcher

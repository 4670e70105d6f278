// The faces of the controls.
#pragma once

#include <windows.h>

#include <string_view>

#include "ui/controles/controle.h"
#include "ui/desenho/fontes.h"

namespace zu::launcher {

struct AparenciaControle {
    const EstadoControle& estado;
    std::wstring_view legenda;
    bool habilitado = true;
    bool foco = false;  // the mark of the keyboard
};

// Draws any kind in any state into `r` and reads nothing else.
void PintarControle(HDC dc, const RECT& r, const AparenciaControle& aparencia, const Fontes& fontes);

}  // namespace zu::launcher

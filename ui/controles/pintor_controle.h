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

// How strong the primary button's pulse is drawn: one of so many strengths, from 0 on.
constexpr std::size_t kForcasDoPulso = 71;
std::size_t ForcaDoPulso(const EstadoControle& estado);

// Draws any kind in any state into `r` and reads nothing else. Of the phase only the strength shows.
void PintarControle(HDC dc, const RECT& r, const AparenciaControle& aparencia, const Fontes& fontes);

}  // namespace zu::launcher

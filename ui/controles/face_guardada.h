// The picture of a control as it was drawn last: what only comes into sight again, and every step of the primary
// button's pulse but the first of its strength, is a copy. UI thread only.
#pragma once

#include <string>
#include <vector>

#include "ui/controles/pintor_controle.h"

namespace zu::launcher {

class FaceGuardada {
 public:
    // What `PintarControle` draws there, at once. Not for a control that its owner draws: nobody knows from what.
    void Mostrar(HDC dc, const RECT& r, const AparenciaControle& aparencia, const Fontes& fontes);

 private:
    // All that a picture depends on but the pulse.
    struct Chave {
        int largura = 0;
        int altura = 0;
        unsigned cores = 0;
        std::wstring legenda;
        std::wstring texto;  // the second line, the chosen item
        bool habilitado = false;
        bool foco = false;
        bool hover = false;
        bool pressed = false;
        bool checked = false;
        COLORREF fill = 0;
        COLORREF fundo = 0;
        float hover_level = 0;
        float flash = 0;

        bool operator==(const Chave&) const = default;
    };

    Chave chave_;
    Retrato faces_;  // one below the other, one for each strength of the pulse
    std::vector<bool> pintadas_;
};

}  // namespace zu::launcher

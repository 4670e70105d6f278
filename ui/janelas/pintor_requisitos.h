// What the requirements window looks like.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "ui/desenho/fontes.h"
#include "ui/desenho/moldura.h"
#include "ui/janelas/pintor_modal.h"

namespace zu::launcher {

constexpr SIZE kTamanhoDosRequisitos{500, 300};

struct LinhaRequisito {
    std::wstring nome;
    std::wstring valor;
    Situacao situacao;

    bool operator==(const LinhaRequisito&) const = default;
};

struct AparenciaRequisitos {
    Situacao situacao;  // the verdict's level
    std::wstring titulo;
    std::wstring texto;
    std::vector<LinhaRequisito> linhas;
    std::wstring conselhos;  // one a line
    std::wstring pasta;      // the game's folder
    Trecho botoes;

    bool operator==(const AparenciaRequisitos&) const = default;
};

// Where its parts stand, which depends on how much room the words before them take.
struct LugaresDosRequisitos {
    RECT texto{};
    std::vector<RECT> linhas;
    RECT conselhos{};
    RECT pasta{};
};
LugaresDosRequisitos MedirRequisitos(const AparenciaRequisitos& aparencia, const Fontes& fontes);

// All but the controls and the border.
void PintarRequisitos(HDC dc, const AparenciaMoldura& moldura, const AparenciaRequisitos& aparencia,
                      const LugaresDosRequisitos& lugares, const Fontes& fontes);

}  // namespace zu::launcher

// What the diagnostics window looks like: a table that scrolls when it is higher than the screen allows.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "ui/desenho/fontes.h"
#include "ui/desenho/moldura.h"
#include "ui/janelas/pintor_modal.h"
#include "ui/janelas/rolagem.h"

namespace zu::launcher {

constexpr int kLarguraDoDiagnostico = 780;

struct LinhaDiagnostico {
    std::wstring nome;
    std::wstring valor;
    std::wstring minimo;
    std::wstring situacao;
    std::wstring conselho;
    Situacao estado;  // none: the row is no item, it has an advice alone
};

struct AparenciaDiagnostico {
    std::vector<LinhaDiagnostico> linhas;
    std::wstring semLinhas;     // stands in the table when it has no rows
    std::vector<int> topos{0};  // where each row begins as measured, from the first one; then where the last ends
    int rolagem = 0;            // pixels of the rows that are above the table's edge
    Trecho botoes;
};

void MedirDiagnostico(AparenciaDiagnostico& aparencia, const Fontes& fontes);

// The height that the window needs to show every measured row.
int AlturaDoDiagnostico(const AparenciaDiagnostico& aparencia);

// Where a window of this height shows the rows.
RECT AreaDasLinhas(int altura);

// The table's columns: what stands over each, and what a row has in it.
constexpr int kColunasDoDiagnostico = 5;
struct ColunaDoDiagnostico {
    const wchar_t* titulo;
    std::wstring LinhaDiagnostico::*texto;
    int x;
    int largura;
};
const ColunaDoDiagnostico& ColunaDe(int coluna);
RECT LugarDoTitulo(int coluna);
// Of a cell as far as it is seen; empty when it is scrolled out of sight.
RECT LugarDaCelula(const AparenciaDiagnostico& aparencia, std::size_t linha, int coluna, int altura);

// The scroll bar at the right of the rows.
MedidasDaRolagem RolagemDoDiagnostico(const AparenciaDiagnostico& aparencia, int altura);

// All but the controls and the border.
void PintarDiagnostico(HDC dc, const AparenciaMoldura& moldura, const AparenciaDiagnostico& aparencia,
                       const Fontes& fontes);

}  // namespace zu::launcher

// The rows of the diagnosis: the report's items, each with the advice that is about it.
#pragma once

#include <vector>

#include "game/resultado.h"
#include "ui/janelas/pintor_diagnostico.h"

namespace zu::launcher {

// One row an item, in the report's order. An advice belongs to the item out of order that it names first; one that
// names none stands in a row of its own at the end.
std::vector<LinhaDiagnostico> LinhasDoDiagnostico(const ResultadoRequisitos& resultado);

}  // namespace zu::launcher

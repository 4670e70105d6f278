// Reads the diagnostic report that the game writes: a JSON object whose "relatorio" text holds a table and advice lines
// for people, from which the items and the action are taken. Pure; safe on any thread.
#pragma once

#include <string>
#include <string_view>

#include "game/resultado.h"

namespace zu::launcher {

// Fills the report's fields, the items, the advice and the action, and sets `relatorioLido`. What the report leaves out
// or gives in another type keeps its default. False, and `resultado` untouched, when the document is no JSON; the
// phrase in `erro` says why.
bool LerRelatorio(std::string_view documento, ResultadoRequisitos& resultado, std::string& erro);

// Appends the items and the advice found in `resultado.relatorio` and chooses the action.
void AnalisarRelatorio(ResultadoRequisitos& resultado);

// Where a driver of the vendor is found; `fornecedor` is a name ("NVIDIA") or a PCI vendor id in upper case ("10DE").
// An unknown vendor leads to Windows Update, whose address begins with "ms-settings:".
std::string_view PaginaDoDriver(std::string_view fornecedor);

}  // namespace zu::launcher

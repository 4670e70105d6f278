// The hand-off of pending swaps to UpdaterHelper.exe. docs/formatos.md has its command line and the list file.
#pragma once

#include <span>
#include <string>

#include "update/andamento.h"

namespace zu::launcher {

// Writes the pending list and starts the helper, which waits for this process to end. True when it was started: the
// launcher then has to quit. False with the reason in `erro`.
bool IniciarUpdaterHelper(std::span<const TrocaPendente> trocas, std::string& erro);

}  // namespace zu::launcher

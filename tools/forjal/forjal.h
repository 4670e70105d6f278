// Forjal, the server team's command line, as a function.
#pragma once

#include <span>
#include <string>

#include "tools/forjal/saida.h"

namespace zu::launcher::forjal {

// Runs one command, given the arguments behind the program name, and returns a `Codigo`.
int RodarForjal(std::span<const std::wstring> argumentos, Saida& saida);

}  // namespace zu::launcher::forjal

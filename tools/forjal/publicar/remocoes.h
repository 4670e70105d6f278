// What players must no longer have.
#pragma once

#include <set>
#include <span>
#include <string>

#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {

// Why these paths, normalised, cannot be removed: the client still has them.
std::set<std::string> RecusarRemocoes(std::span<const ArquivoDoCliente> arquivos, std::span<const std::string> remover);

}  // namespace zu::launcher::forjal

// What players must no longer have.
#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "tools/forjal/varredura.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// Why these paths, normalised, cannot be removed: the client still has them.
std::set<std::string> RecusarRemocoes(std::span<const ArquivoDoCliente> arquivos, std::span<const std::string> remover);

// What a published list names, as a file or as a path to remove, and the client no longer has, normalised; the paths of
// the list first that the launcher touches at all.
struct Ausentes {
    std::vector<std::string> caminhos;
    std::size_t arquivos = 0;  // how many of its files are among them
};
Ausentes AcharAusentes(const update::UpdateList& publicada, std::span<const ArquivoDoCliente> arquivos);

// Adds those that are not among them yet.
void Acrescentar(std::span<const std::string> caminhos, std::vector<std::string>& remover);

}  // namespace zu::launcher::forjal

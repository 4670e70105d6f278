// Second operation of a run: which files on disk are not what the list says.
#pragma once

#include <cstddef>
#include <vector>

#include "update/atualizador.h"

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// Looks at every listed file in order and collects the indices of those that are missing or different. A file whose
// size and time match the cache is not read again, unless `reparar` asks for it. False when the run was cancelled; its
// status is then set.
bool VerificarArquivos(Atualizador& atualizador, const update::UpdateList& lista, bool reparar,
                       std::vector<std::size_t>& indices);

}  // namespace zu::launcher

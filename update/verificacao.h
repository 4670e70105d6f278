// Second operation of a run: which files on disk are not what the list says.
#pragma once

#include <cstddef>
#include <vector>

#include "update/atualizador.h"

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// Looks at every listed file and collects, in order, the indices of those that are missing or different; logs them in
// that order, too. A file whose size and time match the cache is not read again, unless `reparar` asks for it. The
// others are read on all cores, each once; bytes and files count as done when they are. False when the run was
// cancelled; its status is then set, and what was read so far stays in the cache.
bool VerificarArquivos(Atualizador& atualizador, const update::UpdateList& lista, bool reparar,
                       std::vector<std::size_t>& indices);

}  // namespace zu::launcher

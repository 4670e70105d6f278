// Fourth operation of a run: the files that the list wants gone.
#pragma once

#include <cstddef>

#include "update/atualizador.h"

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// Deletes them and saves the file cache. A file that is in use becomes a pending deletion when the launcher closes for
// pending swaps anyway, for the first time; otherwise it waits for the next run. Returns how many were deleted.
std::size_t RemoverArquivos(Atualizador& atualizador, const update::UpdateList& lista);

}  // namespace zu::launcher

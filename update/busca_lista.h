// First operation of a run: the list, fetched, proved and read.
#pragma once

#include "update/atualizador.h"
#include "update/lista.h"

namespace zu::launcher {

// False when the run ends here; its status and sentence are then set. Nothing on the disk is touched.
bool ObterLista(Atualizador& atualizador, update::UpdateList& lista);

}  // namespace zu::launcher

// One listed file, from the server to its place in the game folder.
#pragma once

#include <cstddef>

#include "update/agendador.h"

namespace zu::launcher {

// Downloads the item beside its target with up to `tentativas` attempts and moves it over the target; a target that
// cannot be replaced now is left for a swap. An item that does not come joins the context's failures, its target
// untouched. Runs on the scheduler's threads.
void AplicarItem(ContextoDownload& contexto, std::size_t indice, int tentativas);

}  // namespace zu::launcher

// One listed file, from the server to its place in the game folder.
#pragma once

#include "update/agendador.h"

namespace zu::launcher {

// Downloads the item beside its target with up to `tentativas` attempts, those of earlier turns among them. The rest is
// the context's `acabamento`: once the bytes are on the disk the file is moved over the target, and then remembered; a
// target that cannot be replaced now is left for a swap. Bytes that the disk does not take are an attempt that failed.
// An item that does not come joins the context's failures, its target untouched. Runs on the scheduler's threads.
void AplicarItem(ContextoDownload& contexto, const Vez& vez, int tentativas);

}  // namespace zu::launcher

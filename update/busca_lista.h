// First operation of a run: the list, fetched, proved and read.
#pragma once

#include "core/hash.h"
#include "update/atualizador.h"
#include "update/lista.h"

namespace zu::launcher {

struct ListaObtida {
    update::UpdateList lista;
    Sha256Digest digest{};  // of the signed bytes
};

// False when the run ends here; its status and sentence are then set. Nothing on the disk is touched.
bool ObterLista(Atualizador& atualizador, ListaObtida& obtida);

// Asks the server once more, by the same rules. True when it has another list by now, not older than the one in use;
// otherwise nothing has changed but the log.
bool ObterOutraLista(Atualizador& atualizador, const ListaObtida& emUso, ListaObtida& outra);

}  // namespace zu::launcher

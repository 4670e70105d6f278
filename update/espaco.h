// Whether the disk has room for a download.
#pragma once

#include <cstddef>
#include <span>

#include "update/andamento.h"

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// Compares the free space of the game folder's drive with what is still to come for the items, beside what earlier runs
// left of them, and the largest file that is joined from parts. False, with the status set, when it is too little; true
// too where the system cannot tell. Writes nothing.
bool HaEspaco(Andamento& andamento, const update::UpdateList& lista, std::span<const std::size_t> indices);

}  // namespace zu::launcher

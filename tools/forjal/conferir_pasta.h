// A published folder, proved as the launcher will prove what it fetches from it.
#pragma once

#include <filesystem>
#include <vector>

#include "tools/forjal/relatorio.h"

namespace zu::launcher::forjal {

// Every file and part of the list: there under exactly that name, with the list's size and hashes. Every index: that
// too, and the one that is made of its file. The list's own name comes first.
std::vector<Diferencas> ConferirPasta(const std::filesystem::path& pasta, const update::UpdateList& lista,
                                      Saida& saida);

}  // namespace zu::launcher::forjal

// The files in the "Config" folder of the game folder in which the updater remembers what it did.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "core/arquivo.h"
#include "update/registros.h"

namespace zu::launcher {

std::filesystem::path CaminhoEstado();
std::filesystem::path CaminhoCache();
std::filesystem::path CaminhoPendente();

// The sequence number of the last list that was applied in full; 0 when none is known.
std::int64_t LerSeqInstalado();

// False when the file could not be written; the update goes on then, and only the memory of it is lost.
bool GravarEstado(std::int64_t seq, std::string_view versao);

// Empty when there is none. A missing or damaged cache costs time, never exactness.
MapaCache LerCache();
// `texto` is that of a cache file.
bool GravarCache(std::string_view texto, Paciencia& paciencia);

}  // namespace zu::launcher

// What stands in a folder.
#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>

namespace zu::launcher {

// Calls `visitar` for every entry of the folder but itself and its parent. False when the folder could not be listed to
// its end; the reason is in GetLastError().
bool ListarPasta(const std::filesystem::path& pasta, const std::function<void(const WIN32_FIND_DATAW&)>& visitar);

// Whether an entry stands for another place. Files kept elsewhere until they are opened are reparse points too, but no
// links.
bool EhLink(const WIN32_FIND_DATAW& achado);

}  // namespace zu::launcher

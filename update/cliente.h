// Where the files of an update list lie on this computer.
#pragma once

#include <filesystem>
#include <string_view>

namespace zu::launcher {

// A normalised and safe list path below the game folder.
std::filesystem::path CaminhoNoCliente(std::string_view normal);

}  // namespace zu::launcher

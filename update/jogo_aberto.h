// Whether the game is running from this folder.
#pragma once

#include <filesystem>

namespace zu::launcher {

// A process counts when its image is the very file "Zu.exe" or "Zu2.exe" of the folder, so that another installation
// of the game does not. One that may not be asked for its image, as of another right level, counts when ContaComoAberto
// says so.
bool JogoAberto(const std::filesystem::path& pasta);

// Whether a process with the name of `programa` runs from it. `imagem` is its image; empty when it may not be asked:
// then it does when `programa` is there and cannot be opened for writing, as a running program never can.
bool ContaComoAberto(const std::filesystem::path& imagem, const std::filesystem::path& programa);

}  // namespace zu::launcher

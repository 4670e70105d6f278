// Whether the game is running from this folder.
#pragma once

#include <filesystem>

namespace zu::launcher {

// A process counts when its image is the very file "Zu.exe" or "Zu2.exe" of the folder, so that another installation
// of the game does not.
bool JogoAberto(const std::filesystem::path& pasta);

}  // namespace zu::launcher

// Starting the game, and opening web addresses.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace zu::launcher {

constexpr std::chrono::milliseconds kEsperaConfirmacao{120'000};

// Whether "Zu.exe" of the game folder is a regular file. Throws std::filesystem::filesystem_error when the question
// itself fails.
bool TemJogo();

// Starts the game with the graphics interface of its options file and a one-time token, and waits, for `espera` at
// most, until the game confirms the token or ends; how that went is only logged. True once the game runs; otherwise
// false with the reason for the player in `erro`, and no process is left. Blocks, so not for a thread with windows.
// Throws as `TemJogo` does.
bool AbrirJogo(std::string& erro, std::chrono::milliseconds espera = kEsperaConfirmacao);

// Opens an "http://" or "https://" address (UTF-8, lower case) in the browser; anything else is ignored.
void AbrirEndereco(std::string_view endereco);

// Opens a folder, a file or a settings address with the shell's verb "open".
void AbrirNoShell(const std::wstring& alvo);

}  // namespace zu::launcher

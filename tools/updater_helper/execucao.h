// One run of the helper, from its arguments to its exit code.
#pragma once

#include <chrono>
#include <filesystem>

#include "tools/updater_helper/aplicar_trocas.h"
#include "tools/updater_helper/argumentos.h"

namespace zu::launcher {

enum class FimDoHelper : int {
    kFeito = 0,
    kRestou = 1,        // lines are left, or the list could not be read
    kUsoErrado = 2,     // an argument names something that it may not
    kPastaOcupada = 3,  // a launcher or a helper has the folder; nothing was touched, and nothing opened
};

struct RegrasDoHelper {
    std::chrono::milliseconds esperaPeloLauncher{60'000};
    // Once the launcher has ended: a run without a window may have come in between, and is soon over. A launcher that
    // the player has opened stays.
    std::chrono::milliseconds esperaPelaPasta{5'000};
    RegrasDeTroca trocas;
};

// The folder that the arguments are about, where the log lies: the game folder, or without a list in its place the
// helper's own.
std::filesystem::path PastaDoTrabalho(const ArgumentosDoHelper& argumentos);

// Waits for the launcher to end, takes the folder, makes the swaps, lets the folder go and opens the launcher again,
// also when the swaps fail or memory runs out on the way.
FimDoHelper RodarHelper(const ArgumentosDoHelper& argumentos, const RegrasDoHelper& regras, const LogDeTrocas& log);

}  // namespace zu::launcher

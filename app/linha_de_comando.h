// Fills the settings record: built-in defaults, then the command line, then the sealed settings file.
#pragma once

#include <span>
#include <string>

namespace zu::launcher {

struct ConfigLauncher;

// Reads this process's command line and the game folder's "Launcher.emu" and puts the record in place for
// `ObterConfig`. Never fails as a call: a refusal is left as text in `erro`. Called once, before any other thread runs.
void LerConfiguracao();

// The same steps from arguments given, without the program name and without touching the record.
ConfigLauncher MontarConfiguracao(std::span<const std::wstring> argumentos);

}  // namespace zu::launcher

// What the windows of one interface run share. One instance; UI thread only.
#pragma once

#include <windows.h>

#include <string>

#include "game/opcoes.h"

namespace zu::launcher {

// Where the player's wish to close stands while a game is starting.
enum class Fechamento {
    kNenhum,
    kAdiado,    // the windows are hidden; the run ends once the start is over
    kRetirado,  // another start of the launcher has shown them again; the next wish is granted at once
};

struct EstadoInterface {
    HWND principal = nullptr;
    // Null while they are closed.
    HWND opcoes = nullptr;
    HWND requisitos = nullptr;
    HWND diagnostico = nullptr;

    bool quit = false;  // every message loop ends
    // The controller was busy when last looked at, and what came of it is still to be told.
    bool running_before = false;
    Fechamento fechamento = Fechamento::kNenhum;
    OpcoesJogo opcoesDoJogo;  // as this interface last read or wrote it
};

// Of the running interface.
EstadoInterface& ObterInterface();

// Begins a run with everything as above, or ends it and gives back what it held.
void AbrirEstadoDaInterface();
void FecharEstadoDaInterface();

// The windows are to be saved as pictures: nothing is activated, no message is shown.
bool ModoCaptura();

// The configured title, never empty.
std::wstring TituloDoLauncher();

// Shows a new window, in front unless in a capture run.
void MostrarJanela(HWND janela);

// The topmost open window of the launcher.
HWND JanelaDaFrente();

}  // namespace zu::launcher

// What the windows of one interface run share. One instance; UI thread only.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "game/opcoes.h"
#include "ui/janelas/molde.h"
#include "ui/janelas/pintor_principal.h"
#include "ui/site/visao_site.h"

namespace zu::launcher {

// Opens `enderecosPorAbrir` in the browser; for the main window.
constexpr UINT MSG_ABRIR_ENDERECOS = WM_APP + 2;

// Where the player's wish to close stands while a game is starting.
enum class Fechamento {
    kNenhum,
    kAdiado,    // the windows are hidden; the run ends once the start is over
    kRetirado,  // another start of the launcher has shown them again; the next wish is granted at once
};

// What the site view is told of this interface.
AmbienteSite AmbienteDaInterface();

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
    int superior = 0;  // the two bars, 0 to 100
    int inferior = 0;
    VisaoSite site{AmbienteDaInterface()};
    CaixaDaTira sobre = CaixaDaTira::kNenhuma;   // in the main window's title strip
    std::vector<std::string> enderecosPorAbrir;  // that the site's page asked for, UTF-8
    OpcoesJogo opcoesDoJogo;                     // as this interface last read or wrote it
    LogoEncaixado logo;
    FontesDaPrincipal fontesDaPrincipal;
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

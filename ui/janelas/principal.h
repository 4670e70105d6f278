// The main window: what the player sees first. It shows the update run, starts the game and opens the other windows.
// UI thread only.
#pragma once

#include <windows.h>

#include "app/instancia_unica.h"

namespace zu::launcher {

constexpr UINT MSG_INICIAR = WM_APP + 1;                    // starts the controller's work
constexpr UINT MSG_TRAZER_FRENTE = MensagemAbrirInstancia;  // another instance asks the window to show itself

constexpr UINT_PTR kRelogioDaPrincipal = 7;  // the refresh

constexpr int kBotaoRegistrar = 1001;
constexpr int kBotaoOpcoes = 1004;
constexpr int kBotaoConectar = 1005;
constexpr int kBotaoFechar = 1006;

void RegistrarPrincipal(HINSTANCE modulo);

// The window with its buttons, placed but not yet shown; null with the reason in GetLastError.
HWND CriarPrincipal(HINSTANCE modulo);

// One refresh: lets the controller work, then shows how things stand.
void AtualizarTela();

// Starts the game if it can be started now.
void JogarAgora();

}  // namespace zu::launcher

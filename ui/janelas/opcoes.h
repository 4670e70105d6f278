// The game's options: "OK" stores them in the interface's record and in the game's file. UI thread only.
#pragma once

#include <windows.h>

namespace zu::launcher {

constexpr wchar_t kClasseDasOpcoes[] = L"ZuLauncherOpcoes";

constexpr int kOpcaoD3d12 = 1201;
constexpr int kOpcaoVulkan = 1202;
constexpr int kListaModo = 1203;
constexpr int kListaResolucao = 1101;
constexpr int kCaixaSemBorda = 1204;
constexpr int kCaixaVsync = 1205;
constexpr int kListaLimiteFps = 1206;
constexpr int kListaEfeitos = 1103;
constexpr int kListaMusica = 1104;
constexpr int kListaIdioma = 1209;
constexpr int kCaixaFecharAoJogar = 1207;
constexpr int kBotaoRequisitos = 1208;
constexpr int kBotaoOk = 1105;
constexpr int kBotaoCancelar = 1106;

// Opens over the main window with the options as they stand in the game's file; see `JanelaModal::Abrir`.
HWND AbrirOpcoes();

}  // namespace zu::launcher

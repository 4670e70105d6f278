// What the probe found out about this computer, and what to do about it. UI thread only.
#pragma once

#include <windows.h>

#include "game/resultado.h"
#include "ui/janelas/pintor_requisitos.h"

namespace zu::launcher {

constexpr wchar_t kClasseDosRequisitos[] = L"ZuLauncherRequisitos";

constexpr int kBotaoDiagnostico = 1301;
constexpr int kBotaoPasta = 1302;
constexpr int kBotaoRegistro = 1303;

// Opens over the options window, without which there is none; see `JanelaModal::Abrir`.
HWND AbrirRequisitos();

// The window's words for a result; the buttons' place is left out.
AparenciaRequisitos DescreverRequisitos(const ResultadoRequisitos& resultado);

}  // namespace zu::launcher

// The game's report as a table, to be read and copied. UI thread only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "game/resultado.h"
#include "ui/janelas/pintor_diagnostico.h"

namespace zu::launcher {

constexpr wchar_t kClasseDoDiagnostico[] = L"ZuLauncherDiagnostico";

constexpr int kBotaoCopiar = 1401;
constexpr int kBotaoFecharDiagnostico = 1402;
constexpr int kBotaoAcao = 1403;  // only where the result offers an action

// Opens over the requirements window, without which there is none, with the result as it stands; see
// `JanelaModal::Abrir`.
HWND AbrirDiagnostico();

// The report for the clipboard: every line break is CR LF.
std::wstring TextoParaCopiar(const ResultadoRequisitos& resultado);

}  // namespace zu::launcher

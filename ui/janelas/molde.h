// The frame's behaviour that all windows share: the title strip drags the window, its boxes light up under the pointer.
#pragma once

#include <windows.h>

#include "ui/desenho/moldura.h"

namespace zu::launcher {

// Sees every message of a window first. `tratada` tells whether the result is the window procedure's answer. A click in
// a box is left to the window. `sobre` is the window's own memory of where the pointer was.
LRESULT MoldeJanela(HWND janela, UINT mensagem, LPARAM lParam, int largura, bool comMinimizar, CaixaDaTira& sobre,
                    bool& tratada);

// A class as all windows have it: arrow, no background, no class style.
void RegistrarClasse(HINSTANCE modulo, const wchar_t* nome, WNDPROC procedimento, HICON icone = nullptr);

// Gives a window of this size its round corners.
void ArredondarJanela(HWND janela, SIZE tamanho);

// The box that a client point lies in.
CaixaDaTira CaixaNoPonto(POINT ponto, int largura, bool comMinimizar);

// The client point of a mouse message.
POINT PontoDe(LPARAM lParam);

// Asks for one WM_MOUSELEAVE.
void PedirSaidaDoMouse(HWND janela);

void RepintarTira(HWND janela, int largura);

}  // namespace zu::launcher

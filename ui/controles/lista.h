// What a drop-down list does beyond the other controls. UI thread only.
#pragma once

#include <windows.h>

#include <cstdint>

#include "ui/controles/controle.h"

namespace zu::launcher {

// Another item, which the window is then told of; nothing for the one that is chosen. The window may destroy the list.
void EscolherNaLista(HWND controle, EstadoControle& estado, std::int32_t item);

// Opens the items as a menu under the list and returns when it has closed; the list may be gone by then.
void AbrirLista(HWND controle, EstadoControle& estado);

// Arrows, Home, End and F4. False: the key is none of these.
bool TeclarNaLista(HWND controle, EstadoControle& estado, WPARAM tecla);

}  // namespace zu::launcher

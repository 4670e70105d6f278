// The fonts that every window shares: all Arial, smoothed for flat panels.
#pragma once

#include <windows.h>

#include "ui/desenho/desenho.h"

namespace zu::launcher {

// How a font is made beyond the face; the height is in pixels of the characters.
HandleGdi CriarFonte(const wchar_t* face, int altura, int peso);

struct Fontes {
    HandleGdi normal;    // 12
    HandleGdi negrito;   // bold 12: captions and the title strip
    HandleGdi negrito2;  // bold 12 again: labels beside the lists
    HandleGdi pequena;   // 11
    HandleGdi titulo;    // bold 14

    // What GDI draws with.
    [[nodiscard]] static HFONT De(const HandleGdi& fonte) { return static_cast<HFONT>(fonte.Valor()); }
};

Fontes CriarFontes();

// The fonts of the running interface. Set once before the first window is made and given back after the last is gone;
// UI thread only.
const Fontes& FontesDaInterface();
void DefinirFontesDaInterface(Fontes fontes);

// The width of one line of text in pixels.
int LarguraDoTexto(std::wstring_view texto, HFONT fonte);

}  // namespace zu::launcher

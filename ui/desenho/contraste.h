// The windows in high contrast: they keep their shapes and take the system's colours. Every grey surface becomes the
// system's window colour, every line and letter its text colour, what is coloured stands out in its highlight; what
// only shades is left out. UI thread only.
#pragma once

#include <windows.h>

#include <cstdint>

namespace zu::launcher {

// Asks the system whether high contrast is on, and keeps the answer.
void LerContraste();
bool AltoContraste();
// Another number after every reading: what was drawn before may have other colours.
unsigned GeracaoDasCores();

enum class Papel {
    kSuperficie,
    kTraco,  // a line
    kSinal,  // a surface or line that, where it is white, stands on something coloured
    kTexto,
};

// What is drawn for a colour, 0xAARRGGBB; the colour itself while high contrast is off.
std::uint32_t NoContraste(std::uint32_t argb, Papel papel);
// The same for GDI's colours.
COLORREF CorNoContraste(COLORREF cor, Papel papel);

}  // namespace zu::launcher

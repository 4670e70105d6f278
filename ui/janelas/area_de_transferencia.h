// The clipboard.
#pragma once

#include <windows.h>

#include <string>

namespace zu::launcher {

// Puts the text there for this window. Another program's hold on it is waited for, a tenth of a second at most; false
// when it lasts, or when there is no memory.
bool Copiar(HWND janela, const std::wstring& texto);

}  // namespace zu::launcher

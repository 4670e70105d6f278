// Windows for tests: a plain one, the message pump, and counts of what the process holds.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

namespace zu::launcher::teste {

using Espiao = std::function<void(UINT, WPARAM, LPARAM)>;

// A visible popup of 500 x 300 that shows its messages to `espiao`. Destroyed with DestroyWindow.
HWND CriarJanela(Espiao espiao);

// Runs on the thread of a window whose loop handles messages, and returns when it has run.
void NaThreadDe(HWND janela, const std::function<void()>& trabalho);

// Handles messages for so long, or until `pronto`.
void Bombear(std::chrono::milliseconds tempo);
bool Bombear(std::chrono::milliseconds limite, const std::function<bool()>& pronto);

// GDI objects and windows or menus of this process.
struct Posses {
    int gdi = 0;
    int user = 0;
};
Posses ContarPosses();

}  // namespace zu::launcher::teste

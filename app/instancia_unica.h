// One launcher a game folder and Windows session, whichever copy of the program it is.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "core/instancia.h"

namespace zu::launcher {

// Asks the running instance's main window to show itself; both parameters are 0.
constexpr UINT MensagemAbrirInstancia = WM_APP + 40;
constexpr wchar_t kClasseDaJanela[] = L"ZuLauncherJanela";

// Holds the folder for as long as it lives, on the thread that took it.
class InstanciaUnica {
 public:
    // Takes the folder when it is free; does not wait.
    explicit InstanciaUnica(const std::filesystem::path& pastaJogo);

    // Whether the folder is this process's to write.
    [[nodiscard]] bool Possui() const { return possui_; }

    // For a run that found the folder taken. True once the folder is its own; otherwise it has to end. `reaberto`: the
    // swap helper started this run, so the instance before it is closing and is waited for, 15 s at most. Else the
    // instance is asked to show its window; while it has none it may be ending or still starting, which takes 2 s to
    // tell from one that never has any.
    bool EsperarOuChamar(bool reaberto);

 private:
    std::wstring nome_;
    PosseDaPasta posse_;
    bool possui_;
};

// Makes the main window the one that another start for this folder wakes, whatever right level that start has; and no
// longer, which the window's owner calls before the window goes.
void AnunciarInstancia(HWND janela, const std::filesystem::path& pastaJogo);
void RecolherInstancia(HWND janela, const std::filesystem::path& pastaJogo);

// The window that was announced for the folder, of any process; null when there is none.
HWND JanelaDaInstancia(const std::wstring& nome);

}  // namespace zu::launcher

// One launcher a game folder and Windows session, whichever copy of the program it is.
#pragma once

#include <windows.h>

#include <filesystem>

#include "core/handle.h"
#include "core/instancia.h"

namespace zu::launcher {

// Asks the running instance's main window to show itself; both parameters are 0.
constexpr UINT MensagemAbrirInstancia = WM_APP + 40;
constexpr wchar_t kClasseDaJanela[] = L"ZuLauncherJanela";

// Holds the folder for as long as it lives, on the thread that took it.
class InstanciaUnica {
 public:
    // `reaberto`: the swap helper started this run, so the instance before it may still be closing and is waited for.
    // `captura`: the run goes on beside another instance.
    InstanciaUnica(const std::filesystem::path& pastaJogo, bool reaberto, bool captura);
    InstanciaUnica(const InstanciaUnica&) = delete;
    InstanciaUnica& operator=(const InstanciaUnica&) = delete;
    ~InstanciaUnica();

    // True when another instance serves the folder; this one has to end.
    [[nodiscard]] bool Outra() const { return outra_; }

 private:
    HandleKernel mutex_;
    bool possuida_ = false;
    bool outra_ = false;
};

// Brings the running instance's window to the front, if it has one.
void ChamarOutraInstancia();

}  // namespace zu::launcher

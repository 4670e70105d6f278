// The launcher's button on the taskbar: how far the update is, for a window that is minimised or behind another, and a
// flash at the end of a long run. UI thread only, in a single-threaded apartment.
#pragma once

#include <windows.h>
// after windows.h
#include <shobjidl.h>

#include "ui/com.h"
#include "update/status.h"

namespace zu::launcher {

struct SinalDaTarefa {
    TBPFLAG modo = TBPF_NOPROGRESS;
    int porcento = 0;

    bool operator==(const SinalDaTarefa&) const = default;
};

// Progress while files are checked, fetched and put in place, yellow while the game is open, red after a failure.
// `porcento`: of the bytes.
SinalDaTarefa SinalDe(StatusUpdate status, bool atualizando, int porcento);

class BarraDeTarefas {
 public:
    // Shows the signal on the window's button when it is not the one that is shown. Without a taskbar nothing happens.
    void Mostrar(HWND janela, const SinalDaTarefa& sinal);
    // The system has made the button anew: it shows nothing.
    void Esquecer() { mostrado_ = {}; }

    // The same for the run itself: one that took long has ended, and nobody was looking.
    void Acompanhar(HWND janela, bool atualizando);

 private:
    bool procurada_ = false;
    Com<ITaskbarList3> barra_;
    SinalDaTarefa mostrado_;
    bool atualizando_ = false;
    ULONGLONG inicio_ = 0;  // of the run, as GetTickCount64
};

}  // namespace zu::launcher

// Who has a game folder: one process at a time writes in it, a launcher or the swap helper.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "core/handle.h"

namespace zu::launcher {

// The name of the folder's mutex, good for one Windows session. The path counts as it is written, letter case included:
// pass it in the form of CaminhoCanonico.
std::wstring NomeDaInstancia(const std::filesystem::path& pastaJogo);

// Has the folder, once taken, for as long as it lives. Taken and let go by the same thread.
class PosseDaPasta {
 public:
    explicit PosseDaPasta(const std::filesystem::path& pastaJogo) : nome_(NomeDaInstancia(pastaJogo)) {}
    PosseDaPasta(const PosseDaPasta&) = delete;
    PosseDaPasta& operator=(const PosseDaPasta&) = delete;
    ~PosseDaPasta();

    // True once the folder is this process's; waits that long at most. Also true where there can be no mutex at all:
    // better unprotected than not at all. A mutex that may not be opened, of another right level, is another's.
    bool Tomar(std::chrono::milliseconds espera);

 private:
    bool Tentar(std::chrono::milliseconds espera);

    std::wstring nome_;
    HandleKernel mutex_;
    bool possui_ = false;
};

}  // namespace zu::launcher

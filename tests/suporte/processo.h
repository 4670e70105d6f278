// Programs that a test starts, ended with the test at the latest.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/processo.h"
#include "tools/updater_helper/argumentos.h"

namespace zu::launcher::teste {

inline const std::filesystem::path kPastaBin = std::filesystem::path(ZU_PASTA_BIN).make_preferred();

class Programa {
 public:
    Programa(const std::filesystem::path& programa, const std::vector<std::wstring>& argumentos = {})
        : processo_(IniciarProcesso(MontarLinhaDeComando(programa, argumentos), programa.parent_path())) {
        if (!processo_) throw std::runtime_error("iniciar " + programa.string());
    }
    ~Programa() {
        TerminateProcess(processo_.processo.Valor(), 99);
        WaitForSingleObject(processo_.processo.Valor(), 10'000);
    }

    // The exit code, or -1 when the program has not ended by then.
    int Esperar(DWORD limite = 60'000) {
        DWORD codigo = 0;
        if (WaitForSingleObject(processo_.processo.Valor(), limite) != WAIT_OBJECT_0) return -1;
        GetExitCodeProcess(processo_.processo.Valor(), &codigo);
        return static_cast<int>(codigo);
    }
    [[nodiscard]] DWORD Pid() const { return processo_.pid; }

 private:
    Processo processo_;
};

}  // namespace zu::launcher::teste

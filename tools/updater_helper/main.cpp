// UpdaterHelper.exe: waits for the launcher to close, makes its pending swaps and opens it again, whatever happened.

#include <windows.h>

#include <string>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/utf16.h"
#include "tools/updater_helper/aplicar_trocas.h"
#include "tools/updater_helper/argumentos.h"

namespace zu::launcher {
namespace {

constexpr std::uint64_t kMaiorLog = 1ULL << 20;  // bytes; a longer one starts anew
constexpr DWORD kEsperaPeloLauncher = 60'000;    // ms

enum Codigo : int { kFeito = 0, kRestaram = 1, kUsoErrado = 2 };

void EsperarLauncher(std::uint32_t pid, const LogDeTrocas& log) {
    const HandleKernel processo(OpenProcess(SYNCHRONIZE, FALSE, pid));
    // One that cannot be opened has ended already.
    if (processo && WaitForSingleObject(processo.Valor(), kEsperaPeloLauncher) != WAIT_OBJECT_0) {
        log(Formatar("o launcher (pid {}) não fechou em {} s: continuando", pid, kEsperaPeloLauncher / 1000));
    }
}

void Reabrir(const ArgumentosDoHelper& argumentos, const std::filesystem::path& pasta, const LogDeTrocas& log) {
    if (IniciarProcesso(MontarLinhaDeComando(argumentos.reabrir, argumentos.argumentos), pasta)) {
        log("launcher reaberto");
    } else {
        log(Formatar("não foi possível reabrir o launcher (erro {})", GetLastError()));
    }
}

int Rodar(const ArgumentosDoHelper& argumentos) {
    if (argumentos.reabrir.empty()) return kUsoErrado;
    // The list lies in the game folder's "Config" folder, and the launcher's log in the game folder itself.
    const bool listaNoLugar = argumentos.lista.is_absolute() && argumentos.lista.parent_path().filename() == L"Config";
    const std::filesystem::path pasta =
        listaNoLugar ? argumentos.lista.parent_path().parent_path() : argumentos.reabrir.parent_path();
    const std::filesystem::path arquivo = pasta / L"UpdaterHelper.log";
    if (TamanhoDoArquivo(arquivo) > kMaiorLog) DeleteFileW(arquivo.c_str());
    const LogDeTrocas log = [&arquivo](std::string_view mensagem) { AnexarLinhaDeLog(arquivo, mensagem); };

    log(Formatar("UpdaterHelper: esperando o launcher (pid {}) fechar", argumentos.pid));
    EsperarLauncher(argumentos.pid, log);
    std::size_t restantes = 0;
    if (listaNoLugar) {
        restantes = AplicarTrocas(argumentos.lista, {}, log);
        if (restantes > 0) log(Formatar("{} troca(s) não feita(s)", restantes));
    } else {
        log("--lista= não está na pasta Config do jogo: nada trocado");
    }
    Reabrir(argumentos, pasta, log);
    if (!listaNoLugar) return kUsoErrado;
    return restantes > 0 ? kRestaram : kFeito;
}

}  // namespace
}  // namespace zu::launcher

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    return zu::launcher::Rodar(zu::launcher::LerArgumentosDoHelper(GetCommandLineW()));
}

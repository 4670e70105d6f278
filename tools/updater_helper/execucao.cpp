#include "tools/updater_helper/execucao.h"

#include <windows.h>

#include <string>
#include <utility>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/instancia.h"
#include "core/processo.h"

namespace zu::launcher {
namespace {

// The list lies in the game folder's "Config" folder.
bool ListaNoLugar(const ArgumentosDoHelper& argumentos) {
    return argumentos.lista.is_absolute() && argumentos.lista.parent_path().filename() == L"Config";
}

bool DaMinhaPasta(const std::filesystem::path& programa) {
    return programa.is_absolute() && programa.has_filename() && MesmoArquivo(programa.parent_path(), PastaDoPrograma());
}

void EsperarLauncher(std::uint32_t pid, std::chrono::milliseconds limite, const LogDeTrocas& log) {
    log(Formatar("UpdaterHelper: esperando o launcher (pid {}) fechar", pid));
    const HandleKernel processo(OpenProcess(SYNCHRONIZE, FALSE, pid));
    // One that cannot be opened has ended already.
    if (processo && WaitForSingleObject(processo.Valor(), static_cast<DWORD>(limite.count())) != WAIT_OBJECT_0) {
        log(Formatar("o launcher (pid {}) não fechou em {} s: continuando", pid, limite.count() / 1000));
    }
}

FimDoHelper Trocar(const ArgumentosDoHelper& argumentos, const RegrasDoHelper& regras, const LogDeTrocas& log) {
    EsperarLauncher(argumentos.pid, regras.esperaPeloLauncher, log);
    if (!ListaNoLugar(argumentos)) {
        log("--lista= não está na pasta Config do jogo: nada trocado");
        return FimDoHelper::kUsoErrado;
    }
    // By the name that the launcher gives it, however the list's path is written.
    PosseDaPasta posse(CaminhoCanonico(PastaDoTrabalho(argumentos)));
    if (!posse.Tomar(regras.esperaPelaPasta)) {
        log("outro launcher está usando a pasta do jogo: nada trocado, a lista fica");
        return FimDoHelper::kPastaOcupada;
    }
    ApagarProgramaTrocado();
    return AplicarTrocas(argumentos.lista, regras.trocas, log) ? FimDoHelper::kFeito : FimDoHelper::kRestou;
}

void Reabrir(std::wstring&& linhaDeComando, const std::filesystem::path& pasta, const LogDeTrocas& log) {
    const Processo launcher = IniciarProcesso(std::move(linhaDeComando), pasta);
    if (!launcher) {
        log(Formatar("não foi possível reabrir o launcher (erro {})", GetLastError()));
        return;
    }
    AllowSetForegroundWindow(launcher.pid);
    log("launcher reaberto");
}

// What is thrown here is memory running out, and what took it is free again behind it.
template <class Trabalho>
void SemLancar(const LogDeTrocas& log, const Trabalho& trabalho) {
    try {
        trabalho();
    } catch (...) {
        try {
            log("falha inesperada, talvez por falta de memória");
        } catch (...) {
            // A missing line is the least of the troubles.
        }
    }
}

}  // namespace

std::filesystem::path PastaDoTrabalho(const ArgumentosDoHelper& argumentos) {
    return ListaNoLugar(argumentos) ? argumentos.lista.parent_path().parent_path() : PastaDoPrograma();
}

FimDoHelper RodarHelper(const ArgumentosDoHelper& argumentos, const RegrasDoHelper& regras, const LogDeTrocas& log) {
    if (!DaMinhaPasta(argumentos.reabrir)) {
        log("--reabrir= não é um programa da pasta do UpdaterHelper: nada trocado, nada aberto");
        return FimDoHelper::kUsoErrado;
    }
    // Before the work, so that the opening does not depend on how it went.
    std::wstring linhaDeComando = MontarLinhaDeComando(argumentos.reabrir, argumentos.argumentos);
    const std::filesystem::path pasta = PastaDoTrabalho(argumentos);
    FimDoHelper fim = FimDoHelper::kRestou;
    SemLancar(log, [&] { fim = Trocar(argumentos, regras, log); });
    if (fim == FimDoHelper::kPastaOcupada) return fim;
    SemLancar(log, [&] { Reabrir(std::move(linhaDeComando), pasta, log); });
    return fim;
}

}  // namespace zu::launcher

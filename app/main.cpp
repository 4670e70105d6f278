// Entry of the launcher: one order of steps from a bare process to its exit code.

#include <windows.h>
// after windows.h
#include <objbase.h>

#include <chrono>
#include <string>

#include "app/controlador.h"
#include "app/instancia_unica.h"
#include "app/linha_de_comando.h"
#include "app/sem_interface.h"
#include "core/config.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/utf16.h"
#include "ui/interface.h"

namespace zu::launcher {
namespace {

constexpr int kCodigoOutraInstancia = 0;
constexpr int kCodigoRecusada = 2;
constexpr std::chrono::milliseconds kEsperaPelosTrabalhos{2000};

// Built-in: the name in the file is not to be trusted here.
constexpr wchar_t kNomeDoPrograma[] = L"Zu Launcher";

int RecusarConfiguracao(const ConfigLauncher& config) {
    LogLinha("Configuração recusada: {}", config.erro);
    if (!config.semInterface && config.captura.empty()) {
        const std::wstring texto = L"A configuração do launcher não pôde ser lida.\n\n" + DeUtf8(config.erro) +
                                   L"\n\nO Launcher.emu é gerado pela equipe do servidor e não pode ser editado. "
                                   L"Reinstale o cliente ou peça o Launcher.emu atual à equipe do servidor.";
        MessageBoxW(nullptr, texto.c_str(), kNomeDoPrograma, MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    }
    return kCodigoRecusada;
}

int Rodar() {
    // The windows are drawn for 96 DPI; the system scales their bitmaps.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_UNAWARE);
    [[maybe_unused]] const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    LerConfiguracao();
    const ConfigLauncher& config = ObterConfig();
    if (!config.erro.empty()) return RecusarConfiguracao(config);

    const InstanciaUnica instancia(config.pastaJogo, config.reaberto > 0, !config.captura.empty());
    if (instancia.Outra()) {
        ChamarOutraInstancia();
        return kCodigoOutraInstancia;
    }
    const int codigo = config.semInterface ? RodarSemInterface() : RodarInterface();
    ObterControlador().Encerrar(kEsperaPelosTrabalhos);
    LogLinha("ZuLauncher encerrado (código {})", codigo);
    return codigo;
}

}  // namespace
}  // namespace zu::launcher

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    // First of all, because players can write to the game folder: no DLL is taken from there. Those that the program
    // is linked with and that the system does not keep loaded itself are delay-loaded, so this holds for them too.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto codigo = static_cast<UINT>(zu::launcher::Rodar());
    [[maybe_unused]] const auto ninguemCriando = zu::launcher::TravarCriacao();
    // Not by return: that would wait for, or pull the ground from under, threads that may still be working.
    ExitProcess(codigo);
}

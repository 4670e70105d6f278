// Entry of the launcher: one order of steps from a bare process to its exit code.

#include <windows.h>
// after windows.h
#include <objbase.h>

#include <memory>
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

    auto instancia = std::make_unique<InstanciaUnica>(config.pastaJogo);
    // A capture run goes on beside the instance that has the folder.
    if (!instancia->Possui() && config.captura.empty() && !instancia->EsperarOuChamar(config.reaberto > 0)) {
        return kCodigoOutraInstancia;
    }
    ControladorLauncher& controlador = ObterControlador();
    controlador.DefinirPosse(instancia->Possui());
    const int codigo = config.semInterface ? RodarSemInterface() : RodarInterface();
    // A run that hangs in the network may still write: then the folder is let go by the end of the process, which comes
    // after the end of its threads.
    if (!controlador.Encerrar(codigo)) static_cast<void>(instancia.release());
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

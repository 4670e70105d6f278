// UpdaterHelper.exe: waits for the launcher to close, makes its pending swaps and opens it again, whatever happened.

#include <windows.h>

#include "core/arquivo.h"
#include "core/log.h"
#include "tools/updater_helper/execucao.h"

namespace zu::launcher {
namespace {

constexpr std::uint64_t kMaiorLog = 1ULL << 20;  // bytes; a longer one starts anew

FimDoHelper Rodar() {
    const ArgumentosDoHelper argumentos = LerArgumentosDoHelper(GetCommandLineW());
    const std::filesystem::path arquivo = PastaDoTrabalho(argumentos) / L"UpdaterHelper.log";
    if (TamanhoDoArquivo(arquivo) > kMaiorLog) DeleteFileW(arquivo.c_str());
    return RodarHelper(argumentos, {}, [&](std::string_view mensagem) { AnexarLinhaDeLog(arquivo, mensagem); });
}

}  // namespace
}  // namespace zu::launcher

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    return static_cast<int>(zu::launcher::Rodar());
}

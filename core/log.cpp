#include "core/log.h"

#include <windows.h>

#include <mutex>
#include <string>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/handle.h"
#include "core/trava.h"

namespace zu::launcher {
namespace {

struct EstadoDoLog {
    TravaRecursiva trava;
    bool primeiraLinha = true;
};

// Never destroyed: detached threads may log until the very end of the process.
EstadoDoLog& Estado() {
    static auto* const estado = new EstadoDoLog;
    return *estado;
}

std::filesystem::path PastaDoLog() {
    const std::filesystem::path& pasta = ObterConfig().pastaJogo;
    return pasta.empty() ? PastaDoPrograma() : pasta;
}

}  // namespace

void AnexarLinhaDeLog(const std::filesystem::path& arquivo, std::string_view mensagem) {
    SYSTEMTIME agora{};
    GetLocalTime(&agora);
    const std::string linha = Formatar("{:02}:{:02}:{:02}.{:03} {}\r\n", agora.wHour, agora.wMinute, agora.wSecond,
                                       agora.wMilliseconds, mensagem);
    const HandleArquivo log =
        AbrirParaEscrever(arquivo, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    DWORD escritos = 0;
    if (log) WriteFile(log.Valor(), linha.data(), static_cast<DWORD>(linha.size()), &escritos, nullptr);
    OutputDebugStringA(linha.c_str());
}

void LogLinha(std::string_view mensagem) {
    EstadoDoLog& estado = Estado();
    const std::lock_guard guarda(estado.trava);
    const std::filesystem::path pasta = PastaDoLog();
    const std::filesystem::path arquivo = pasta / L"ZuLauncher.log";
    if (estado.primeiraLinha) {
        estado.primeiraLinha = false;
        const std::filesystem::path anterior = pasta / L"ZuLauncher.anterior.log";
        MoverUmaVez(arquivo, anterior);
    }
    AnexarLinhaDeLog(arquivo, mensagem);
}

}  // namespace zu::launcher

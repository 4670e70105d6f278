#include "game/jogo.h"

#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "core/config.h"
#include "core/handle.h"
#include "core/hash.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/utf16.h"
#include "game/opcoes.h"
#include "game/token.h"

namespace zu::launcher {
namespace {

std::filesystem::path CaminhoDoJogo() {
    return ObterConfig().pastaJogo / L"Zu.exe";
}

// The place for a refusal before the launch. It would leave the error text empty.
bool Permitido() {
    return true;
}

// What a launch may add to the command line.
std::wstring ArgumentosExtras() {
    return {};
}

// Wiped from memory at the end, whatever way the launch goes.
struct Segredo {
    TokenDeLancamento token{};
    std::wstring linhaDeComando;

    Segredo() = default;
    Segredo(const Segredo&) = delete;
    Segredo& operator=(const Segredo&) = delete;
    ~Segredo() { Apagar(); }
    void Apagar() {
        SecureZeroMemory(token.data(), token.size());
        SecureZeroMemory(linhaDeComando.data(), linhaDeComando.size() * sizeof(wchar_t));
    }
};

// Grown to its full length first and then filled in place, so that no outgrown copy of the token stays behind.
void MontarLinhaDeComando(const std::string& api, Segredo& segredo) {
    const std::wstring inicio = EntreAspas(CaminhoDoJogo().native()) + L" --api=" + DeUtf8(api) + L" --launcher=";
    const std::wstring fim = ArgumentosExtras();
    std::wstring& linha = segredo.linhaDeComando;
    linha.reserve(inicio.size() + kTamanhoDoTexto + fim.size());
    linha = inicio;
    AnexarTexto(segredo.token, linha);
    linha += fim;
}

// A process that was made suspended. Whatever happens before it runs ends it: nobody else would find it, and its
// "Zu.exe" would count as the game being played.
class Suspenso {
 public:
    explicit Suspenso(const Processo& processo) : processo_(processo) {}
    Suspenso(const Suspenso&) = delete;
    Suspenso& operator=(const Suspenso&) = delete;
    ~Suspenso() {
        if (!roda_) TerminateProcess(processo_.processo.Valor(), 1);
    }
    // False when the system refuses; the reason is in GetLastError().
    bool Continuar() {
        roda_ = ResumeThread(processo_.thread.Valor()) != static_cast<DWORD>(-1);
        return roda_;
    }

 private:
    const Processo& processo_;
    bool roda_ = false;
};

// What the file system answers where there is nothing, other than a failure to look.
bool NaoExiste(DWORD erro) {
    return erro == ERROR_FILE_NOT_FOUND || erro == ERROR_PATH_NOT_FOUND || erro == ERROR_BAD_NETPATH ||
           erro == ERROR_INVALID_NAME;
}

std::string FraseDaRecusa(DWORD erro) {
    return Formatar("não foi possível abrir o Zu.exe (erro {})", erro);
}

}  // namespace

// The library's own question takes every failure for a missing file. Opening follows a link to its target.
bool TemJogo() {
    const std::filesystem::path jogo = CaminhoDoJogo();
    const HandleArquivo arquivo(CreateFileW(jogo.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION info{};
    if (arquivo && GetFileInformationByHandle(arquivo.Valor(), &info) != 0) {
        return (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    }
    const DWORD erro = GetLastError();
    if (NaoExiste(erro)) return false;
    throw std::filesystem::filesystem_error("status", jogo,
                                            std::error_code(static_cast<int>(erro), std::system_category()));
}

bool AbrirJogo(std::string& erro, std::chrono::milliseconds espera) {
    erro.clear();
    if (!TemJogo()) {
        erro = "Zu.exe não encontrado na pasta do jogo. Feche e abra o launcher para baixar de novo.";
        return false;
    }
    if (!Permitido()) return false;
    const std::string api = LerOpcoesJogo().api;
    Segredo segredo;
    if (!RandomBytes(segredo.token)) {
        erro = "falha ao gerar o token de lançamento";
        return false;
    }
    MontarLinhaDeComando(api, segredo);
    TravaDaCriacao trava = TravarCriacao();  // until the game runs
    const Processo jogo =
        IniciarProcesso(trava, std::move(segredo.linhaDeComando), ObterConfig().pastaJogo, CREATE_SUSPENDED);
    if (!jogo) {
        erro = FraseDaRecusa(GetLastError());
        return false;
    }
    Suspenso suspenso(jogo);
    const CanalDoToken canal = AbrirCanal(segredo.token, jogo.pid);
    segredo.Apagar();
    if (!suspenso.Continuar()) {
        erro = FraseDaRecusa(GetLastError());
        return false;
    }
    trava.unlock();
    AllowSetForegroundWindow(jogo.pid);
    LogLinha("Jogo aberto: Zu.exe --api={} (pid {})", api, jogo.pid);
    LogLinha("Lançamento: {}", EsperarConfirmacao(jogo.processo.Valor(), canal, espera));
    return true;
}

void AbrirEndereco(std::string_view endereco) {
    if (endereco.starts_with("https://") || endereco.starts_with("http://")) AbrirNoShell(DeUtf8(endereco));
}

void AbrirNoShell(const std::wstring& alvo) {
    ShellExecuteW(nullptr, L"open", alvo.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace zu::launcher

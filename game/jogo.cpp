#include "game/jogo.h"

#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <array>
#include <utility>

#include "core/config.h"
#include "core/hash.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/utf16.h"
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
void MontarLinhaDeComando(const OpcoesJogo& opcoes, Segredo& segredo) {
    constexpr std::wstring_view kDigitos = L"0123456789abcdef";
    const std::wstring inicio =
        EntreAspas(CaminhoDoJogo().native()) + L" --api=" + DeUtf8(opcoes.api) + L" --launcher=";
    const std::wstring fim = ArgumentosExtras();
    std::wstring& linha = segredo.linhaDeComando;
    linha.reserve(inicio.size() + 2 * segredo.token.size() + fim.size());
    linha = inicio;
    for (const std::uint8_t byte : segredo.token) {
        linha.push_back(kDigitos[byte >> 4]);
        linha.push_back(kDigitos[byte & 0x0F]);
    }
    linha += fim;
}

std::string_view EsperarConfirmacao(HANDLE jogo, const CanalDoToken& canal, std::chrono::milliseconds espera) {
    const std::array<HANDLE, 2> alvos{jogo, canal.confirmacao.Valor()};
    const DWORD quantos = canal ? 2 : 1;
    // A game that confirms and ends at once has set both; the confirmation is the better news.
    const DWORD primeiro = WaitForMultipleObjects(quantos, alvos.data(), FALSE, static_cast<DWORD>(espera.count()));
    if (canal && WaitForSingleObject(canal.confirmacao.Valor(), 0) == WAIT_OBJECT_0) {
        return "anti-hack confirmou o token";
    }
    if (primeiro == WAIT_OBJECT_0) return "o jogo fechou antes de confirmar";
    return "sem confirmação do anti-hack no tempo do protocolo";
}

}  // namespace

bool TemJogo() {
    return std::filesystem::is_regular_file(CaminhoDoJogo());
}

bool AbrirJogo(const OpcoesJogo& opcoes, std::string& erro, std::chrono::milliseconds espera) {
    erro.clear();
    if (!TemJogo()) {
        erro = "Zu.exe não encontrado na pasta do jogo. Feche e abra o launcher para baixar de novo.";
        return false;
    }
    if (!Permitido()) return false;
    Segredo segredo;
    if (!RandomBytes(segredo.token)) {
        erro = "falha ao gerar o token de lançamento";
        return false;
    }
    MontarLinhaDeComando(opcoes, segredo);
    auto trava = TravarCriacao();  // until the game runs
    const Processo jogo = IniciarProcesso(std::move(segredo.linhaDeComando), ObterConfig().pastaJogo, CREATE_SUSPENDED);
    if (!jogo) {
        erro = Formatar("não foi possível abrir o Zu.exe (erro {})", GetLastError());
        return false;
    }
    const CanalDoToken canal = AbrirCanal(segredo.token, jogo.pid);
    segredo.Apagar();
    ResumeThread(jogo.thread.Valor());
    trava.unlock();
    AllowSetForegroundWindow(jogo.pid);
    LogLinha("Jogo aberto: Zu.exe --api={} (pid {})", opcoes.api, jogo.pid);
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

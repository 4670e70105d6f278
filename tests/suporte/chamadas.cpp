#include "tests/suporte/chamadas.h"

// after windows.h
#include <winhttp.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "tests/suporte/importacao.h"

namespace zu::launcher::teste {
namespace {

constexpr std::string_view kPrefixoDaRede = "WinHttp";

constinit std::atomic<const Vigia*> vigia = nullptr;

// The files that were opened, by their handles. A handle is told apart from one closed before by its own opening.
class Abertos {
 public:
    void Anotar(HANDLE arquivo, const std::filesystem::path& caminho) {
        const std::lock_guard guarda(trava_);
        caminhos_[arquivo] = caminho;
    }
    std::filesystem::path Caminho(HANDLE arquivo) {
        const std::lock_guard guarda(trava_);
        return caminhos_[arquivo];
    }

 private:
    std::mutex trava_;
    std::map<HANDLE, std::filesystem::path> caminhos_;
} abertos;

// What there is to say of a call, by the form of its arguments.
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, LPCWSTR destino, Resto...) {
    return {nome, caminho, destino, 0};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, DWORD acesso, Resto...) {
    return {nome, caminho, {}, acesso};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, Resto...) {
    return {nome, caminho, {}, 0};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, HANDLE arquivo, Resto...) {
    return {nome, abertos.Caminho(arquivo), {}, 0};
}

template <Rotulo kNome, class Funcao>
struct Desvio;

template <Rotulo kNome, class Resultado, class... Argumentos>
struct Desvio<kNome, Resultado(Argumentos...)> {
    static constexpr bool kRede = kNome.Texto().starts_with(kPrefixoDaRede);
    static constexpr bool kAbertura = kNome.Texto() == "CreateFileW";

    static Resultado Fazer(Argumentos... argumentos) {
        const auto verdadeira = Verdadeira<kNome, Resultado(Argumentos...)>();
        const Vigia* const atento = vigia;
        if (atento == nullptr) return verdadeira(argumentos...);
        const DWORD antes = GetLastError();
        const Chamada chamada = Dizer(argumentos...);
        const DWORD erro = atento->Perguntar(chamada);
        SetLastError(erro != 0 ? erro : antes);
        if constexpr (kAbertura) {
            if (erro != 0) return INVALID_HANDLE_VALUE;
            HANDLE const arquivo = verdadeira(argumentos...);
            const DWORD depois = GetLastError();
            abertos.Anotar(arquivo, chamada.caminho);
            SetLastError(depois);
            return arquivo;
        } else {
            return erro != 0 ? Resultado{} : verdadeira(argumentos...);
        }
    }

    static Chamada Dizer(Argumentos... argumentos) {
        if constexpr (kRede)
            return {kNome.Texto(), {}, {}, 0};
        else
            return Descrever(kNome.Texto(), argumentos...);
    }
};

BOOL WINAPI NaoCriarProcesso(LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID,
                             LPCWSTR pasta, LPSTARTUPINFOW, LPPROCESS_INFORMATION processo) {
    const Vigia* const atento = vigia;
    const DWORD erro = atento != nullptr ? atento->Perguntar({"CreateProcessW", pasta, {}, 0}) : 0;
    SetLastError(erro);
    if (erro != 0) return FALSE;
    processo->hProcess = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    processo->hThread = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    return TRUE;
}

// A sixth: a test need not wait half a minute for a server that says nothing.
BOOL WINAPI EncurtarEsperas(HINTERNET sessao, int resolver, int conectar, int enviar, int receber) {
    constexpr int kParte = 6;
    return Verdadeira<"WinHttpSetTimeouts", decltype(WinHttpSetTimeouts)>()(
        sessao, resolver / kParte, conectar / kParte, enviar / kParte, receber / kParte);
}

}  // namespace

Vigia::Vigia(std::filesystem::path pasta, Porta porta) : pasta_(std::move(pasta)), porta_(std::move(porta)) {
    vigia = this;
}

Vigia::~Vigia() {
    vigia = nullptr;
}

DWORD Vigia::Perguntar(const Chamada& chamada) const {
    const bool daPasta =
        chamada.caminho.native().starts_with(pasta_.native()) && chamada.caminho.extension() != L".log";
    if (!daPasta && !chamada.nome.starts_with(kPrefixoDaRede)) return 0;
    const DWORD erro = porta_(chamada);
    if (erro != 0 || chamada.destino.empty()) return erro;
    const DWORD atributos = GetFileAttributesW(chamada.destino.c_str());
    const bool marcado = atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_READONLY) != 0;
    return marcado ? ERROR_ACCESS_DENIED : 0;
}

}  // namespace zu::launcher::teste

// NOLINTBEGIN: the names are the import library's
#define CONTAR(desviar, nome) desviar(nome, (&zu::launcher::teste::Desvio<#nome, decltype(nome)>::Fazer))
ZU_DESVIAR(CreateProcessW, &zu::launcher::teste::NaoCriarProcesso);
ZU_DESVIAR_NOME(WinHttpSetTimeouts, &zu::launcher::teste::EncurtarEsperas);
CONTAR(ZU_DESVIAR, CreateDirectoryW);
CONTAR(ZU_DESVIAR, CreateFileW);
CONTAR(ZU_DESVIAR, DeleteFileW);
CONTAR(ZU_DESVIAR, FlushFileBuffers);
CONTAR(ZU_DESVIAR, GetDiskFreeSpaceExW);
CONTAR(ZU_DESVIAR, GetFileAttributesExW);
CONTAR(ZU_DESVIAR, MoveFileExW);
CONTAR(ZU_DESVIAR, ReadFile);
CONTAR(ZU_DESVIAR, SetEndOfFile);
CONTAR(ZU_DESVIAR, SetFileAttributesW);
CONTAR(ZU_DESVIAR, WriteFile);
CONTAR(ZU_DESVIAR_NOME, WinHttpConnect);
CONTAR(ZU_DESVIAR_NOME, WinHttpCrackUrl);
CONTAR(ZU_DESVIAR_NOME, WinHttpOpenRequest);
CONTAR(ZU_DESVIAR_NOME, WinHttpQueryDataAvailable);
CONTAR(ZU_DESVIAR_NOME, WinHttpQueryHeaders);
CONTAR(ZU_DESVIAR_NOME, WinHttpReadData);
CONTAR(ZU_DESVIAR_NOME, WinHttpReceiveResponse);
CONTAR(ZU_DESVIAR_NOME, WinHttpSendRequest);
// NOLINTEND

// Stands for the game, "Zu.exe", in the tests: does the game's side of both conversations with the launcher for real.
//
// Beside the program may lie "jogo_falso.txt" (UTF-8, lines of "key=value", in any order); without it the game behaves
// well. Every start adds its arguments, parted by " | ", as a line to "jogo_falso.log" there; the launch token is never
// written, "--launcher=..." stands for it.
//
//  1. Diagnosis: --requisitos-json=PATH writes a report to PATH and ends with 0.
//     relatorio=NAME        which report (relatorios.h lists them; default "bom"), or
//                           "nenhum": none; "travar": none, and hangs until it is ended;
//                           "copiar": the bytes of "jogo_falso.json" beside the program
//     marca=1               a byte order mark leads the report
//     demora=MS             waits before it writes
//     fica=MS               lives on after it has written
//     --requisitos-simular=NAME takes the place of relatorio=, when it is a name that relatorio= knows.
//
//  2. Play: --api=X --launcher=64 HEX DIGITS. The launcher has made the mapping "Local\ZuLauncher-token-PID" with the
//     32 token bytes and the event "Local\ZuLauncher-confirmado-PID", PID being this process in decimal. The game sets
//     the event when its argument equals the mapping, lives on and ends with 0; otherwise it ends with 5 at once.
//     aperto=confirmar      the default, as above
//     aperto=sair           ends with 0 at once, without a word
//     aperto=calar          never confirms, lives on
//     viver=MS              how long it lives (default 3000)
//     The log then has "api X" and "token certo" or "token errado".
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "core/arquivo.h"
#include "core/handle.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tests/jogo_falso/relatorios.h"

namespace zu::launcher::teste {
namespace {

using Ajustes = std::map<std::string, std::string, std::less<>>;

constexpr int kTokenErrado = 5;
constexpr std::size_t kBytesDoToken = 32;

Ajustes LerAjustes() {
    Ajustes ajustes;
    std::string texto;
    if (!LerArquivoInteiro(PastaDoPrograma() / L"jogo_falso.txt", texto)) return ajustes;
    std::string_view resto = texto;
    if (resto.starts_with("\xEF\xBB\xBF")) resto.remove_prefix(3);
    while (!resto.empty()) {
        std::string_view linha = TomarAte(resto, '\n');
        if (linha.ends_with('\r')) linha.remove_suffix(1);
        const std::string chave(TomarAte(linha, '='));
        ajustes[chave] = linha;
    }
    return ajustes;
}

std::string Ajuste(const Ajustes& ajustes, std::string_view chave, const char* padrao) {
    const auto lugar = ajustes.find(chave);
    return lugar == ajustes.end() ? padrao : lugar->second;
}

DWORD Milissegundos(const Ajustes& ajustes, std::string_view chave, const char* padrao) {
    DWORD valor = 0;
    LerNumeroInteiro(Ajuste(ajustes, chave, padrao), valor);
    return valor;
}

std::vector<std::wstring> Argumentos() {
    int quantos = 0;
    wchar_t** lista = CommandLineToArgvW(GetCommandLineW(), &quantos);
    std::vector<std::wstring> argumentos(lista + 1, lista + quantos);
    LocalFree(lista);
    return argumentos;
}

// Whether an argument begins with the option; `valor` then holds what stands behind it in the last one that does.
bool Opcao(const std::vector<std::wstring>& argumentos, std::wstring_view nome, std::wstring& valor) {
    bool tem = false;
    for (const std::wstring& argumento : argumentos) {
        if (!argumento.starts_with(nome)) continue;
        valor = argumento.substr(nome.size());
        tem = true;
    }
    return tem;
}

void Registrar(const std::string& linha) {
    const HandleArquivo log(CreateFileW((PastaDoPrograma() / L"jogo_falso.log").c_str(), FILE_APPEND_DATA,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                        nullptr));
    const std::string comFim = linha + "\n";
    DWORD escritos = 0;
    if (log) WriteFile(log.Valor(), comFim.data(), static_cast<DWORD>(comFim.size()), &escritos, nullptr);
}

void RegistrarArgumentos(const std::vector<std::wstring>& argumentos) {
    std::string linha;
    for (const std::wstring& argumento : argumentos) {
        if (!linha.empty()) linha += " | ";
        linha += argumento.starts_with(L"--launcher=") ? "--launcher=..." : ParaUtf8(argumento);
    }
    Registrar(linha);
}

bool NomeDeRelatorio(const std::string& nome) {
    return nome == "nenhum" || nome == "travar" || nome == "copiar" || !MontarRelatorio(nome).empty();
}

int Diagnosticar(const Ajustes& ajustes, const std::vector<std::wstring>& argumentos, const std::wstring& destino) {
    std::string nome = Ajuste(ajustes, "relatorio", "bom");
    std::wstring simular;
    if (Opcao(argumentos, L"--requisitos-simular=", simular) && NomeDeRelatorio(ParaUtf8(simular)))
        nome = ParaUtf8(simular);
    Sleep(Milissegundos(ajustes, "demora", "0"));
    if (nome == "travar") Sleep(INFINITE);
    if (nome == "nenhum") return 0;
    std::string relatorio = MontarRelatorio(nome);
    if (nome == "copiar") LerArquivoInteiro(PastaDoPrograma() / L"jogo_falso.json", relatorio);
    if (Ajuste(ajustes, "marca", "0") == "1") relatorio.insert(0, "\xEF\xBB\xBF");
    if (!GravarArquivoAtomico(destino, relatorio)) return 1;
    Sleep(Milissegundos(ajustes, "fica", "0"));
    return 0;
}

bool TokenCerto(const std::wstring& digitos) {
    const std::wstring nome = L"Local\\ZuLauncher-token-" + std::to_wstring(GetCurrentProcessId());
    const HandleKernel mapa(OpenFileMappingW(FILE_MAP_READ, FALSE, nome.c_str()));
    const void* vista = mapa ? MapViewOfFile(mapa.Valor(), FILE_MAP_READ, 0, 0, kBytesDoToken) : nullptr;
    if (vista == nullptr) return false;
    const std::string token = ParaHex({static_cast<const std::uint8_t*>(vista), kBytesDoToken});
    UnmapViewOfFile(vista);
    return MinusculasAscii(ParaUtf8(digitos)) == token;
}

bool Confirmar() {
    const std::wstring nome = L"Local\\ZuLauncher-confirmado-" + std::to_wstring(GetCurrentProcessId());
    const HandleKernel evento(OpenEventW(EVENT_MODIFY_STATE, FALSE, nome.c_str()));
    return evento && SetEvent(evento.Valor()) != 0;
}

int Jogar(const Ajustes& ajustes, const std::vector<std::wstring>& argumentos) {
    std::wstring api;
    std::wstring token;
    Opcao(argumentos, L"--api=", api);
    Opcao(argumentos, L"--launcher=", token);
    Registrar("api " + ParaUtf8(api));
    const std::string aperto = Ajuste(ajustes, "aperto", "confirmar");
    if (aperto == "sair") return 0;
    const bool certo = TokenCerto(token);
    Registrar(certo ? "token certo" : "token errado");
    if (!certo) return kTokenErrado;
    if (aperto != "calar" && !Confirmar()) Registrar("sem evento de confirmação");
    Sleep(Milissegundos(ajustes, "viver", "3000"));
    return 0;
}

int Principal() {
    const std::vector<std::wstring> argumentos = Argumentos();
    const Ajustes ajustes = LerAjustes();
    RegistrarArgumentos(argumentos);
    std::wstring destino;
    if (Opcao(argumentos, L"--requisitos-json=", destino)) return Diagnosticar(ajustes, argumentos, destino);
    return Jogar(ajustes, argumentos);
}

}  // namespace
}  // namespace zu::launcher::teste

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    return zu::launcher::teste::Principal();
}

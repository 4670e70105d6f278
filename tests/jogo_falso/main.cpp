// Stands for the game, "Zu.exe", in the tests: does the game's side of both conversations with the launcher for real.
//
// Beside the program may lie "jogo_falso.txt" (UTF-8, lines of "key=value", in any order); without it the game behaves
// well. Every start adds a line to "jogo_falso.log" there: the current folder ("." when it is the program's own) and
// the arguments, parted by " | ". The launch token is never written, "--launcher=..." stands for it.
//
//  1. Diagnosis: --requisitos-json=PATH writes a report to PATH and ends with 0.
//     relatorio=NAME        which report: a file of the folder "relatorios" (default "bom"), or
//                           "nenhum": none; "travar": none, and hangs until it is ended or there is a file "siga"
//                           beside it; "copiar": the bytes of "jogo_falso.json" beside the program
//     demora=MS             waits before it writes
//     fica=MS               lives on after it has written
//
//  2. Play: --api=X --launcher=64 LOWER-CASE HEX DIGITS. The launcher has made the mapping
//     "Local\ZuLauncher-token-PID" with the 32 token bytes and the event "Local\ZuLauncher-confirmado-PID", PID being
//     this process in decimal. The game sets the event when its argument is the mapping's text, lives on and ends with
//     0; otherwise it ends with 5 at once.
//     esperar=1             looks at its token only once there is a file "siga" beside the program
//     viver=MS              how long it lives (default 3000)
//     The log then has "api X" and "token errado" or "token certo SHA-256 OF THE TOKEN".
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "core/arquivo.h"
#include "core/handle.h"
#include "core/hash.h"
#include "core/texto.h"
#include "core/utf16.h"

namespace zu::launcher::teste {
namespace {

constexpr int kTokenErrado = 5;
constexpr std::size_t kBytesDoToken = 32;

using Linhas = std::vector<std::string>;

// Empty when there is none of that name.
std::string Ler(const std::filesystem::path& caminho) {
    std::string texto;
    LerArquivoInteiro(caminho, texto);
    return texto;
}

// Before the log shows that the game has started.
Linhas LerAjustes() {
    std::istringstream texto(Ler(PastaDoPrograma() / L"jogo_falso.txt"));
    Linhas linhas;
    for (std::string linha; std::getline(texto, linha);)
        linhas.push_back(linha.substr(0, linha.find('\r')));
    return linhas;
}
const Linhas kAjustes = LerAjustes();

// What stands behind the option's name in the last line that begins with it.
std::string Opcao(const Linhas& linhas, std::string_view nome, std::string padrao = "") {
    for (const std::string& linha : linhas)
        if (linha.starts_with(nome)) padrao = linha.substr(nome.size());
    return padrao;
}

void Dormir(std::string_view chave, const char* padrao) {
    Sleep(std::stoul(Opcao(kAjustes, chave, padrao)));
}

// One process at a time: a diagnosis and a game that write at once would write one over the other.
void Registrar(std::string linha) {
    const std::filesystem::path registro = PastaDoPrograma() / L"jogo_falso.log";
    HandleArquivo arquivo;
    while (!arquivo) {
        arquivo = HandleArquivo(CreateFileW(registro.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                            nullptr, OPEN_ALWAYS, 0, nullptr));
        if (!arquivo && GetLastError() != ERROR_SHARING_VIOLATION) return;
        if (!arquivo) Sleep(1);
    }
    linha += '\n';
    DWORD escritos = 0;
    WriteFile(arquivo.Valor(), linha.data(), static_cast<DWORD>(linha.size()), &escritos, nullptr);
}

// Or until the test that would give it is gone with its folder.
void EsperarSinal() {
    while (std::filesystem::exists(PastaDoPrograma() / L"jogo_falso.txt") &&
           !std::filesystem::exists(PastaDoPrograma() / L"siga")) {
        Sleep(10);
    }
}

int Diagnosticar(const std::string& destino) {
    const std::string nome = Opcao(kAjustes, "relatorio=", "bom");
    const std::string relatorio = Ler(nome == "copiar" ? PastaDoPrograma() / L"jogo_falso.json"
                                                       : std::filesystem::path(ZU_PASTA_RELATORIOS) / (nome + ".json"));
    Dormir("demora=", "0");
    if (nome == "travar") EsperarSinal();
    if (nome == "nenhum" || nome == "travar") return 0;
    if (!GravarArquivoAtomico(DeUtf8(destino), relatorio)) return 1;
    Dormir("fica=", "0");
    return 0;
}

std::string LerToken() {
    const std::wstring nome = L"Local\\ZuLauncher-token-" + std::to_wstring(GetCurrentProcessId());
    const HandleKernel mapa(OpenFileMappingW(FILE_MAP_READ, FALSE, nome.c_str()));
    const void* vista = mapa ? MapViewOfFile(mapa.Valor(), FILE_MAP_READ, 0, 0, kBytesDoToken) : nullptr;
    return vista == nullptr ? "" : std::string(static_cast<const char*>(vista), kBytesDoToken);
}

int Jogar(const Linhas& argumentos) {
    Registrar("api " + Opcao(argumentos, "--api="));
    if (Opcao(kAjustes, "esperar=") == "1") EsperarSinal();
    const std::string token = LerToken();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(token.data()), token.size());
    const bool certo = !token.empty() && Opcao(argumentos, "--launcher=") == ParaHex(bytes);
    Registrar(certo ? "token certo " + ParaHex(Sha256Of(bytes)) : "token errado");
    if (!certo) return kTokenErrado;
    const std::wstring evento = L"Local\\ZuLauncher-confirmado-" + std::to_wstring(GetCurrentProcessId());
    SetEvent(HandleKernel(OpenEventW(EVENT_MODIFY_STATE, FALSE, evento.c_str())).Valor());
    Dormir("viver=", "3000");
    return 0;
}

}  // namespace

extern "C" int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    const std::filesystem::path pasta = std::filesystem::current_path();
    std::string inicio = pasta == PastaDoPrograma() ? "." : ParaUtf8(pasta.native());
    Linhas argumentos;
    for (int i = 1; i < __argc; ++i) {
        argumentos.push_back(ParaUtf8(__wargv[i]));
        inicio += " | " + (argumentos.back().starts_with("--launcher=") ? "--launcher=..." : argumentos.back());
    }
    Registrar(inicio);
    const std::string destino = Opcao(argumentos, "--requisitos-json=");
    return destino.empty() ? Jogar(argumentos) : Diagnosticar(destino);
}

}  // namespace zu::launcher::teste

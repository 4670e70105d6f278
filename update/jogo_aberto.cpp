#include "update/jogo_aberto.h"

#include <windows.h>
// after windows.h
#include <tlhelp32.h>

#include <array>
#include <string>

#include "core/arquivo.h"
#include "core/handle.h"

namespace zu::launcher {
namespace {

constexpr std::array kExecutaveis{L"Zu.exe", L"Zu2.exe"};
constexpr DWORD kMaiorCaminho = 32768;  // characters

// Empty when it may not be asked.
std::filesystem::path ImagemDoProcesso(DWORD pid) {
    const HandleKernel processo(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    if (!processo) return {};
    std::wstring caminho(kMaiorCaminho, L'\0');
    DWORD tamanho = kMaiorCaminho;
    if (QueryFullProcessImageNameW(processo.Valor(), 0, caminho.data(), &tamanho) == 0) return {};
    caminho.resize(tamanho);
    return caminho;
}

bool PodeSerEscrito(const std::filesystem::path& arquivo) {
    constexpr DWORD kTodos = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return static_cast<bool>(
        HandleArquivo(CreateFileW(arquivo.c_str(), GENERIC_WRITE, kTodos, nullptr, OPEN_EXISTING, 0, nullptr)));
}

bool DestaPasta(const PROCESSENTRY32W& processo, const std::filesystem::path& pasta) {
    for (const wchar_t* const executavel : kExecutaveis) {
        if (_wcsicmp(processo.szExeFile, executavel) != 0) continue;
        return ContaComoAberto(ImagemDoProcesso(processo.th32ProcessID), pasta / executavel);
    }
    return false;
}

}  // namespace

bool ContaComoAberto(const std::filesystem::path& imagem, const std::filesystem::path& programa) {
    if (!imagem.empty()) return MesmoArquivo(imagem, programa);
    InfoArquivo info;
    return LerInfoArquivo(programa, info) && !info.Pasta() && !PodeSerEscrito(programa);
}

bool JogoAberto(const std::filesystem::path& pasta) {
    const HandleArquivo lista(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!lista) return false;
    PROCESSENTRY32W processo{};
    processo.dwSize = sizeof processo;
    for (BOOL ha = Process32FirstW(lista.Valor(), &processo); ha != 0; ha = Process32NextW(lista.Valor(), &processo)) {
        if (DestaPasta(processo, pasta)) return true;
    }
    return false;
}

}  // namespace zu::launcher

#include "game/token.h"

#include <cstring>

#include "core/so_este_usuario.h"

namespace zu::launcher {
namespace {

std::wstring Nome(const wchar_t* prefixo, std::uint32_t pid) {
    return prefixo + std::to_wstring(pid);
}

// Takes over what a creating call returned, unless the object existed before.
HandleKernel SeNovo(HANDLE criado) {
    const bool existia = GetLastError() == ERROR_ALREADY_EXISTS;
    HandleKernel dono(criado);
    if (existia) dono.Fechar();
    return dono;
}

HandleKernel CriarMapeamento(const TokenDeLancamento& token, std::uint32_t pid) {
    SoEsteUsuario leitura(FILE_MAP_READ);
    if (leitura.Atributos() == nullptr) return {};
    HandleKernel mapeamento =
        SeNovo(CreateFileMappingW(INVALID_HANDLE_VALUE, leitura.Atributos(), PAGE_READWRITE, 0,
                                  static_cast<DWORD>(token.size()), Nome(L"Local\\ZuLauncher-token-", pid).c_str()));
    if (!mapeamento) return {};
    void* const vista = MapViewOfFile(mapeamento.Valor(), FILE_MAP_WRITE, 0, 0, token.size());
    if (vista == nullptr) return {};
    std::memcpy(vista, token.data(), token.size());
    UnmapViewOfFile(vista);
    return mapeamento;
}

HandleKernel CriarConfirmacao(std::uint32_t pid) {
    SoEsteUsuario sinal(EVENT_MODIFY_STATE | SYNCHRONIZE);
    if (sinal.Atributos() == nullptr) return {};
    return SeNovo(CreateEventW(sinal.Atributos(), TRUE, FALSE, Nome(L"Local\\ZuLauncher-confirmado-", pid).c_str()));
}

}  // namespace

void AnexarTexto(const TokenDeLancamento& token, std::wstring& linha) {
    constexpr std::wstring_view kDigitos = L"0123456789abcdef";
    for (const std::uint8_t byte : token) {
        linha.push_back(kDigitos[byte >> 4]);
        linha.push_back(kDigitos[byte & 0x0F]);
    }
}

CanalDoToken AbrirCanal(const TokenDeLancamento& token, std::uint32_t pid) {
    CanalDoToken canal;
    canal.mapeamento = CriarMapeamento(token, pid);
    if (canal.mapeamento) canal.confirmacao = CriarConfirmacao(pid);
    if (!canal.confirmacao) canal.mapeamento.Fechar();
    return canal;
}

std::string_view EsperarConfirmacao(HANDLE jogo, const CanalDoToken& canal, std::chrono::milliseconds espera) {
    const std::array<HANDLE, 2> alvos{jogo, canal.confirmacao.Valor()};
    const DWORD quantos = canal ? 2 : 1;
    const DWORD primeiro = WaitForMultipleObjects(quantos, alvos.data(), FALSE, static_cast<DWORD>(espera.count()));
    // A game that confirms and ends at once has set both; the confirmation is the better news.
    if (canal && WaitForSingleObject(canal.confirmacao.Valor(), 0) == WAIT_OBJECT_0) {
        return "anti-hack confirmou o token";
    }
    if (primeiro == WAIT_OBJECT_0) return "o jogo fechou antes de confirmar";
    return "sem confirmação do anti-hack no tempo do protocolo";
}

}  // namespace zu::launcher

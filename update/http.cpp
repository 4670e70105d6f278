#include "update/http.h"

#include <algorithm>
#include <array>
#include <memory>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "update/erro_http.h"

namespace zu::launcher {
namespace {

constexpr wchar_t kAgente[] = L"ZuLauncher/1.0";
constexpr int kEsperaResolver = 10'000;  // ms
constexpr int kEsperaConectar = 10'000;
constexpr int kEsperaEnviar = 30'000;
constexpr int kEsperaReceber = 30'000;
constexpr DWORD kTls12 = 0x800;
constexpr DWORD kTls12e13 = 0x2800;

constexpr DWORD kBlocoTexto = 64 * 1024;
constexpr DWORD kBlocoArquivo = 256 * 1024;

HINTERNET AbrirSessao() {
    HINTERNET sessao =
        WinHttpOpen(kAgente, WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0);
    if (sessao == nullptr) {
        sessao =
            WinHttpOpen(kAgente, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0);
    }
    if (sessao == nullptr) return nullptr;
    WinHttpSetTimeouts(sessao, kEsperaResolver, kEsperaConectar, kEsperaEnviar, kEsperaReceber);
    for (DWORD protocolos : {kTls12e13, kTls12}) {
        if (WinHttpSetOption(sessao, WINHTTP_OPTION_SECURE_PROTOCOLS, &protocolos, sizeof protocolos) != 0) break;
    }
    return sessao;
}

// One for the process, made on first use and never closed: it keeps the connections alive between requests.
HINTERNET HttpSession() {
    static HINTERNET const sessao = AbrirSessao();
    return sessao;
}

struct Endereco {
    std::wstring servidor;
    std::wstring objeto;  // path and query
    INTERNET_PORT porta = 0;
    bool seguro = false;
};

bool SepararUrl(const std::wstring& url, Endereco& endereco) {
    std::array<wchar_t, 256> servidor{};
    std::array<wchar_t, 4096> caminho{};
    std::array<wchar_t, 1024> extra{};
    URL_COMPONENTS partes{};
    partes.dwStructSize = sizeof partes;
    partes.lpszHostName = servidor.data();
    partes.dwHostNameLength = static_cast<DWORD>(servidor.size());
    partes.lpszUrlPath = caminho.data();
    partes.dwUrlPathLength = static_cast<DWORD>(caminho.size());
    partes.lpszExtraInfo = extra.data();
    partes.dwExtraInfoLength = static_cast<DWORD>(extra.size());
    if (WinHttpCrackUrl(url.c_str(), static_cast<DWORD>(url.size()), 0, &partes) == 0) return false;
    endereco.servidor = servidor.data();
    endereco.objeto = std::wstring(caminho.data()) + extra.data();
    endereco.porta = partes.nPort;
    endereco.seguro = partes.nScheme == INTERNET_SCHEME_HTTPS;
    return true;
}

// Sends, and waits for the answer's headers.
bool EnviarEEsperar(HINTERNET requisicao, const std::wstring& cabecalhos) {
    const wchar_t* const extras = cabecalhos.empty() ? WINHTTP_NO_ADDITIONAL_HEADERS : cabecalhos.c_str();
    const DWORD tamanho = cabecalhos.empty() ? 0 : static_cast<DWORD>(-1);
    return WinHttpSendRequest(requisicao, extras, tamanho, WINHTTP_NO_REQUEST_DATA, 0, 0, 0) != 0 &&
           WinHttpReceiveResponse(requisicao, nullptr) != 0;
}

bool LerStatus(HINTERNET requisicao, std::uint32_t& status) {
    DWORD valor = 0;
    DWORD tamanho = sizeof valor;
    if (WinHttpQueryHeaders(requisicao, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                            WINHTTP_HEADER_NAME_BY_INDEX, &valor, &tamanho, WINHTTP_NO_HEADER_INDEX) == 0) {
        return false;
    }
    status = valor;
    return true;
}

std::string TextoDoStatus(std::uint32_t status, const std::wstring& url) {
    return Formatar("HTTP {} em {}", status, ParaUtf8(url));
}

HandleArquivo AbrirDestino(const std::filesystem::path& destino, bool continuar) {
    return AbrirParaEscrever(destino, continuar ? FILE_APPEND_DATA : GENERIC_WRITE, FILE_SHARE_READ,
                             continuar ? OPEN_ALWAYS : CREATE_ALWAYS);
}

// What a transfer needs beside the open request and the open file.
struct Recepcao {
    const std::filesystem::path& destino;
    std::uint64_t limite;  // bytes that the file may have
    const ProgressCallback& progresso;
    const std::atomic<bool>& cancelar;
    const Recebido* recebido;  // who sees the blocks, when it may
    std::uint64_t total;       // bytes in the file
};

bool Passou(const Recepcao& t) {
    return t.total > t.limite;
}

// Copies the body into the file, block by block, until its end or until it runs past the limit.
bool Copiar(const HttpRequest& troca, HANDLE arquivo, Recepcao& t, std::string& erro) {
    // A small file does not pay for a large buffer.
    const auto tamanho = static_cast<DWORD>(std::clamp<std::uint64_t>(t.limite, 1, kBlocoArquivo));
    const auto bloco = std::make_unique_for_overwrite<char[]>(tamanho);
    while (!t.cancelar.load()) {
        DWORD lidos = 0;
        if (!HttpLerChegado(troca, bloco.get(), tamanho, lidos)) {
            erro = HttpErroTexto("download");
            return false;
        }
        if (lidos == 0) return true;
        DWORD escritos = 0;
        if (WriteFile(arquivo, bloco.get(), lidos, &escritos, nullptr) == 0 || escritos != lidos) {
            erro = Formatar("disco cheio ou sem permissão em {}", ParaUtf8(t.destino.native()));
            return false;
        }
        if (t.recebido != nullptr && t.recebido->bloco) t.recebido->bloco(bloco.get(), lidos);
        t.total += lidos;
        if (t.progresso) t.progresso(lidos);
        if (Passou(t)) {
            erro = kErroDeSobra;
            return false;
        }
    }
    erro = "cancelado";
    return false;
}

}  // namespace

std::string HttpErroTexto(std::string_view etapa) {
    return TextoDoErroHttp(etapa, GetLastError());
}

bool HttpAbrir(const std::wstring& url, const std::wstring& cabecalhos, HttpRequest& troca, std::uint32_t& status,
               std::string& erro) {
    const auto falhar = [&erro](std::string_view etapa) {
        erro = HttpErroTexto(etapa);
        return false;
    };
    HINTERNET const sessao = HttpSession();
    if (sessao == nullptr) return falhar("WinHttpOpen");
    Endereco endereco;
    if (!SepararUrl(url, endereco)) return falhar("URL");
    troca.conexao.Trocar(WinHttpConnect(sessao, endereco.servidor.c_str(), endereco.porta, 0));
    if (!troca.conexao) return falhar("conectar");
    troca.requisicao.Trocar(WinHttpOpenRequest(troca.conexao.Valor(), L"GET", endereco.objeto.c_str(), nullptr,
                                               WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                               endereco.seguro ? WINHTTP_FLAG_SECURE : 0));
    if (!troca.requisicao) return falhar("requisição");
    if (!EnviarEEsperar(troca.requisicao.Valor(), cabecalhos)) return falhar("download");
    if (!LerStatus(troca.requisicao.Valor(), status)) return falhar("resposta");
    return true;
}

std::string HttpCabecalho(const HttpRequest& troca, const wchar_t* nome) {
    std::array<wchar_t, 256> texto{};
    DWORD bytes = sizeof texto;
    if (WinHttpQueryHeaders(troca.requisicao.Valor(), WINHTTP_QUERY_CUSTOM, nome, texto.data(), &bytes,
                            WINHTTP_NO_HEADER_INDEX) == 0) {
        return "";
    }
    return ParaUtf8({texto.data(), bytes / sizeof(wchar_t)});
}

bool HttpLerChegado(const HttpRequest& troca, char* bloco, DWORD tamanho, DWORD& lidos) {
    DWORD chegados = 0;
    lidos = 0;
    HINTERNET const requisicao = troca.requisicao.Valor();
    return WinHttpQueryDataAvailable(requisicao, &chegados) != 0 &&
           (chegados == 0 || WinHttpReadData(requisicao, bloco, std::min(chegados, tamanho), &lidos) != 0);
}

bool HttpBaixarTexto(const std::wstring& url, std::string& corpo, std::string& erro, std::uint64_t maximo,
                     const std::atomic<bool>* cancelar) {
    corpo.clear();
    HttpRequest troca;
    std::uint32_t status = 0;
    if (!HttpAbrir(url, L"Cache-Control: no-cache\r\nPragma: no-cache\r\n", troca, status, erro)) return false;
    if (status != HTTP_STATUS_OK) {
        erro = TextoDoStatus(status, url);
        return false;
    }
    const auto bloco = std::make_unique_for_overwrite<char[]>(kBlocoTexto);
    while (cancelar == nullptr || !cancelar->load()) {
        DWORD lidos = 0;
        if (!HttpLerChegado(troca, bloco.get(), kBlocoTexto, lidos)) {
            erro = HttpErroTexto("leitura");
            return false;
        }
        if (lidos == 0) return true;
        corpo.append(bloco.get(), lidos);
        if (corpo.size() > maximo) {
            erro = "resposta grande demais";
            return false;
        }
    }
    erro = "cancelado";
    return false;
}

bool HttpBaixarArquivo(const std::wstring& url, const std::filesystem::path& destino, std::uint64_t esperado,
                       const ProgressCallback& progresso, const std::atomic<bool>& cancelar, std::string& erro,
                       std::uint64_t maximo, Recebido* recebido) {
    const bool vazio = recebido != nullptr && recebido->vazio;
    std::uint64_t presentes = vazio ? 0 : TamanhoDoArquivo(destino);
    if (esperado != 0 && presentes == esperado) return true;
    const std::uint64_t limite = esperado != 0 ? esperado : maximo;
    if (presentes > limite) {
        DeleteFileW(destino.c_str());
        presentes = 0;
    }

    HttpRequest troca;
    std::uint32_t status = 0;
    const std::wstring faixa = presentes > 0 ? L"Range: bytes=" + std::to_wstring(presentes) + L"-\r\n" : L"";
    if (!HttpAbrir(url, faixa, troca, status, erro)) return false;
    const bool continuar = status == HTTP_STATUS_PARTIAL_CONTENT && presentes > 0;
    if (!continuar && status != HTTP_STATUS_OK) {
        constexpr std::uint32_t kFaixaRecusada = 416;
        if (status == kFaixaRecusada) DeleteFileW(destino.c_str());
        erro = TextoDoStatus(status, url);
        return false;
    }

    HandleArquivo arquivo = AbrirDestino(destino, continuar);
    if (!arquivo) {
        const DWORD codigo = GetLastError();
        erro = Formatar("não foi possível gravar {} (erro {})", ParaUtf8(destino.native()), codigo);
        return false;
    }
    if (continuar && progresso) progresso(0);
    Recepcao t{destino, limite, progresso, cancelar, continuar ? nullptr : recebido, continuar ? presentes : 0};
    bool feito = Copiar(troca, arquivo.Valor(), t, erro);
    if (feito && esperado != 0 && t.total != esperado) {
        erro = Formatar("download incompleto ({} de {} bytes)", t.total, esperado);
        feito = false;
    }
    if (feito && recebido != nullptr) {
        recebido->arquivo = std::move(arquivo);
    } else {
        arquivo.Fechar();
    }
    if (Passou(t)) DeleteFileW(destino.c_str());
    return feito;
}

}  // namespace zu::launcher

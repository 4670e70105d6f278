#include "ui/site/runtime_site.h"

#include <bit>
#include <filesystem>
#include <system_error>

#include "core/handle.h"
#include "core/log.h"
#include "core/texto.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kChave[] = L"SOFTWARE\\Microsoft\\EdgeUpdate\\Clients\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";
constexpr wchar_t kDll[] = L"EBWebView\\x64\\EmbeddedBrowserWebView.dll";

struct Runtime {
    std::wstring versao;
    fs::path pasta;  // named after the version

    [[nodiscard]] fs::path Dll() const { return pasta / kDll; }
};

struct TracosChave {
    using Tipo = HKEY;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo chave) noexcept { RegCloseKey(chave); }
};

// Empty when the value is missing, is no text, or changed its size while it was read.
std::wstring LerTexto(HKEY chave, const wchar_t* nome) {
    DWORD bytes = 0;
    if (RegGetValueW(chave, nullptr, nome, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) return {};
    std::wstring texto(bytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(chave, nullptr, nome, RRF_RT_REG_SZ, nullptr, texto.data(), &bytes) != ERROR_SUCCESS) return {};
    return texto.c_str();
}

bool LocalizarNoRegistro(HKEY raiz, REGSAM visao, Runtime& runtime) {
    Handle<TracosChave> chave;
    if (RegOpenKeyExW(raiz, kChave, 0, KEY_QUERY_VALUE | visao, chave.Receber()) != ERROR_SUCCESS) return false;
    const std::wstring versao = LerTexto(chave.Valor(), L"pv");
    const std::wstring acima = LerTexto(chave.Valor(), L"location");
    if (versao.empty() || versao == L"0.0.0.0" || acima.empty()) return false;
    runtime = {.versao = versao, .pasta = fs::path(acima) / versao};
    return true;
}

// Older versions stay beside the newest, an update that failed leaves a folder without the DLL, and folders that are no
// version lie there too.
bool LocalizarNaPasta(Runtime& runtime) {
    const std::wstring programas = VariavelDeAmbiente(L"ProgramFiles(x86)");
    if (programas.empty()) return false;
    const fs::path acima = fs::path(programas) / L"Microsoft" / L"EdgeWebView" / L"Application";
    VersaoDeRuntime maior{};
    std::error_code erro;
    for (fs::directory_iterator i(acima, erro), fim; !erro && i != fim; i.increment(erro)) {
        const Runtime achado{.versao = i->path().filename().native(), .pasta = i->path()};
        VersaoDeRuntime versao{};
        std::error_code semDll;
        if (LerVersaoDeRuntime(ParaUtf8(achado.versao), versao) && versao > maior &&
            fs::is_regular_file(achado.Dll(), semDll)) {
            maior = versao;
            runtime = achado;
        }
    }
    return !runtime.versao.empty();
}

bool LocalizarRuntime(Runtime& runtime) {
    return LocalizarNoRegistro(HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, runtime) ||
           LocalizarNoRegistro(HKEY_CURRENT_USER, 0, runtime) || LocalizarNaPasta(runtime);
}

}  // namespace

bool LerVersaoDeRuntime(std::string_view nome, VersaoDeRuntime& versao) {
    for (std::uint32_t& numero : versao) {
        if (!LerNumeroInteiro(TomarAte(nome, '.'), numero)) return false;
    }
    return nome.empty();
}

std::wstring VariavelDeAmbiente(const wchar_t* nome) {
    std::wstring valor(GetEnvironmentVariableW(nome, nullptr, 0), L'\0');
    valor.resize(GetEnvironmentVariableW(nome, valor.data(), static_cast<DWORD>(valor.size())));
    return valor;
}

EntradaDoRuntime CarregarRuntime() {
    Runtime runtime;
    if (!LocalizarRuntime(runtime)) {
        LogLinha("WebView2: runtime não instalado; o centro mostra a logo");
        return nullptr;
    }
    const fs::path dll = runtime.Dll();
    // Its own folder is searched for the DLLs that it needs.
    HMODULE const modulo = LoadLibraryExW(dll.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    const FARPROC entrada =
        modulo == nullptr ? nullptr : GetProcAddress(modulo, "CreateWebViewEnvironmentWithOptionsInternal");
    if (entrada == nullptr) {
        const DWORD erro = GetLastError();
        LogLinha("WebView2: não foi possível carregar {} (erro {})", ParaUtf8(dll.native()), erro);
        return nullptr;
    }
    LogLinha("WebView2 {} ({})", ParaUtf8(runtime.versao), ParaUtf8(runtime.pasta.native()));
    return std::bit_cast<EntradaDoRuntime>(entrada);
}

}  // namespace zu::launcher

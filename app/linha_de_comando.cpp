#include "app/linha_de_comando.h"

#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "app/selo.h"
#include "core/arquivo.h"
#include "core/config.h"
#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

constexpr long kMenorConexoes = 1;
constexpr long kMaiorConexoes = 16;

bool TomarValor(const std::wstring& argumento, std::wstring_view opcao, std::wstring& valor) {
    if (!argumento.starts_with(opcao)) return false;
    valor = argumento.substr(opcao.size());
    return true;
}

// Text that is no number counts as 0.
std::int32_t LerConexoes(const std::wstring& texto) {
    const long numero = std::wcstol(texto.c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp(numero, kMenorConexoes, kMaiorConexoes));
}

// The value of "--manifesto=" waits until the sealed file has been read.
void AplicarArgumento(const std::wstring& argumento, ConfigLauncher& config, std::wstring& manifesto) {
    std::wstring valor;
    config.argumentos.push_back(argumento);
    if (argumento == L"--jogar") {
        config.jogar = true;
    } else if (argumento == L"--sem-cef") {
        // Older shortcuts still carry it.
    } else if (argumento == L"--sem-interface") {
        config.semInterface = true;
    } else if (argumento == L"--reparar") {
        config.reparar = true;
    } else if (argumento == L"--reaberto") {
        ++config.reaberto;
    } else if (TomarValor(argumento, L"--conexoes=", valor)) {
        config.conexoes = LerConexoes(valor);
    } else if (TomarValor(argumento, L"--cliente=", valor)) {
        if (!valor.empty()) config.pastaJogo = valor;
    } else if (TomarValor(argumento, L"--manifesto=", valor)) {
        manifesto = valor;
    } else if (TomarValor(argumento, L"--captura=", valor)) {
        config.captura = valor;
    } else if (TomarValor(argumento, L"--requisitos-simular=", valor)) {
        config.requisitosSimular = valor;
    }
}

// The settings of the sealed file, or the reason for the refusal in `config.erro`.
void AplicarArquivoSelado(ConfigLauncher& config) {
    std::string arquivo;
    if (!LerArquivoInteiro(config.pastaJogo / L"Launcher.emu", arquivo)) {
        config.erro = "Launcher.emu não encontrado na pasta do jogo.";
        return;
    }
    CorpoSelado corpo{};
    std::string recusa;
    if (!AbrirSelado(arquivo, SegredoDoSelo(), corpo, recusa)) {
        config.erro = Formatar("Launcher.emu inválido: {}.", recusa);
        return;
    }
    CamposSelados campos = LerCampos(corpo);
    if (!campos.nome.empty()) config.nome = DeUtf8(campos.nome);
    if (campos.updateAutomatico) config.urlUpdate = std::move(campos.update);
    config.urlSite = std::move(campos.site);
    config.seletor = std::move(campos.seletor);
    config.urlRegistro = std::move(campos.registro);
}

}  // namespace

ConfigLauncher MontarConfiguracao(std::span<const std::wstring> argumentos) {
    ConfigLauncher config;
    config.pastaJogo = PastaDoPrograma();
    std::wstring manifesto;
    for (const std::wstring& argumento : argumentos)
        AplicarArgumento(argumento, config, manifesto);
    config.pastaJogo = CaminhoCanonico(config.pastaJogo);

    AplicarArquivoSelado(config);
    if (!manifesto.empty()) config.urlUpdate = ParaUtf8(manifesto);
    if (!config.urlUpdate.empty() && !config.urlUpdate.ends_with('/')) config.urlUpdate.push_back('/');
    return config;
}

void LerConfiguracao() {
    std::vector<std::wstring> argumentos;
    int quantos = 0;
    if (wchar_t** const lista = CommandLineToArgvW(GetCommandLineW(), &quantos); lista != nullptr) {
        for (int i = 1; i < quantos; ++i)
            argumentos.emplace_back(lista[i]);
        LocalFree(static_cast<HLOCAL>(lista));
    }
    DefinirConfig(MontarConfiguracao(argumentos));
}

}  // namespace zu::launcher

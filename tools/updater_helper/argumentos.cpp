#include "tools/updater_helper/argumentos.h"

#include <algorithm>
#include <cwchar>

namespace zu::launcher {
namespace {

// Takes one text off the front: up to the closing quote when it is quoted, else up to the next blank. The system's own
// rules would read a backslash before the closing quote, as in "--cliente=C:\Zu\", as an escape.
std::wstring TomarTexto(std::wstring_view& resto) {
    resto.remove_prefix(std::min(resto.find_first_not_of(L' '), resto.size()));
    const bool entreAspas = resto.starts_with(L'"');
    if (entreAspas) resto.remove_prefix(1);
    const std::size_t fim = std::min(resto.find(entreAspas ? L'"' : L' '), resto.size());
    std::wstring texto(resto.substr(0, fim));
    resto.remove_prefix(std::min(fim + 1, resto.size()));
    return texto;
}

// Quoted so that the system's splitting gives the text back: backslashes count double before a quote.
std::wstring Escapado(const std::wstring& texto) {
    std::wstring saida = L"\"";
    std::size_t barras = 0;
    for (const wchar_t c : texto) {
        if (c == L'"') saida.append(barras + 1, L'\\');
        barras = c == L'\\' ? barras + 1 : 0;
        saida.push_back(c);
    }
    saida.append(barras, L'\\');
    return saida + L'"';
}

}  // namespace

ArgumentosDoHelper LerArgumentosDoHelper(std::wstring_view linhaDeComando) {
    constexpr std::wstring_view kPid = L"--pid=";
    constexpr std::wstring_view kLista = L"--lista=";
    constexpr std::wstring_view kReabrir = L"--reabrir=";
    ArgumentosDoHelper lidos;
    TomarTexto(linhaDeComando);
    bool paraOLauncher = false;
    while (linhaDeComando.find_first_not_of(L' ') != std::wstring_view::npos) {
        std::wstring texto = TomarTexto(linhaDeComando);
        if (paraOLauncher) {
            lidos.argumentos.push_back(std::move(texto));
        } else if (texto == L"--") {
            paraOLauncher = true;
        } else if (texto.starts_with(kPid)) {
            lidos.pid = static_cast<std::uint32_t>(std::wcstoul(texto.c_str() + kPid.size(), nullptr, 10));
        } else if (texto.starts_with(kLista)) {
            lidos.lista = texto.substr(kLista.size());
        } else if (texto.starts_with(kReabrir)) {
            lidos.reabrir = texto.substr(kReabrir.size());
        }
    }
    return lidos;
}

std::wstring MontarLinhaDeComando(const std::filesystem::path& programa, const std::vector<std::wstring>& argumentos) {
    std::wstring linha = Escapado(programa.native());
    for (const std::wstring& argumento : argumentos)
        linha += L" " + Escapado(argumento);
    return linha;
}

}  // namespace zu::launcher

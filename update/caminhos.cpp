#include "update/caminhos.h"

#include <algorithm>
#include <array>

#include "core/texto.h"

namespace zu::launcher::update {
namespace {

constexpr std::size_t kMaiorCaminho = 400;  // bytes
constexpr std::string_view kProibidos = "\"*:<>?\\|";

bool NomeDeDispositivo(std::string_view componente) {
    constexpr std::array<std::string_view, 4> kNomes{"con", "prn", "aux", "nul"};
    const std::string_view semExtensao = componente.substr(0, componente.find('.'));
    if (semExtensao.size() != 3 && semExtensao.size() != 4) return false;
    const std::string nome = MinusculasAscii(std::string(semExtensao));
    if (std::ranges::find(kNomes, nome) != kNomes.end()) return true;
    return nome.size() == 4 && (nome.starts_with("com") || nome.starts_with("lpt")) && nome[3] >= '1' && nome[3] <= '9';
}

bool ComponenteSeguro(std::string_view componente) {
    if (componente.empty() || componente == "." || componente == "..") return false;
    if (componente.ends_with('.') || componente.ends_with(' ')) return false;
    const auto proibido = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || kProibidos.find(c) != std::string_view::npos;
    };
    return std::ranges::none_of(componente, proibido) && !NomeDeDispositivo(componente);
}

}  // namespace

std::string NormalizarCaminho(std::string_view caminho) {
    std::string normal;
    normal.reserve(caminho.size());
    for (const char c : caminho) {
        const char letra = c == '\\' ? '/' : c;
        // Also drops the leading ones.
        if (letra == '/' && (normal.empty() || normal.back() == '/')) continue;
        normal.push_back(letra);
        if (normal.size() == 2 && normal == "./") normal.clear();
    }
    return normal;
}

bool CaminhoSeguro(std::string_view caminho) {
    const std::string normal = NormalizarCaminho(caminho);
    if (normal.empty() || normal.size() > kMaiorCaminho || normal.back() == '/') return false;
    for (std::string_view resto = normal; !resto.empty();) {
        if (!ComponenteSeguro(TomarAte(resto, '/'))) return false;
    }
    return true;
}

std::string ChaveDoCaminho(std::string_view caminho) {
    return MinusculasAscii(NormalizarCaminho(caminho));
}

bool ChaveProtegida(std::string_view chave) {
    constexpr std::array<std::string_view, 2> kExatos{"config/zu.ini", "data/macro.txt"};
    constexpr std::array<std::string_view, 3> kInicios{"config/launcher.", "screenshots/", "cache/"};
    constexpr std::array<std::string_view, 5> kFins{".log", ".baixando", ".novo", ".tmp", ".upd"};
    return std::ranges::find(kExatos, chave) != kExatos.end() ||
           std::ranges::any_of(kInicios, [&](std::string_view inicio) { return chave.starts_with(inicio); }) ||
           std::ranges::any_of(kFins, [&](std::string_view fim) { return chave.ends_with(fim); }) ||
           chave.find(".upd.p") != std::string_view::npos;
}

bool CaminhoProtegido(std::string_view caminho) {
    return ChaveProtegida(ChaveDoCaminho(caminho));
}

}  // namespace zu::launcher::update

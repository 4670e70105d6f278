#include "update/caminhos.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/texto.h"

namespace zu::launcher::update {
namespace {

constexpr std::size_t kMaiorCaminho = 400;  // bytes

// What a byte is in a path: of no consequence, between two names, or in no name.
enum class Byte : std::uint8_t { kComum, kSeparador, kProibido };

constexpr auto kBytes = [] {
    std::array<Byte, 256> bytes{};
    std::fill_n(bytes.begin(), 0x20, Byte::kProibido);
    for (const char c : std::string_view("\"*:<>?|"))
        bytes[static_cast<unsigned char>(c)] = Byte::kProibido;
    bytes['/'] = bytes['\\'] = Byte::kSeparador;
    return bytes;
}();

Byte Tipo(char c) {
    return kBytes[static_cast<unsigned char>(c)];
}

bool NomeDeDispositivo(std::string_view componente) {
    constexpr std::array<std::string_view, 4> kNomes{"con", "prn", "aux", "nul"};
    const auto acabaEm = [&](std::size_t letras) {
        return componente.size() == letras || (componente.size() > letras && componente[letras] == '.');
    };
    if (!acabaEm(3) && !acabaEm(4)) return false;
    const std::string nome = MinusculasAscii(std::string(componente.substr(0, acabaEm(3) ? 3 : 4)));
    if (std::ranges::find(kNomes, nome) != kNomes.end()) return true;
    return nome.size() == 4 && (nome.starts_with("com") || nome.starts_with("lpt")) && nome[3] >= '1' && nome[3] <= '9';
}

// Of a name without separators and forbidden bytes.
bool ComponenteSeguro(std::string_view componente) {
    return !componente.ends_with('.') && !componente.ends_with(' ') && !NomeDeDispositivo(componente);
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

// The same as for the normalised form, which is not made: a list of 100,000 files asks this for each.
bool CaminhoSeguro(std::string_view caminho) {
    if (caminho.empty() || Tipo(caminho.back()) == Byte::kSeparador) return false;
    std::size_t tamanho = 0;  // of the normalised form, with a separator behind each name
    for (auto inicio = caminho.begin(); inicio != caminho.end();) {
        const auto fim = std::find_if(inicio, caminho.end(), [](char c) { return Tipo(c) != Byte::kComum; });
        const std::string_view componente(inicio, fim);
        const bool ultimo = fim == caminho.end();
        if (!ultimo && Tipo(*fim) == Byte::kProibido) return false;
        const bool normalizado = !ultimo && (componente.empty() || (componente == "." && tamanho == 0));
        if (!normalizado) {
            if (!ComponenteSeguro(componente)) return false;
            tamanho += componente.size() + 1;
        }
        inicio = ultimo ? fim : fim + 1;
    }
    return tamanho <= kMaiorCaminho + 1;
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

#include "core/formato.h"

#include <array>
#include <charconv>

namespace zu::launcher {
namespace {

struct Forma {
    std::size_t largura = 0;
    int casas = 6;
    char tipo = 'd';
};

Forma LerForma(std::string_view texto) {
    Forma forma;
    if (!texto.empty() && texto.front() == ':') texto.remove_prefix(1);
    if (texto.size() >= 2 && texto[0] == '0') forma.largura = static_cast<std::size_t>(texto[1] - '0');
    if (texto.size() >= 2 && texto[0] == '.') forma.casas = texto[1] - '0';
    if (!texto.empty() && (texto.back() == 'X' || texto.back() == 'x')) forma.tipo = texto.back();
    return forma;
}

}  // namespace

void ArgumentoDeFormato::Escrever(std::string_view marca, std::string& saida) const {
    if (tipo_ == Tipo::kTexto) {
        saida.append(texto_);
        return;
    }
    const Forma forma = LerForma(marca);
    std::array<char, 400> area{};  // a double in fixed notation has at most 309 digits before the point
    char* const fim = area.data() + area.size();
    std::to_chars_result r{};
    if (tipo_ == Tipo::kReal) {
        r = std::to_chars(area.data(), fim, real_, std::chars_format::fixed, forma.casas);
    } else if (forma.tipo != 'd') {
        r = std::to_chars(area.data(), fim, inteiro_, 16);
    } else if (tipo_ == Tipo::kComSinal) {
        r = std::to_chars(area.data(), fim, static_cast<std::int64_t>(inteiro_));
    } else {
        r = std::to_chars(area.data(), fim, inteiro_);
    }
    const auto digitos = static_cast<std::size_t>(r.ptr - area.data());
    if (digitos < forma.largura) saida.append(forma.largura - digitos, '0');
    for (const char* c = area.data(); c != r.ptr; ++c) {
        const bool letra = *c >= 'a' && *c <= 'f';
        saida.push_back(forma.tipo == 'X' && letra ? static_cast<char>(*c - 'a' + 'A') : *c);
    }
}

std::string FormatarCom(std::string_view formato, std::span<const ArgumentoDeFormato> argumentos) {
    std::string saida;
    saida.reserve(formato.size() + 16 * argumentos.size());
    std::size_t proximo = 0;
    while (true) {
        const std::size_t abre = formato.find('{');
        saida.append(formato.substr(0, abre));
        if (abre == std::string_view::npos) return saida;
        formato.remove_prefix(abre + 1);
        const std::size_t fecha = formato.find('}');
        if (fecha == std::string_view::npos || proximo == argumentos.size()) return saida;
        argumentos[proximo++].Escrever(formato.substr(0, fecha), saida);
        formato.remove_prefix(fecha + 1);
    }
}

}  // namespace zu::launcher

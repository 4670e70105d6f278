// The report is written by another program: any bytes must be read or refused, and what is read must read the same
// again from what is written here.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "core/formato.h"
#include "core/json.h"

using namespace zu::launcher;

namespace {

std::string Texto(std::string_view texto) {
    std::string saida = "\"";
    for (const char c : texto) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') saida += '\\';
        saida += byte < 0x20 ? Formatar("\\u{:04X}", byte) : std::string(1, c);
    }
    return saida + '"';
}

std::string Numero(const ValorJson& valor) {
    if (std::isinf(valor.numero)) return valor.numero < 0 ? "-1e999" : "1e999";
    const bool inteiro = static_cast<double>(valor.inteiro) == valor.numero;
    if (inteiro && !(valor.inteiro == 0 && std::signbit(valor.numero))) return std::to_string(valor.inteiro);
    std::array<char, 64> digitos{};
    constexpr auto kForma = std::chars_format::scientific;
    return {digitos.data(), std::to_chars(digitos.begin(), digitos.end(), valor.numero, kForma).ptr};
}

std::string Escrito(const ValorJson& valor, int nivel = 0) {
    constexpr int kNivelMaximo = 64;
    if (nivel > kNivelMaximo) std::abort();
    std::string saida;
    switch (valor.tipo) {
        case TipoJson::kNulo:
            return "null";
        case TipoJson::kBooleano:
            return valor.booleano ? "true" : "false";
        case TipoJson::kNumero:
            return Numero(valor);
        case TipoJson::kTexto:
            return Texto(valor.texto);
        case TipoJson::kLista:
            for (const ValorJson& elemento : valor.elementos)
                saida += (saida.empty() ? "" : ",") + Escrito(elemento, nivel + 1);
            return '[' + saida + ']';
        case TipoJson::kObjeto:
            for (const MembroJson& membro : valor.membros)
                saida += (saida.empty() ? "" : ",") + Texto(membro.chave) + ':' + Escrito(membro.valor, nivel + 1);
            return '{' + saida + '}';
    }
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    ValorJson valor;
    std::string erro;
    const bool lido = LerJson({reinterpret_cast<const char*>(dados), tamanho}, valor, erro);
    if (lido != erro.empty()) std::abort();
    // What a refused document leaves is a whole tree as well.
    const std::string escrito = Escrito(valor);
    ValorJson volta;
    if (lido && (!LerJson(escrito, volta, erro) || Escrito(volta) != escrito)) std::abort();
    return 0;
}

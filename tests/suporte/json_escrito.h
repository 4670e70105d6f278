// A tree of values as the shortest document that reads the same again.
#pragma once

#include <charconv>
#include <cmath>

#include "core/formato.h"
#include "core/json.h"

namespace zu::launcher::teste {

inline std::string TextoEscrito(std::string_view texto) {
    std::string saida = "\"";
    for (const char c : texto) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') saida += '\\';
        saida += byte < 0x20 ? Formatar("\\u{:04X}", byte) : std::string(1, c);
    }
    return saida + "\"";
}

inline std::string NumeroEscrito(const ValorJson& valor) {
    if (std::isinf(valor.numero)) return valor.numero < 0 ? "-1e999" : "1e999";
    if (static_cast<double>(valor.inteiro) == valor.numero) return std::to_string(valor.inteiro);
    char digitos[64];
    return {digitos, std::to_chars(digitos, std::end(digitos), valor.numero, std::chars_format::scientific).ptr};
}

inline std::string Escrito(const ValorJson& valor) {
    std::string saida;
    switch (valor.tipo) {
        case TipoJson::kNulo:
            return "null";
        case TipoJson::kBooleano:
            return valor.booleano ? "true" : "false";
        case TipoJson::kNumero:
            return NumeroEscrito(valor);
        case TipoJson::kTexto:
            return TextoEscrito(valor.texto);
        case TipoJson::kLista:
            for (const ValorJson& elemento : valor.elementos)
                saida += Formatar("{}{}", saida.empty() ? "" : ",", Escrito(elemento));
            return Formatar("[{}]", saida);
        case TipoJson::kObjeto:
            for (const auto& [chave, membro] : valor.membros)
                saida += Formatar("{}{}:{}", saida.empty() ? "" : ",", TextoEscrito(chave), Escrito(membro));
            return "{" + saida + "}";
    }
    return "?";
}

}  // namespace zu::launcher::teste

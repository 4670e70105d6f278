// Reads a JSON document (UTF-8) into a tree of values. There is no writer. Strict about the structure, with these
// liberties: a number may be written as loosely as the conversion lets it (leading zeros, "1.", "1.2.3"), and the bytes
// of texts are not checked to be UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher {

enum class TipoJson : std::int32_t {
    kNulo = 0,
    kBooleano = 1,
    kNumero = 2,
    kTexto = 3,
    kLista = 4,
    kObjeto = 5,
};

struct MembroJson;

// One value. What its type does not use stays empty or zero.
struct ValorJson {
    TipoJson tipo = TipoJson::kNulo;
    bool booleano = false;
    double numero = 0;                 // infinite when the number is too large for a double
    std::int64_t inteiro = 0;          // exact, or `numero` truncated when it has a fraction or an exponent
    std::string texto;                 // UTF-8; escaped lone surrogates stay, as three bytes
    std::vector<ValorJson> elementos;  // of a list
    std::vector<MembroJson> membros;   // of an object, in the document's order, repeated keys included
};

struct MembroJson {
    std::string chave;
    ValorJson valor;
};

// Reads the whole document; a byte order mark may lead it. False, with a phrase that names the byte offset (after the
// mark) in `erro`, for a document that is malformed, that goes on behind its value, that holds a value more than 64
// containers deep or an integer outside 64 bits; `valor` then holds the part that was complete. Needs memory in
// proportion to the document and little stack however deep that nests. Safe on any thread.
bool LerJson(std::string_view documento, ValorJson& valor, std::string& erro);

// The first member with exactly that key decides: its truth when it is a boolean, whether its integer is not zero when
// it is a number. `padrao` for any other type, without such a member, and when `objeto` is no object.
bool JsonBool(const ValorJson& objeto, std::string_view chave, bool padrao);

// The first member with exactly that key when it is a text, else `padrao`.
std::string JsonTexto(const ValorJson& objeto, std::string_view chave, std::string_view padrao = {});

}  // namespace zu::launcher

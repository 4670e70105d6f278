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

constexpr int kNivelMaximo = 64;

void EscreverTexto(std::string_view texto, std::string& saida) {
    saida += '"';
    for (const char c : texto) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            saida += Formatar("\\u{:04X}", byte);
        } else if (c == '"' || c == '\\') {
            (saida += '\\') += c;
        } else {
            saida += c;
        }
    }
    saida += '"';
}

void EscreverNumero(const ValorJson& valor, std::string& saida) {
    const bool inteiro = static_cast<double>(valor.inteiro) == valor.numero;
    if (inteiro && !(valor.inteiro == 0 && std::signbit(valor.numero))) {
        saida += std::to_string(valor.inteiro);
    } else if (std::isinf(valor.numero)) {
        saida += valor.numero < 0 ? "-1e999" : "1e999";
    } else {
        std::array<char, 64> digitos{};
        constexpr auto kForma = std::chars_format::scientific;
        saida.append(digitos.data(), std::to_chars(digitos.begin(), digitos.end(), valor.numero, kForma).ptr);
    }
}

void Escrever(const ValorJson& valor, int nivel, std::string& saida) {
    if (nivel > kNivelMaximo) std::abort();
    switch (valor.tipo) {
        case TipoJson::kNulo:
            saida += "null";
            return;
        case TipoJson::kBooleano:
            saida += valor.booleano ? "true" : "false";
            return;
        case TipoJson::kNumero:
            EscreverNumero(valor, saida);
            return;
        case TipoJson::kTexto:
            EscreverTexto(valor.texto, saida);
            return;
        case TipoJson::kLista:
            saida += '[';
            for (const ValorJson& elemento : valor.elementos) {
                if (&elemento != valor.elementos.data()) saida += ',';
                Escrever(elemento, nivel + 1, saida);
            }
            saida += ']';
            return;
        case TipoJson::kObjeto:
            saida += '{';
            for (const MembroJson& membro : valor.membros) {
                if (&membro != valor.membros.data()) saida += ',';
                EscreverTexto(membro.chave, saida);
                saida += ':';
                Escrever(membro.valor, nivel + 1, saida);
            }
            saida += '}';
            return;
    }
    std::abort();
}

std::string Escrito(const ValorJson& valor) {
    std::string saida;
    Escrever(valor, 0, saida);
    return saida;
}

// The look-ups must agree with the first member of each key.
void ConferirBuscas(const ValorJson& objeto) {
    for (const MembroJson& membro : objeto.membros) {
        const ValorJson* primeiro = nullptr;
        for (const MembroJson& outro : objeto.membros) {
            if (primeiro == nullptr && outro.chave == membro.chave) primeiro = &outro.valor;
        }
        const bool temTexto = primeiro->tipo == TipoJson::kTexto;
        if (JsonTexto(objeto, membro.chave, "?") != (temTexto ? primeiro->texto : "?")) std::abort();
        const bool temVerdade = primeiro->tipo == TipoJson::kBooleano || primeiro->tipo == TipoJson::kNumero;
        const bool depende = JsonBool(objeto, membro.chave, true) != JsonBool(objeto, membro.chave, false);
        if (depende == temVerdade) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view texto(reinterpret_cast<const char*>(dados), tamanho);
    ValorJson valor;
    std::string erro;
    const bool lido = LerJson(texto, valor, erro);
    if (lido != erro.empty()) std::abort();
    // What a refused document leaves is a whole tree as well.
    const std::string escrito = Escrito(valor);
    ConferirBuscas(valor);
    ValorJson volta;
    if (lido && (!LerJson(escrito, volta, erro) || Escrito(volta) != escrito)) std::abort();
    return 0;
}

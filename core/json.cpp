#include "core/json.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <limits>
#include <system_error>

#include "core/formato.h"
#include "core/texto.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kDigitosHex = "0123456789abcdefABCDEF";
constexpr std::size_t kDigitosDaUnidade = 4;
constexpr int kNivelMaximo = 64;

// What an escape stands for, by its letter; 0 for a letter that begins none. "u" has a way of its own.
constexpr auto kEscapes = [] {
    std::array<char, 256> valores{};
    constexpr std::string_view kLetras = "\"/\\bfnrt";
    constexpr std::string_view kValores = "\"/\\\b\f\n\r\t";
    for (std::size_t i = 0; i < kLetras.size(); ++i)
        valores[static_cast<unsigned char>(kLetras[i])] = kValores[i];
    return valores;
}();

// The bytes up to the one that ends a run of plain text inside a string: a quote, a backslash or a control character.
// Sixteen at a time. `copia`, which may be absent and has room for as much as `texto`, takes them; what it holds behind
// them has no meaning.
std::size_t TamanhoDoTrecho(std::string_view texto, char* copia = nullptr) {
    const __m128i aspas = _mm_set1_epi8('"');
    const __m128i barra = _mm_set1_epi8('\\');
    const __m128i controle = _mm_set1_epi8(0x1F);
    std::size_t i = 0;
    for (; i + sizeof(__m128i) <= texto.size(); i += sizeof(__m128i)) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(texto.data() + i));
        if (copia != nullptr) _mm_storeu_si128(reinterpret_cast<__m128i*>(copia + i), bytes);
        const __m128i fins = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, aspas), _mm_cmpeq_epi8(bytes, barra)),
                                          _mm_cmpeq_epi8(_mm_min_epu8(bytes, controle), bytes));
        const auto marcas = static_cast<unsigned>(_mm_movemask_epi8(fins));
        if (marcas != 0) return i + static_cast<std::size_t>(std::countr_zero(marcas));
    }
    for (; i < texto.size(); ++i) {
        const char c = texto[i];
        if (c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20) break;
        if (copia != nullptr) copia[i] = c;
    }
    return i;
}

constexpr bool Branco(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

constexpr bool Digito(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool ByteDeNumero(char c) {
    return Digito(c) || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E';
}

// Returns what lies behind the one to four bytes written.
char* EscreverUtf8(std::uint32_t codigo, char* para) {
    const auto continuacao = [&](int deslocamento) {
        *para++ = static_cast<char>(0x80 | (codigo >> deslocamento & 0x3F));
    };
    if (codigo < 0x80) {
        *para++ = static_cast<char>(codigo);
    } else if (codigo < 0x800) {
        *para++ = static_cast<char>(0xC0 | codigo >> 6);
        continuacao(0);
    } else if (codigo < 0x10000) {
        *para++ = static_cast<char>(0xE0 | codigo >> 12);
        continuacao(6);
        continuacao(0);
    } else {
        *para++ = static_cast<char>(0xF0 | codigo >> 18);
        continuacao(12);
        continuacao(6);
        continuacao(0);
    }
    return para;
}

// Whether a number that no double can hold is too large, rather than too close to zero: the place of its first digit
// that counts tells.
bool GrandeDemais(std::string_view numero) {
    const std::string_view mantissa = numero.substr(0, numero.find_first_of("eE"));
    const std::size_t ponto = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t primeiro = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    const std::int64_t casa = static_cast<std::int64_t>(ponto) - static_cast<std::int64_t>(primeiro);

    std::string_view expoente = numero.substr(std::min(mantissa.size() + 1, numero.size()));
    if (expoente.starts_with('+')) expoente.remove_prefix(1);
    std::int64_t valor = 0;
    const auto lido = std::from_chars(expoente.data(), expoente.data() + expoente.size(), valor);
    // Beyond 64 bits the exponent outweighs any mantissa that memory can hold.
    if (lido.ec == std::errc::result_out_of_range) return !expoente.starts_with('-');
    return valor > -casa;
}

// The longest prefix that is a number; 0 without one. The C library's conversion would ask the locale for the decimal
// point, and the Windows one rounds the last bit at will.
double LerReal(std::string_view numero) {
    double real = 0;
    const auto lido = std::from_chars(numero.data(), numero.data() + numero.size(), real);
    if (lido.ec != std::errc::result_out_of_range) return real;
    const double limite = GrandeDemais({numero.data(), lido.ptr}) ? std::numeric_limits<double>::infinity() : 0.0;
    return numero.starts_with('-') ? -limite : limite;
}

// What the processor's own conversion gives outside the range, where the language leaves it undefined.
std::int64_t Truncar(double real) {
    constexpr double kLimite = 9223372036854775808.0;
    return real >= -kLimite && real < kLimite ? static_cast<std::int64_t>(real)
                                              : std::numeric_limits<std::int64_t>::min();
}

class Leitor {
 public:
    explicit Leitor(std::string_view documento) : documento_(documento) {}

    bool LerDocumento(ValorJson& valor, std::string& erro) {
        if (!LerValor(valor, 0)) {
            erro = Formatar("JSON inválido perto do caractere {}: {}", posicao_, falha_);
            return false;
        }
        PularBrancos();
        if (NoFim()) return true;
        erro = Formatar("JSON inválido: sobra texto no caractere {}", posicao_);
        return false;
    }

 private:
    [[nodiscard]] bool NoFim() const { return posicao_ == documento_.size(); }
    [[nodiscard]] std::string_view Resto() const { return documento_.substr(posicao_); }

    bool Falhar(std::string_view falha) {
        falha_ = falha;
        return false;
    }

    void PularBrancos() {
        while (!NoFim() && Branco(documento_[posicao_]))
            ++posicao_;
    }

    bool Tomar(std::string_view palavra) {
        if (!Resto().starts_with(palavra)) return false;
        posicao_ += palavra.size();
        return true;
    }

    bool Tomar(char byte) {
        if (NoFim() || documento_[posicao_] != byte) return false;
        ++posicao_;
        return true;
    }

    bool LerValor(ValorJson& valor, int nivel) {
        if (nivel > kNivelMaximo) return Falhar("aninhamento demais");
        PularBrancos();
        if (NoFim()) return Falhar("fim inesperado");
        const char inicio = documento_[posicao_];
        if (inicio == '{') return LerObjeto(valor, nivel);
        if (inicio == '[') return LerElementos(valor, nivel);
        if (inicio == '"') {
            valor.tipo = TipoJson::kTexto;
            return LerTexto(valor.texto);
        }
        if (inicio == '-' || Digito(inicio)) return LerNumero(valor);
        return LerPalavra(valor);
    }

    bool LerPalavra(ValorJson& valor) {
        if (Tomar("null")) return true;
        valor.booleano = Tomar("true");
        if (!valor.booleano && !Tomar("false")) return Falhar("valor inesperado");
        valor.tipo = TipoJson::kBooleano;
        return true;
    }

    bool LerObjeto(ValorJson& objeto, int nivel) {
        objeto.tipo = TipoJson::kObjeto;
        ++posicao_;
        PularBrancos();
        if (Tomar('}')) return true;
        const Medida medida(objeto.membros, membros_[static_cast<std::size_t>(nivel)]);
        do {
            if (!LerMembro(objeto.membros.emplace_back(), nivel + 1)) {
                objeto.membros.pop_back();
                return false;
            }
            PularBrancos();
        } while (Tomar(','));
        return Tomar('}') || Falhar("esperava ',' ou '}'");
    }

    bool LerMembro(MembroJson& membro, int nivel) {
        PularBrancos();
        if (!LerTexto(membro.chave)) return false;
        PularBrancos();
        if (!Tomar(':')) return Falhar("esperava ':'");
        return LerValor(membro.valor, nivel);
    }

    bool LerElementos(ValorJson& lista, int nivel) {
        lista.tipo = TipoJson::kLista;
        ++posicao_;
        PularBrancos();
        if (Tomar(']')) return true;
        const Medida medida(lista.elementos, elementos_[static_cast<std::size_t>(nivel)]);
        do {
            if (!LerValor(lista.elementos.emplace_back(), nivel + 1)) {
                lista.elementos.pop_back();
                return false;
            }
            PularBrancos();
        } while (Tomar(','));
        return Tomar(']') || Falhar("esperava ',' ou ']'");
    }

    bool LerTexto(std::string& texto) {
        if (!Tomar('"')) return Falhar("esperava '\"'");
        const std::string_view trecho = Resto().substr(0, TamanhoDoTrecho(Resto()));
        if (!Resto().substr(trecho.size()).starts_with('"')) return LerTextoComEscapes(texto);
        texto.assign(trecho);
        posicao_ += trecho.size() + 1;
        return true;
    }

    bool LerTextoComEscapes(std::string& texto) {
        const std::size_t fim = posicao_ + TamanhoAteAspas();
        texto.resize(fim - posicao_);
        char* para = texto.data();
        const bool lido = LerTrechosEEscapes(fim, para);
        texto.resize(static_cast<std::size_t>(para - texto.data()));
        return lido;
    }

    // Up to `fim`, where the text ends or is broken off, and what ends it. `para` goes on with each byte written.
    bool LerTrechosEEscapes(std::size_t fim, char*& para) {
        while (true) {
            const std::size_t trecho = TamanhoDoTrecho(documento_.substr(posicao_, fim - posicao_), para);
            posicao_ += trecho;
            para += trecho;
            if (NoFim()) return Falhar("texto sem fim");
            const char byte = documento_[posicao_++];
            if (byte == '"') return true;
            if (byte != '\\') return Falhar("caractere de controle no texto");
            if (!LerEscape(para)) return false;
        }
    }

    // Of the rest of a text. What is read of it is never longer.
    [[nodiscard]] std::size_t TamanhoAteAspas() const {
        constexpr std::size_t kEscape = 2;
        const std::string_view resto = Resto();
        std::size_t i = TamanhoDoTrecho(resto);
        while (i < resto.size() && resto[i] == '\\') {
            i = std::min(i + kEscape, resto.size());
            i += TamanhoDoTrecho(resto.substr(i));
        }
        return i;
    }

    bool LerEscape(char*& para) {
        if (NoFim()) return Falhar("texto sem fim");
        const char letra = documento_[posicao_++];
        if (letra == 'u') return LerUnicode(para);
        const char valor = kEscapes[static_cast<unsigned char>(letra)];
        if (valor == '\0') return Falhar("escape inválido");
        *para++ = valor;
        return true;
    }

    // The second half of a surrogate pair goes into the sum unchecked; a lone half is encoded like any other character.
    bool LerUnicode(char*& para) {
        std::uint32_t codigo = 0;
        if (!LerUnidade(codigo)) return false;
        if (codigo >= 0xD800 && codigo <= 0xDBFF && Tomar("\\u")) {
            std::uint32_t segunda = 0;
            if (!LerUnidade(segunda)) return false;
            codigo = ((codigo - 0xD800) << 10) + segunda + 0x2400;
        }
        para = EscreverUtf8(codigo, para);
        return true;
    }

    bool LerUnidade(std::uint32_t& unidade) {
        const std::string_view digitos = Resto().substr(0, kDigitosDaUnidade);
        if (digitos.size() < kDigitosDaUnidade) return Falhar("\\u incompleto");
        if (!LerNumeroInteiro(digitos, unidade, 16)) {
            posicao_ += digitos.find_first_not_of(kDigitosHex) + 1;
            return Falhar("\\u inválido");
        }
        posicao_ += kDigitosDaUnidade;
        return true;
    }

    bool LerNumero(ValorJson& valor) {
        const std::string_view resto = Resto();
        const auto fim = std::ranges::find_if_not(resto, ByteDeNumero);
        const std::string_view numero(resto.begin(), fim);
        posicao_ += numero.size();
        valor.tipo = TipoJson::kNumero;
        if (numero.find_first_of(".eE") != std::string_view::npos) {
            valor.numero = LerReal(numero);
            valor.inteiro = Truncar(valor.numero);
            return true;
        }
        const auto lido = std::from_chars(numero.data(), numero.data() + numero.size(), valor.inteiro);
        // Both conversions round the same way; only one knows of a zero below zero.
        const bool exato = lido.ec == std::errc{} && valor.inteiro != 0;
        valor.numero = exato ? static_cast<double>(valor.inteiro) : LerReal(numero);
        return lido.ec == std::errc{} || Falhar("número inteiro grande demais");
    }

    // Containers at the same depth are alike: one is given the room that the one before it took. What is given for
    // nothing is never more than what was used.
    template <class Filhos>
    class Medida {
     public:
        Medida(Filhos& filhos, std::size_t& daAnterior) : filhos_(filhos), daAnterior_(daAnterior) {
            filhos_.reserve(daAnterior_);
        }
        Medida(const Medida&) = delete;
        Medida& operator=(const Medida&) = delete;
        ~Medida() { daAnterior_ = filhos_.size(); }

     private:
        Filhos& filhos_;
        std::size_t& daAnterior_;
    };

    std::string_view documento_;
    std::size_t posicao_ = 0;
    std::string_view falha_;
    std::array<std::size_t, kNivelMaximo + 1> membros_{};
    std::array<std::size_t, kNivelMaximo + 1> elementos_{};
};

const ValorJson* Procurar(const ValorJson& objeto, std::string_view chave) {
    if (objeto.tipo != TipoJson::kObjeto) return nullptr;
    const auto membro = std::ranges::find(objeto.membros, chave, &MembroJson::chave);
    return membro == objeto.membros.end() ? nullptr : &membro->valor;
}

}  // namespace

bool LerJson(std::string_view documento, ValorJson& valor, std::string& erro) {
    valor = {};
    if (documento.starts_with(kMarcaUtf8)) documento.remove_prefix(kMarcaUtf8.size());
    return Leitor(documento).LerDocumento(valor, erro);
}

bool JsonBool(const ValorJson& objeto, std::string_view chave, bool padrao) {
    const ValorJson* const valor = Procurar(objeto, chave);
    if (valor == nullptr) return padrao;
    if (valor->tipo == TipoJson::kBooleano) return valor->booleano;
    return valor->tipo == TipoJson::kNumero ? valor->inteiro != 0 : padrao;
}

std::string JsonTexto(const ValorJson& objeto, std::string_view chave, std::string_view padrao) {
    const ValorJson* const valor = Procurar(objeto, chave);
    return valor != nullptr && valor->tipo == TipoJson::kTexto ? valor->texto : std::string(padrao);
}

}  // namespace zu::launcher

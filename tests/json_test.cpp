#include "core/json.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <utility>

#include "core/formato.h"

namespace zu::launcher {
namespace {

using namespace std::string_view_literals;

constexpr std::int64_t kMenor = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMaior = std::numeric_limits<std::int64_t>::max();
constexpr double kInfinito = std::numeric_limits<double>::infinity();

std::string Repetir(std::size_t vezes, std::string_view texto) {
    std::string tudo;
    while (vezes-- > 0)
        tudo += texto;
    return tudo;
}

// The tree in one line: texts raw between angle brackets, numbers by their integer.
std::string Descrever(const ValorJson& valor) {
    std::string s;
    switch (valor.tipo) {
        case TipoJson::kNulo:
            return "nulo";
        case TipoJson::kBooleano:
            return valor.booleano ? "sim" : "não";
        case TipoJson::kNumero:
            return std::to_string(valor.inteiro);
        case TipoJson::kTexto:
            return "<" + valor.texto + ">";
        case TipoJson::kLista:
            for (const ValorJson& elemento : valor.elementos)
                s += Descrever(elemento) + " ";
            return "[" + s + "]";
        case TipoJson::kObjeto:
            for (const MembroJson& membro : valor.membros)
                s += membro.chave + "=" + Descrever(membro.valor) + " ";
            return "{" + s + "}";
    }
    return "?";
}

ValorJson Lido(std::string_view documento) {
    ValorJson valor;
    std::string erro;
    EXPECT_TRUE(LerJson(documento, valor, erro) && erro.empty()) << documento << ": " << erro;
    return valor;
}

// "ok", or the error without its usual first words: "POSITION: message", and "sobra POSITION" for what is left over.
std::string Resultado(std::string_view documento) {
    constexpr std::string_view kPerto = "JSON inválido perto do caractere ";
    constexpr std::string_view kSobra = "JSON inválido: sobra texto no caractere ";
    ValorJson valor;
    std::string erro;
    if (LerJson(documento, valor, erro)) return "ok";
    if (erro.starts_with(kPerto)) return erro.substr(kPerto.size());
    return erro.starts_with(kSobra) ? "sobra " + erro.substr(kSobra.size()) : erro;
}

constexpr std::string_view kRelatorio =
    "\xEF\xBB\xBF{\"d3d12\": true, \"vulkan\": 0, \"placa\": \"GeForce \\u00e7\\uD83D\\uDE00\", \"nada\": null,\r\n"
    "\t\"itens\": [1, -2.5e3, [], {}, {\"a\": [false]}], \"placa\": \"outra\", \"\": \"vazia\"}";

// The second column is the tree. Nothing of the value before may be left in it.
TEST(Json, DocumentosInteiros) {
    const std::pair<std::string_view, std::string_view> casos[] = {
        {kRelatorio,
         "{d3d12=sim vulkan=0 placa=<GeForce ç\xF0\x9F\x98\x80> nada=nulo "
         "itens=[1 -2500 [] {} {a=[não ] } ] placa=<outra> =<vazia> }"},
        {" \t\r\n[ \t\r\n1 \t\r\n, \t\r\n{ \t\r\n\"a\" \t\r\n: \t\r\n1 \t\r\n} \t\r\n] \t\r\n", "[1 {a=1 } ]"},
        {"[[ ],{ },[[]],\"\",\" \"]", "[[] {} [[] ] <> < > ]"},
        {"false", "não"},
        {"null", "nulo"},
        {"\"a/*b*/c//\"", "<a/*b*/c//>"},
        {"-0.1", "0"},
        {"\xEF\xBB\xBF{}", "{}"},
    };
    ValorJson valor = Lido(R"({"a": [true, "x"]})");
    for (const auto& [documento, arvore] : casos) {
        std::string erro;
        ASSERT_TRUE(LerJson(documento, valor, erro)) << documento << erro;
        EXPECT_EQ(Descrever(valor), arvore) << documento;
    }
    // What is complete stays when the rest fails.
    const std::pair<std::string_view, std::string_view> partes[] = {{R"({"a": [1, 2, x], "b": 1})", "{}"},
                                                                    {R"([1, {"a": 2}, {"b": 3])", "[1 {a=2 } ]"},
                                                                    {"true x", "sim"},
                                                                    {"", "nulo"}};
    for (const auto& [documento, arvore] : partes) {
        std::string erro;
        EXPECT_FALSE(LerJson(documento, valor, erro));
        EXPECT_EQ(Descrever(valor), arvore) << documento;
    }
}

// By what is said of them: a document for each place where that can be found.
TEST(Json, RecusadosNoLugarDaFalta) {
    const std::pair<std::string_view, std::vector<std::string_view>> casos[] = {
        {"0: fim inesperado", {"", "\xEF\xBB\xBF"}},
        {"1: fim inesperado", {"[", " "}},
        {"4: fim inesperado", {" \t\r\n", "[1, ", "{\"\":"}},
        {"0: valor inesperado", {"]", "nul", "tru", "fals", "Null", "*", "\xEF\xBB{}", "\xEF\xBB\xBF\xEF\xBB\xBF{}"}},
        {"1: valor inesperado",
         {"[,1]", "[+1]", "[.5]", "[NaN]", "['a']", "[\f]", "[\v]", "[\xC2\xA0]", "[\0]"sv, "[}"}},
        {"3: valor inesperado", {"[1,]", "[1,,2]"}},
        {"5: valor inesperado", {R"({"a":})", R"({"a":/**/1})"}},
        {"1: esperava '\"'", {"{", "{1:1}", "{a:1}", "{,", "{'a':1}", "{]"}},
        {"7: esperava '\"'", {R"({"a":1,})", R"({"a":1,)", R"({"a":1,,"b":2})"}},
        {"4: esperava ':'", {R"({"a")", R"({"a"})", R"({"a","b"})", R"({"a"1})"}},
        {"2: esperava ',' ou ']'", {"[1", "[0x1]", "[1:2]", "[1}", "[3[4]]", "[1a]"}},
        {"6: esperava ',' ou '}'", {R"({"a":1)", R"({"a":1])", R"({"a":1:2})", R"({"a":1"b":2})"}},
        {"sobra 2", {"{}}", "[][]", "{}//", "\"\"x", "[]\xC2\xA0", "12\0"sv}},
        {"sobra 5", {"true x", "falsex"}},
        {"1: texto sem fim", {"\""}},
        {"2: texto sem fim", {"\"a", "\"\\"}},
        {"2: caractere de controle no texto", {"\"\x1F\"", "\"\n\"", "\"\0\""sv}},
        {"3: escape inválido", {R"("\a")", R"("\U0041")", R"("\x41")", "\"\\\n\"", "\"\\\0\""sv, "\"\\\xE5\""}},
        {"3: \\u incompleto", {R"("\u)", R"("\u12")", "\"\\u123"}},
        {"4: \\u inválido", {R"("\u+123")", R"("\u 123")", R"("\ug000")"}},
        {"7: \\u inválido", {R"("\u123g")", R"("\u00A")"sv.substr(0, 8)}},
        {"9: \\u incompleto", {R"("\uD800\u")", R"("\uD834\uDd")"}},
        {"13: \\u inválido", {R"("\uD800\u123x")"}},
        {"1: número inteiro grande demais", {"-", "-foo", "- 1"}},
        {"3: número inteiro grande demais", {"--1", "-+1"}},
        {"19: número inteiro grande demais", {"9223372036854775808"}},
        {"20: número inteiro grande demais", {"-9223372036854775809"}},
    };
    for (const auto& [resultado, documentos] : casos) {
        for (const std::string_view documento : documentos)
            EXPECT_EQ(Resultado(documento), resultado) << documento;
    }
}

// The game was stopped while it wrote: every cut is refused, at a place inside what is there.
TEST(Json, CortadoEmQualquerByte) {
    for (std::size_t tamanho = 0; tamanho < kRelatorio.size(); ++tamanho) {
        const std::string resultado = Resultado(kRelatorio.substr(0, tamanho));
        ASSERT_NE(resultado, "ok") << tamanho;
        ASSERT_LE(std::stoul(resultado), tamanho) << resultado;
    }
}

// Both fields of each number, under a locale with a decimal comma where the system has one. What the conversion leaves
// over is ignored.
TEST(Json, NumerosPelosDoisCampos) {
    const std::string noves = Repetir(400, "9");
    const std::string zeros = "0." + Repetir(400, "0");
    const struct {
        std::string documento;
        double numero;
        std::int64_t inteiro;
    } casos[] = {
        {"-0", -0.0, 0},
        {"007", 7, 7},
        {"1-2", 1, 1},
        {"1.2.3", 1.2, 1},
        {"9007199254740993", 9007199254740992.0, 9007199254740993},
        {"9223372036854775807", 9223372036854775808.0, kMaior},
        {"-9223372036854775808", -9223372036854775808.0, kMenor},
        {"-2.99", -2.99, -2},
        {"1E+3", 1000, 1000},
        {"25e-1", 2.5, 2},
        {"1e", 1, 1},
        {"-.5", -0.5, 0},
        {"-e5", 0, 0},
        {"9.223372036854775e18", 9.223372036854775e18, 9223372036854774784},
        {"-9223372036854775808.0", -9223372036854775808.0, kMenor},
        {"9223372036854775808.0", 9223372036854775808.0, kMenor},
        // halfway between two doubles, and the least bit above it
        {"9007199254740993.0", 9007199254740992.0, 9007199254740992},
        {"9007199254740993.00000000000000000000000000000000000000000001", 9007199254740994.0, 9007199254740994},
        {"4.9e-324", std::numeric_limits<double>::denorm_min(), 0},
        // outside of what a double holds, which is told from what is too close to zero
        {"1e400", kInfinito, kMenor},
        {"-1e400", -kInfinito, kMenor},
        {"-1e-400", -0.0, 0},
        {"1e99999999999999999999", kInfinito, kMenor},
        {"1e-99999999999999999999", 0, 0},
        {noves + "e-1", kInfinito, kMenor},
        {noves + ".5", kInfinito, kMenor},
        {zeros + "1", 0, 0},
        {zeros + "1e10", 0, 0},
        {zeros + "1e+900", kInfinito, kMenor},
        {"1e400.5e-900", kInfinito, kMenor},
    };
    for (const char* localidade : {"Portuguese_Brazil", "pt_BR.UTF-8"})
        std::setlocale(LC_NUMERIC, localidade);
    for (const auto& [documento, numero, inteiro] : casos) {
        const ValorJson valor = Lido(documento);
        EXPECT_EQ(valor.tipo, TipoJson::kNumero) << documento;
        EXPECT_EQ(valor.numero, numero) << documento;
        EXPECT_EQ(std::signbit(valor.numero), std::signbit(numero)) << documento;
        EXPECT_EQ(valor.inteiro, inteiro) << documento;
    }
    std::setlocale(LC_NUMERIC, "C");
}

TEST(Json, TextosComEscapes) {
    const std::pair<std::string_view, std::string_view> casos[] = {
        {R"("placa \"X\" \\ \/")", "placa \"X\" \\ /"},
        {R"("\b\f\n\r\t")", "\b\f\n\r\t"},
        {R"("a\u0000b\\u0000")", "a\0b\\u0000"sv},
        {R"("\u007f\u0080\u07FF\u0800\uffff")", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        {R"("\uABCD\uabcd\uEF09\uef90")", "\xEA\xAF\x8D\xEA\xAF\x8D\xEE\xBC\x89\xEE\xBE\x90"},
        {R"("\uD800\uDC00\uDBFF\uDFFF")", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        // lone halves, a low one before a high one too, and pairs whose second half is none
        {R"("\uD7FF\uDC00\uD800x\uDFFF\u0041")",
         "\xED\x9F\xBF\xED\xB0\x80\xED\xA0\x80x\xED\xBF\xBF"
         "A"},
        {R"("\uDC00\uDC01")", "\xED\xB0\x80\xED\xB0\x81"},
        {R"("\uD800\n\uD800")", "\xED\xA0\x80\n\xED\xA0\x80"},
        {R"("\uD800\u0000")", "\xE2\x90\x80"},
        {R"("\uD800\uD800\uDC00")", "\xEF\xB0\x80\xED\xB0\x80"},
        {R"("\uDBFF\uFFFF")", "\xF4\x91\xBF\xBF"},
        {"\"\xFF\xC0\x80\x7F\"", "\xFF\xC0\x80\x7F"},
    };
    for (const auto& [documento, texto] : casos)
        EXPECT_EQ(Descrever(Lido(documento)), Formatar("<{}>", texto)) << documento;
}

TEST(Json, BuscasSoNoPrimeiroMembroENoTipoCerto) {
    const ValorJson objeto = Lido(
        R"({"sim": true, "não": false, "zero": 0, "meio": 0.5, "cem": 1e2, "texto": "t", "nulo": null, "lista": [1],
            "dois": false, "dois": true, "troca": 1, "troca": "t", "a\u0000b": "c", "vazio": ""})");
    const std::pair<std::string_view, int> booleanos[] = {
        {"sim", 1},    {"não", 0},  {"zero", 0}, {"meio", 0}, {"cem", 1},   {"texto", -1}, {"nulo", -1},
        {"lista", -1}, {"dois", 0}, {"SIM", -1}, {"si", -1},  {"sim ", -1}, {"", -1},      {"troca", 1},
    };
    for (const auto& [chave, esperado] : booleanos) {
        EXPECT_EQ(JsonBool(objeto, chave, true), esperado != 0) << chave;
        EXPECT_EQ(JsonBool(objeto, chave, false), esperado == 1) << chave;
    }
    const std::pair<std::string_view, std::string_view> textos[] = {
        {"texto", "t"}, {"vazio", ""}, {"a\0b"sv, "c"}, {"a", "padrão"}, {"sim", "padrão"}, {"troca", "padrão"}};
    for (const auto& [chave, esperado] : textos)
        EXPECT_EQ(JsonTexto(objeto, chave, "padrão"), esperado) << chave;
    EXPECT_TRUE(JsonBool(Lido("[true]"), "sim", true));
    EXPECT_EQ(JsonTexto(Lido("\"sim\""), "sim"), "");
}

TEST(Json, ProfundidadeTemLimite) {
    const auto listas = [](std::size_t quantas, std::string_view meio) {
        return Repetir(quantas, "[") + std::string(meio) + Repetir(quantas, "]");
    };
    const auto objetos = [](std::size_t quantos, std::string_view meio) {
        return Repetir(quantos, R"({"a":)") + std::string(meio) + Repetir(quantos, "}");
    };
    const std::pair<std::string, std::string_view> casos[] = {
        {listas(64, "1"), "ok"},
        {listas(65, ""), "ok"},
        {listas(65, "  x"), "67: aninhamento demais"},
        {listas(66, ""), "65: aninhamento demais"},
        {objetos(64, "{}"), "ok"},
        {objetos(65, "1"), "325: aninhamento demais"},
        {Formatar("[{},{}]", listas(63, "1"), listas(63, "2")), "ok"},
        {Repetir(100000, "[{\"\":"), "161: aninhamento demais"},
    };
    for (const auto& [documento, resultado] : casos)
        EXPECT_EQ(Resultado(documento), resultado) << documento.substr(0, 80) << " (" << documento.size() << ")";
}

// In time and memory by the size of the document, whatever it repeats.
TEST(Json, QuatroMegabytes) {
    constexpr std::size_t kTamanho = 4'000'000;
    const std::string letras(kTamanho, 'a');
    EXPECT_TRUE(Lido('"' + letras + '"').texto == letras);
    EXPECT_EQ(Resultado('"' + letras), "4000001: texto sem fim");
    EXPECT_EQ(Resultado(std::string(kTamanho, ' ')), "4000000: fim inesperado");
    EXPECT_EQ(Resultado(std::string(kTamanho, '[')), "65: aninhamento demais");
    EXPECT_EQ(Resultado(std::string(kTamanho, '1')), "4000000: número inteiro grande demais");
    EXPECT_EQ(Lido(Formatar("[{}0]", Repetir(kTamanho / 2, "0,"))).elementos.size(), kTamanho / 2 + 1);
    EXPECT_EQ(Lido(Formatar("\"{}\"", Repetir(kTamanho / 6, "\\u00e7"))).texto.size(), kTamanho / 6 * 2);
}

}  // namespace
}  // namespace zu::launcher

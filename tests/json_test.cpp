#include "core/json.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <utility>

#include "tests/suporte/json_escrito.h"

namespace zu::launcher {
namespace {

using namespace std::string_view_literals;

constexpr double kInfinito = std::numeric_limits<double>::infinity();

std::string Repetir(std::size_t vezes, std::string_view texto) {
    std::string tudo;
    while (vezes-- > 0)
        tudo += texto;
    return tudo;
}

ValorJson Lido(std::string_view documento) {
    ValorJson valor;
    std::string erro;
    EXPECT_TRUE(LerJson(documento, valor, erro) && erro.empty()) << documento << ": " << erro;
    return valor;
}

// "ok", or the error behind its first words: "POSITION: message", and "sobra POSITION" for what is left over.
std::string Resultado(std::string_view documento) {
    constexpr std::string_view kPerto = "JSON inválido perto do caractere ";
    constexpr std::string_view kSobra = "JSON inválido: sobra texto no caractere ";
    ValorJson valor;
    std::string erro;
    if (LerJson(documento, valor, erro)) return "ok";
    if (erro.starts_with(kPerto)) return erro.substr(kPerto.size());
    return erro.starts_with(kSobra) ? "sobra " + erro.substr(kSobra.size()) : erro;
}

// The second column is the tree; of a document that is refused, the part that was complete. Nothing of the value before
// may be left in it.
TEST(Json, DocumentosInteirosEOQueFicaDosRecusados) {
    const std::pair<std::string_view, std::string_view> casos[] = {
        {"\xEF\xBB\xBF{\"d3d12\": true, \"vulkan\": 0, \"placa\": \"GeForce \\u00e7\\uD83D\\uDE00\", \"nada\": "
         "null,\r\n"
         "\t\"itens\": [1, -2.5e3, [], {}, {\"a\": [false]}], \"placa\": \"outra\", \"\": \"/*b*/c//\"}",
         "{\"d3d12\":true,\"vulkan\":0,\"placa\":\"GeForce ç\xF0\x9F\x98\x80\",\"nada\":null,"
         "\"itens\":[1,-2500,[],{},{\"a\":[false]}],\"placa\":\"outra\",\"\":\"/*b*/c//\"}"},
        {" \t\r\n[ \t\r\n1 \t\r\n, \t\r\n{ \t\r\n\"a\" \t\r\n: \t\r\n1 \t\r\n} \t\r\n] \t\r\n", R"([1,{"a":1}])"},
        {"[[ ],{ },\"\",\" \"]", R"([[],{},""," "])"},
        {"false", "false"},
        {R"({"a": [1, 2, x], "b": 1})", "{}"},
        {R"([1, {"a": 2}, {"b": 3])", R"([1,{"a":2}])"},
        {"true x", "true"},
        {"", "null"}};
    ValorJson valor = Lido(R"({"a": [true, "x"]})");
    for (const auto& [documento, arvore] : casos) {
        std::string erro;
        LerJson(documento, valor, erro);
        EXPECT_EQ(teste::Escrito(valor), arvore) << documento;
    }
}

// By what is said of them: a document for each place where that can be found, or where the game may have been stopped
// while it wrote.
TEST(Json, RecusadosNoLugarDaFalta) {
    const std::pair<std::string_view, std::vector<std::string_view>> casos[] = {
        {"0: fim inesperado", {"", "\xEF\xBB\xBF"}},
        {"1: fim inesperado", {"[", " "}},
        {"4: fim inesperado", {"[1, ", "{\"\":"}},
        {"0: valor inesperado", {"]", "nul", "tru", "fals", "Null", "\xEF\xBB{}", "\xEF\xBB\xBF\xEF\xBB\xBF{}"}},
        {"1: valor inesperado", {"[,1]", "[+1]", "[.5]", "[NaN]", "['a']", "[\v]", "[\xC2\xA0]", "[\0]"sv, "[}"}},
        {"3: valor inesperado", {"[1,]", "[1,,2]"}},
        {"1: esperava '\"'", {"{", "{1:1}", "{a:1}", "{,"}},
        {"7: esperava '\"'", {R"({"a":1,})", R"({"a":1,)"}},
        {"4: esperava ':'", {R"({"a")", R"({"a"})", R"({"a"1})"}},
        {"2: esperava ',' ou ']'", {"[1", "[0x1]", "[1:2]", "[1}", "[3[4]]"}},
        {"6: esperava ',' ou '}'", {R"({"a":1)", R"({"a":1])", R"({"a":1"b":2})"}},
        {"sobra 2", {"{}}", "{}//", "\"\"x", "[]\xC2\xA0", "12\0"sv}},
        {"2: texto sem fim", {"\"a", "\"\\"}},
        {"2: caractere de controle no texto", {"\"\x1F\"", "\"\n\"", "\"\0\""sv, "\"\x1Fghijklmnopqrstuv\""}},
        {"3: escape inválido", {R"("\a")", R"("\U0041")", "\"\\\0\""sv}},
        {"3: \\u incompleto", {R"("\u)", "\"\\u123"}},
        {"4: \\u inválido", {R"("\u+123")", R"("\ug000")"}},
        {"7: \\u inválido", {R"("\u123g")"}},
        {"13: \\u inválido", {R"("\uD800\u123x")"}},
        {"1: número inteiro grande demais", {"-", "- 1"}},
        {"3: número inteiro grande demais", {"--1", "-+1"}},
        {"19: número inteiro grande demais", {"9223372036854775808"}},
        {"20: número inteiro grande demais", {"-9223372036854775809"}}};
    for (const auto& [resultado, documentos] : casos) {
        for (const std::string_view documento : documentos)
            EXPECT_EQ(Resultado(documento), resultado) << documento;
    }
}

// Both fields of each number, under a locale with a decimal comma where the system has one. What the conversion leaves
// over is ignored.
TEST(Json, NumerosPelosDoisCampos) {
    const std::string noves = Repetir(400, "9");
    const std::string zeros = "0." + Repetir(400, "0");
    const std::tuple<std::string, double, std::int64_t> casos[] = {
        {"-0", -0.0, 0},
        {"1-2", 1, 1},
        {"1.2.3", 1.2, 1},
        {"9007199254740993", 9007199254740992.0, 9007199254740993},
        {"9223372036854775807", 9223372036854775808.0, INT64_MAX},
        {"-2.99", -2.99, -2},
        {"1E+3", 1000, 1000},
        {"-e5", 0, 0},
        {"9.223372036854775e18", 9.223372036854775e18, 9223372036854774784},
        {"9223372036854775808.0", 9223372036854775808.0, INT64_MIN},
        // the least bit above halfway between two doubles
        {"9007199254740993.00000000000000000000000000000000000000000001", 9007199254740994.0, 9007199254740994},
        // outside of what a double holds, which is told from what is too close to zero
        {"-1e400", -kInfinito, INT64_MIN},
        {"-1e-400", -0.0, 0},
        {"1e99999999999999999999", kInfinito, INT64_MIN},
        {"1e-99999999999999999999", 0, 0},
        {noves + "e-1", kInfinito, INT64_MIN},
        {zeros + "1e10", 0, 0},
        {zeros + "1e+900", kInfinito, INT64_MIN},
        {"1e400.5e-900", kInfinito, INT64_MIN}};
    for (const char* localidade : {"Portuguese_Brazil", "pt_BR.UTF-8"})
        std::setlocale(LC_NUMERIC, localidade);
    for (const auto& [documento, numero, inteiro] : casos) {
        const ValorJson valor = Lido(documento);
        EXPECT_EQ(valor.numero, numero) << documento;
        EXPECT_EQ(std::signbit(valor.numero), std::signbit(numero)) << documento;
        EXPECT_EQ(valor.inteiro, inteiro) << documento;
    }
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_FALSE(JsonBool(Lido(R"({"meio": 0.5})"), "meio", true)) << "of a number its integer counts";
    EXPECT_EQ(JsonTexto(Lido(R"({"um": 1})"), "um", "padrão"), "padrão");
}

TEST(Json, TextosComEscapes) {
    const std::pair<std::string_view, std::string_view> casos[] = {
        {R"("placa \"X\" \\ \/\b\f\n\r\t")", "placa \"X\" \\ /\b\f\n\r\t"},
        {R"("a\u0000b\\u0000")", "a\0b\\u0000"sv},
        {R"("\u007f\u0080\u07FF\u0800\uffff")", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        {R"("\uABCD\uef90")", "\xEA\xAF\x8D\xEE\xBE\x90"},
        {R"("\uD800\uDC00\uDBFF\uDFFF")", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        // lone halves, a low one before a high one too, and pairs whose second half is none
        {R"("\uD7FF\uDC00\uD800x\uDFFF\n")", "\xED\x9F\xBF\xED\xB0\x80\xED\xA0\x80x\xED\xBF\xBF\n"},
        {R"("\uDC00\uDC01")", "\xED\xB0\x80\xED\xB0\x81"},
        {R"("\uD800\n\uD800")", "\xED\xA0\x80\n\xED\xA0\x80"},
        {R"("\uD800\u0000")", "\xE2\x90\x80"},
        {"\"\xFF\xC0\x80\x7F\"", "\xFF\xC0\x80\x7F"},
        {R"("0123456789ABCDEF\n0123456789ABCDEF")", "0123456789ABCDEF\n0123456789ABCDEF"}};
    for (const auto& [documento, texto] : casos)
        EXPECT_EQ(Lido(documento).texto, texto) << documento;
}

TEST(Json, ProfundidadeTemLimite) {
    const auto aninhado = [](std::size_t vezes, std::string_view abre, std::string_view meio, std::string_view fecha) {
        return Repetir(vezes, abre) + std::string(meio) + Repetir(vezes, fecha);
    };
    const std::string cheia = aninhado(63, "[", "1", "]");
    const std::pair<std::string, std::string_view> casos[] = {
        {aninhado(65, "[", "", "]"), "ok"},         {aninhado(66, "[", "", "]"), "65: aninhamento demais"},
        {aninhado(64, "{\"a\":", "{}", "}"), "ok"}, {aninhado(65, "{\"a\":", "1", "}"), "325: aninhamento demais"},
        {Formatar("[{},{}]", cheia, cheia), "ok"},  {Repetir(100000, "[{\"\":"), "161: aninhamento demais"}};
    for (const auto& [documento, resultado] : casos)
        EXPECT_EQ(Resultado(documento), resultado) << documento.substr(0, 80) << " (" << documento.size() << ")";
}

// In time and memory by the size of the document, whatever it repeats.
TEST(Json, QuatroMegabytes) {
    constexpr std::size_t kTamanho = 4'000'000;
    EXPECT_EQ(Resultado('"' + std::string(kTamanho, 'a')), "4000001: texto sem fim");
    EXPECT_EQ(Resultado(std::string(kTamanho, ' ')), "4000000: fim inesperado");
    EXPECT_EQ(Resultado(std::string(kTamanho, '1')), "4000000: número inteiro grande demais");
    EXPECT_EQ(Lido(Formatar("[{}0]", Repetir(kTamanho / 2, "0,"))).elementos.size(), kTamanho / 2 + 1);
    EXPECT_EQ(Lido(Formatar("\"{}\"", Repetir(kTamanho / 6, "\\u00e7"))).texto.size(), kTamanho / 6 * 2);
}

}  // namespace
}  // namespace zu::launcher

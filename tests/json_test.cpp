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
constexpr std::size_t kCemMegas = 100 * 1000 * 1000;

std::string Repetir(std::size_t vezes, std::string_view texto) {
    std::string tudo;
    tudo.reserve(vezes * texto.size());
    while (vezes-- > 0)
        tudo += texto;
    return tudo;
}

// "ok", or the error without its usual first words: "POSITION: message", and "sobra POSITION" for what is left over.
std::string Resultado(std::string_view documento) {
    constexpr std::string_view kPerto = "JSON inválido perto do caractere ";
    constexpr std::string_view kSobra = "JSON inválido: sobra texto no caractere ";
    ValorJson valor;
    std::string erro;
    if (LerJson(documento, valor, erro)) return "ok";
    if (erro.starts_with(kPerto)) return erro.substr(kPerto.size());
    if (erro.starts_with(kSobra)) return "sobra " + erro.substr(kSobra.size());
    return erro;
}

ValorJson Lido(std::string_view documento) {
    ValorJson valor;
    std::string erro;
    EXPECT_TRUE(LerJson(documento, valor, erro)) << documento << ": " << erro;
    return valor;
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

struct Caso {
    const char* nome;
    std::string_view documento;
    std::string_view resultado;
};

void Conferir(std::span<const Caso> casos) {
    for (const auto& [nome, documento, resultado] : casos)
        EXPECT_EQ(Resultado(documento), resultado) << nome << ": " << documento;
}

// Everything that a conforming reader has to accept.
TEST(Json, ConformidadeAceita) {
    const Caso casos[] = {
        {"array_arraysWithSpaces", "[[]   ]", "ok"},
        {"array_empty_string", R"([""])", "ok"},
        {"array_empty", "[]", "ok"},
        {"array_ending_with_newline", "[\"a\"]\n", "ok"},
        {"array_false", "[false]", "ok"},
        {"array_heterogeneous", R"([null, 1, "1", {}])", "ok"},
        {"array_null", "[null]", "ok"},
        {"array_with_1_and_newline", "[1\n]", "ok"},
        {"array_with_leading_space", " [1]", "ok"},
        {"array_with_several_null", "[1,null,null,null,2]", "ok"},
        {"array_with_trailing_space", "[2] ", "ok"},
        {"number", "[123e65]", "ok"},
        {"number_0e+1", "[0e+1]", "ok"},
        {"number_0e1", "[0e1]", "ok"},
        {"number_after_space", "[ 4]", "ok"},
        {"number_double_close_to_zero",
         "[-0.000000000000000000000000000000000000000000000000000000000000000000000000000001]", "ok"},
        {"number_int_with_exp", "[20e1]", "ok"},
        {"number_minus_zero", "[-0]", "ok"},
        {"number_negative_int", "[-123]", "ok"},
        {"number_negative_one", "[-1]", "ok"},
        {"number_real_capital_e", "[1E22]", "ok"},
        {"number_real_capital_e_neg_exp", "[1E-2]", "ok"},
        {"number_real_capital_e_pos_exp", "[1E+2]", "ok"},
        {"number_real_exponent", "[123e45]", "ok"},
        {"number_real_fraction_exponent", "[123.456e78]", "ok"},
        {"number_real_neg_exp", "[1e-2]", "ok"},
        {"number_real_pos_exponent", "[1e+2]", "ok"},
        {"number_simple_int", "[123]", "ok"},
        {"number_simple_real", "[123.456789]", "ok"},
        {"object", R"({"asd":"sdf", "dfg":"fgh"})", "ok"},
        {"object_basic", R"({"asd":"sdf"})", "ok"},
        {"object_duplicated_key", R"({"a":"b","a":"c"})", "ok"},
        {"object_duplicated_key_and_value", R"({"a":"b","a":"b"})", "ok"},
        {"object_empty", "{}", "ok"},
        {"object_empty_key", R"({"":0})", "ok"},
        {"object_escaped_null_in_key", R"({"foo\u0000bar": 42})", "ok"},
        {"object_extreme_numbers", R"({ "min": -1.0e+28, "max": 1.0e+28 })", "ok"},
        {"object_long_strings", R"({"x":[{"id": "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"}], "id": "xxxxxxxx"})",
         "ok"},
        {"object_simple", R"({"a":[]})", "ok"},
        {"object_string_unicode", R"({"title":"\u041f\u043e\u043b\u0442\u043e\u0440\u0430"})", "ok"},
        {"object_with_newlines", "{\n\"a\": \"b\"\n}", "ok"},
        {"string_1_2_3_bytes_UTF-8", R"(["\u0060\u012a\u12AB"])", "ok"},
        {"string_accepted_surrogate_pair", R"(["\uD801\udc37"])", "ok"},
        {"string_accepted_surrogate_pairs", R"(["\ud83d\ude39\ud83d\udc8d"])", "ok"},
        {"string_allowed_escapes", R"(["\"\\\/\b\f\n\r\t"])", "ok"},
        {"string_backslash_and_u_escaped_zero", R"(["\\u0000"])", "ok"},
        {"string_backslash_doublequotes", R"(["\""])", "ok"},
        {"string_comments", R"(["a/*b*/c/*d//e"])", "ok"},
        {"string_double_escape_a", R"(["\\a"])", "ok"},
        {"string_double_escape_n", R"(["\\n"])", "ok"},
        {"string_escaped_control_character", R"(["\u0012"])", "ok"},
        {"string_escaped_noncharacter", R"(["\uFFFF"])", "ok"},
        {"string_in_array", R"(["asd"])", "ok"},
        {"string_in_array_with_leading_space", R"([ "asd"])", "ok"},
        {"string_last_surrogates_1_and_2", R"(["\uDBFF\uDFFF"])", "ok"},
        {"string_nbsp_uescaped", R"(["new\u00A0line"])", "ok"},
        {"string_nonCharacterInUTF-8_U+10FFFF", "[\"\xF4\x8F\xBF\xBF\"]", "ok"},
        {"string_nonCharacterInUTF-8_U+FFFF", "[\"\xEF\xBF\xBF\"]", "ok"},
        {"string_null_escape", R"(["\u0000"])", "ok"},
        {"string_one-byte-utf-8", R"(["\u002c"])", "ok"},
        {"string_pi", "[\"\xCF\x80\"]", "ok"},
        {"string_reservedCharacterInUTF-8_U+1BFFF", "[\"\xF0\x9B\xBF\xBF\"]", "ok"},
        {"string_simple_ascii", R"(["asd "])", "ok"},
        {"string_space", "\" \"", "ok"},
        {"string_surrogates_U+1D11E", R"(["\uD834\uDd1e"])", "ok"},
        {"string_three-byte-utf-8", R"(["\u0821"])", "ok"},
        {"string_two-byte-utf-8", R"(["\u0123"])", "ok"},
        {"string_u+2028_line_sep", "[\"\xE2\x80\xA8\"]", "ok"},
        {"string_u+2029_par_sep", "[\"\xE2\x80\xA9\"]", "ok"},
        {"string_uEscape", R"(["\u0061\u30af\u30EA\u30b9"])", "ok"},
        {"string_unescaped_char_delete", "[\"\x7F\"]", "ok"},
        {"string_unicode", R"(["\uA66D"])", "ok"},
        {"string_unicodeEscapedBackslash", R"(["\u005C"])", "ok"},
        {"string_unicode_2", "[\"\xE2\x8D\x82\xE3\x88\xB4\xE2\x8D\x82\"]", "ok"},
        {"string_unicode_U+1FFFE_nonchar", R"(["\uD83F\uDFFE"])", "ok"},
        {"string_unicode_U+2064_invisible_plus", R"(["\u2064"])", "ok"},
        {"string_unicode_U+FDD0_nonchar", R"(["\uFDD0"])", "ok"},
        {"string_unicode_escaped_double_quote", R"(["\u0022"])", "ok"},
        {"string_utf8", "[\"\xE2\x82\xAC\xF0\x9D\x84\x9E\"]", "ok"},
        {"string_with_del_character",
         "[\"a\x7F"
         "a\"]",
         "ok"},
        {"structure_lonely_false", "false", "ok"},
        {"structure_lonely_int", "42", "ok"},
        {"structure_lonely_negative_real", "-0.1", "ok"},
        {"structure_lonely_null", "null", "ok"},
        {"structure_lonely_string", "\"asd\"", "ok"},
        {"structure_lonely_true", "true", "ok"},
        {"structure_string_empty", "\"\"", "ok"},
        {"structure_trailing_newline", "[\"a\"]\n", "ok"},
        {"structure_true_in_array", "[true]", "ok"},
        {"structure_whitespace_array", " [] ", "ok"},
        {"structure_all_whitespace_bytes", " \t\r\n[ \t\r\n1 \t\r\n, \t\r\n{ \t\r\n\"a\" \t\r\n: \t\r\n1 \t\r\n} ] \n",
         "ok"},
    };
    Conferir(casos);
}

// Everything that a conforming reader has to refuse, but for the numbers, which this one takes more loosely.
TEST(Json, ConformidadeRecusa) {
    const Caso casos[] = {
        {"array_1_true_without_comma", "[1 true]", "3: esperava ',' ou ']'"},
        {"array_a_invalid_utf8", "[a\xE5]", "1: valor inesperado"},
        {"array_colon_instead_of_comma", R"(["": 1])", "3: esperava ',' ou ']'"},
        {"array_comma_after_close", R"([""],)", "sobra 4"},
        {"array_comma_and_number", "[,1]", "1: valor inesperado"},
        {"array_double_comma", "[1,,2]", "3: valor inesperado"},
        {"array_double_extra_comma", R"(["x",,])", "5: valor inesperado"},
        {"array_extra_close", R"(["x"]])", "sobra 5"},
        {"array_extra_comma", R"(["",])", "4: valor inesperado"},
        {"array_incomplete", R"(["x")", "4: esperava ',' ou ']'"},
        {"array_incomplete_invalid_value", "[x", "1: valor inesperado"},
        {"array_inner_array_no_comma", "[3[4]]", "2: esperava ',' ou ']'"},
        {"array_invalid_utf8", "[\xFF]", "1: valor inesperado"},
        {"array_items_separated_by_semicolon", "[1:2]", "2: esperava ',' ou ']'"},
        {"array_just_comma", "[,]", "1: valor inesperado"},
        {"array_just_minus", "[-]", "2: número inteiro grande demais"},
        {"array_missing_value", R"([   , ""])", "4: valor inesperado"},
        {"array_newlines_unclosed", "[\"a\",\n4\n,1,", "11: fim inesperado"},
        {"array_number_and_comma", "[1,]", "3: valor inesperado"},
        {"array_number_and_several_commas", "[1,,]", "3: valor inesperado"},
        {"array_spaces_vertical_tab_formfeed", "[\"\va\"\\f]", "3: caractere de controle no texto"},
        {"array_star_inside", "[*]", "1: valor inesperado"},
        {"array_unclosed", "[\"\"", "3: esperava ',' ou ']'"},
        {"array_unclosed_trailing_comma", "[1,", "3: fim inesperado"},
        {"array_unclosed_with_new_lines", "[1,\n1\n,1", "8: esperava ',' ou ']'"},
        {"array_unclosed_with_object_inside", "[{}", "3: esperava ',' ou ']'"},
        {"incomplete_false", "[fals]", "1: valor inesperado"},
        {"incomplete_null", "[nul]", "1: valor inesperado"},
        {"incomplete_true", "[tru]", "1: valor inesperado"},
        {"multidigit_number_then_00", "123\0"sv, "sobra 3"},
        {"number_++", "[++1234]", "1: valor inesperado"},
        {"number_+1", "[+1]", "1: valor inesperado"},
        {"number_+Inf", "[+Inf]", "1: valor inesperado"},
        {"number_-NaN", "[-NaN]", "2: número inteiro grande demais"},
        {"number_.-1", "[.-1]", "1: valor inesperado"},
        {"number_.2e-3", "[.2e-3]", "1: valor inesperado"},
        {"number_1_000", "[1 000.0]", "3: esperava ',' ou ']'"},
        {"number_Inf", "[Inf]", "1: valor inesperado"},
        {"number_NaN", "[NaN]", "1: valor inesperado"},
        {"number_U+FF11_fullwidth_digit_one", "[\xEF\xBC\x91]", "1: valor inesperado"},
        {"number_expression", "[1*2]", "2: esperava ',' ou ']'"},
        {"number_hex_1_digit", "[0x1]", "2: esperava ',' ou ']'"},
        {"number_hex_2_digits", "[0x42]", "2: esperava ',' ou ']'"},
        {"number_infinity", "[Infinity]", "1: valor inesperado"},
        {"number_invalid_negative_real", "[-123.123foo]", "9: esperava ',' ou ']'"},
        {"number_invalid_utf8_in_bigger_int", "[123\xE5]", "4: esperava ',' ou ']'"},
        {"number_invalid_utf8_in_exponent", "[1e1\xE5]", "4: esperava ',' ou ']'"},
        {"number_invalid_utf8_in_int", "[0\xE5]", "2: esperava ',' ou ']'"},
        {"number_minus_infinity", "[-Infinity]", "2: número inteiro grande demais"},
        {"number_minus_sign_with_trailing_garbage", "[-foo]", "2: número inteiro grande demais"},
        {"number_minus_space_1", "[- 1]", "2: número inteiro grande demais"},
        {"number_neg_with_garbage_at_end", "[-1x]", "3: esperava ',' ou ']'"},
        {"number_real_garbage_after_e", "[1ea]", "3: esperava ',' ou ']'"},
        {"number_real_with_invalid_utf8_after_e", "[1e\xE5]", "3: esperava ',' ou ']'"},
        {"number_starting_with_dot", "[.123]", "1: valor inesperado"},
        {"number_with_alpha", "[1.2a-3]", "4: esperava ',' ou ']'"},
        {"number_with_alpha_char", "[1.8011670033376514H-308]", "19: esperava ',' ou ']'"},
        {"object_bad_value", R"(["x", truth])", "6: valor inesperado"},
        {"object_bracket_key", "{[: \"x\"}\n", "1: esperava '\"'"},
        {"object_comma_instead_of_colon", R"({"x", null})", "4: esperava ':'"},
        {"object_double_colon", R"({"x"::"b"})", "5: valor inesperado"},
        {"object_emoji", "{\xF0\x9F\x87\xA8\xF0\x9F\x87\xAD}", "1: esperava '\"'"},
        {"object_garbage_at_end", R"({"a":"a" 123})", "9: esperava ',' ou '}'"},
        {"object_key_with_single_quotes", "{key: 'value'}", "1: esperava '\"'"},
        {"object_missing_colon", R"({"a" b})", "5: esperava ':'"},
        {"object_missing_key", R"({:"b"})", "1: esperava '\"'"},
        {"object_missing_semicolon", R"({"a" "b"})", "5: esperava ':'"},
        {"object_missing_value", R"({"a":)", "5: fim inesperado"},
        {"object_no-colon", R"({"a")", "4: esperava ':'"},
        {"object_non_string_key", "{1:1}", "1: esperava '\"'"},
        {"object_non_string_key_huge_number", "{9999E9999:1}", "1: esperava '\"'"},
        {"object_repeated_null_null", "{null:null,null:null}", "1: esperava '\"'"},
        {"object_several_trailing_commas", R"({"id":0,,,,,})", "8: esperava '\"'"},
        {"object_single_quote", "{'a':0}", "1: esperava '\"'"},
        {"object_trailing_comma", R"({"id":0,})", "8: esperava '\"'"},
        {"object_trailing_comment", R"({"a":"b"}/**/)", "sobra 9"},
        {"object_trailing_comment_slash_open", R"({"a":"b"}//)", "sobra 9"},
        {"object_two_commas_in_a_row", R"({"a":"b",,"c":"d"})", "9: esperava '\"'"},
        {"object_unquoted_key", R"({a: "b"})", "1: esperava '\"'"},
        {"object_unterminated-value", R"({"a":"a)", "7: texto sem fim"},
        {"object_with_single_string", R"({ "foo" : "bar", "a" })", "21: esperava ':'"},
        {"object_with_trailing_garbage", R"({"a":"b"}#)", "sobra 9"},
        {"single_space", " ", "1: fim inesperado"},
        {"string_1_surrogate_then_escape", R"(["\uD800\"])", "11: texto sem fim"},
        {"string_1_surrogate_then_escape_u", R"(["\uD800\u"])", "10: \\u incompleto"},
        {"string_1_surrogate_then_escape_u1", R"(["\uD800\u1"])", "10: \\u incompleto"},
        {"string_1_surrogate_then_escape_u1x", R"(["\uD800\u1x"])", "12: \\u inválido"},
        {"string_accentuated_char_no_quotes", "[\xC3\xA9]", "1: valor inesperado"},
        {"string_backslash_00", "[\"\\\0\"]"sv, "4: escape inválido"},
        {"string_escape_x", R"(["\x00"])", "4: escape inválido"},
        {"string_escaped_backslash_bad", R"(["\\\"])", "7: texto sem fim"},
        {"string_escaped_ctrl_char_tab", "[\"\\\t\"]", "4: escape inválido"},
        {"string_escaped_emoji", "[\"\\\xF0\x9F\x8C\x80\"]", "4: escape inválido"},
        {"string_incomplete_escape", R"(["\"])", "5: texto sem fim"},
        {"string_incomplete_escaped_character", R"(["\u00A"])", "8: \\u inválido"},
        {"string_incomplete_surrogate", R"(["\uD834\uDd"])", "13: \\u inválido"},
        {"string_incomplete_surrogate_escape_invalid", R"(["\uD800\uD800\x"])", "16: escape inválido"},
        {"string_invalid-utf-8-in-escape", "[\"\\u\xE5\"]", "4: \\u incompleto"},
        {"string_invalid_backslash_esc", R"(["\a"])", "4: escape inválido"},
        {"string_invalid_unicode_escape", R"(["\uqqqq"])", "5: \\u inválido"},
        {"string_invalid_utf8_after_escape", "[\"\\\xE5\"]", "4: escape inválido"},
        {"string_leading_uescaped_thinspace", R"([\u0020"asd"])", "1: valor inesperado"},
        {"string_no_quotes_with_bad_escape", R"([\n])", "1: valor inesperado"},
        {"string_single_doublequote", "\"", "1: texto sem fim"},
        {"string_single_quote", "['single quote']", "1: valor inesperado"},
        {"string_single_string_no_double_quotes", "abc", "0: valor inesperado"},
        {"string_start_escape_unclosed", "[\"\\", "3: texto sem fim"},
        {"string_unescaped_ctrl_char", "[\"a\0a\"]"sv, "4: caractere de controle no texto"},
        {"string_unescaped_newline", "[\"new\nline\"]", "6: caractere de controle no texto"},
        {"string_unescaped_tab", "[\"\t\"]", "3: caractere de controle no texto"},
        {"string_unescaped_1F", "[\"\x1F\"]", "3: caractere de controle no texto"},
        {"string_unicode_CapitalU", R"("\UA66D")", "3: escape inválido"},
        {"string_with_trailing_garbage", R"(""x)", "sobra 2"},
        {"string_sign_in_u_escape", R"("\u+123")", "4: \\u inválido"},
        {"structure_angle_bracket_.", "<.>", "0: valor inesperado"},
        {"structure_angle_bracket_null", "[<null>]", "1: valor inesperado"},
        {"structure_array_trailing_garbage", "[1]x", "sobra 3"},
        {"structure_array_with_extra_array_close", "[1]]", "sobra 3"},
        {"structure_array_with_unclosed_string", R"(["asd])", "6: texto sem fim"},
        {"structure_ascii-unicode-identifier", "a\xC3\xA5", "0: valor inesperado"},
        {"structure_capitalized_True", "[True]", "1: valor inesperado"},
        {"structure_close_unopened_array", "1]", "sobra 1"},
        {"structure_comma_instead_of_closing_brace", R"({"x": true,)", "11: esperava '\"'"},
        {"structure_double_array", "[][]", "sobra 2"},
        {"structure_end_array", "]", "0: valor inesperado"},
        {"structure_incomplete_UTF8_BOM", "\xEF\xBB{}", "0: valor inesperado"},
        {"structure_lone-invalid-utf-8", "\xE5", "0: valor inesperado"},
        {"structure_lone-open-bracket", "[", "1: fim inesperado"},
        {"structure_no_data", "", "0: fim inesperado"},
        {"structure_null-byte-outside-string", "[\0]"sv, "1: valor inesperado"},
        {"structure_number_with_trailing_garbage", "2@", "sobra 1"},
        {"structure_object_followed_by_closing_object", "{}}", "sobra 2"},
        {"structure_object_unclosed_no_value", R"({"":)", "4: fim inesperado"},
        {"structure_object_with_comment", R"({"a":/*comment*/"b"})", "5: valor inesperado"},
        {"structure_object_with_trailing_garbage", R"({"a": true} "x")", "sobra 12"},
        {"structure_open_array_apostrophe", "['", "1: valor inesperado"},
        {"structure_open_array_comma", "[,", "1: valor inesperado"},
        {"structure_open_array_open_object", "[{", "2: esperava '\"'"},
        {"structure_open_array_open_string", "[\"a", "3: texto sem fim"},
        {"structure_open_array_string", "[\"a\"", "4: esperava ',' ou ']'"},
        {"structure_open_object", "{", "1: esperava '\"'"},
        {"structure_open_object_close_array", "{]", "1: esperava '\"'"},
        {"structure_open_object_comma", "{,", "1: esperava '\"'"},
        {"structure_open_object_open_array", "{[", "1: esperava '\"'"},
        {"structure_open_object_open_string", "{\"a", "3: texto sem fim"},
        {"structure_open_object_string_with_apostrophes", "{'a'", "1: esperava '\"'"},
        {"structure_open_open", R"(["\{["\{["\{["\{)", "4: escape inválido"},
        {"structure_single_star", "*", "0: valor inesperado"},
        {"structure_trailing_#", R"({"a":"b"}#{})", "sobra 9"},
        {"structure_uescaped_LF_before_string", R"([\u000A""])", "1: valor inesperado"},
        {"structure_unclosed_array", "[1", "2: esperava ',' ou ']'"},
        {"structure_unclosed_array_partial_null", "[ false, nul", "9: valor inesperado"},
        {"structure_unclosed_array_unfinished_false", "[ true, fals", "8: valor inesperado"},
        {"structure_unclosed_array_unfinished_true", "[ false, tru", "9: valor inesperado"},
        {"structure_unclosed_object", R"({"asd":"asd")", "12: esperava ',' ou '}'"},
        {"structure_literal_then_letter", "truex", "sobra 4"},
        {"structure_unicode-identifier", "\xC3\xA5", "0: valor inesperado"},
        {"structure_UTF8_BOM_no_data", "\xEF\xBB\xBF", "0: fim inesperado"},
        {"structure_two_BOMs", "\xEF\xBB\xBF\xEF\xBB\xBF{}", "0: valor inesperado"},
        {"structure_whitespace_formfeed", "[\f]", "1: valor inesperado"},
        {"structure_whitespace_vertical_tab", "{\v}", "1: esperava '\"'"},
        {"structure_whitespace_nbsp", "[1]\xC2\xA0", "sobra 3"},
        {"structure_whitespace_U+2060_word_joiner", "[\xE2\x81\xA0]", "1: valor inesperado"},
        {"structure_only_whitespace", " \t\r\n", "4: fim inesperado"},
    };
    Conferir(casos);
}

// Where a reader is free to choose, or where this one is laxer than the grammar on purpose.
TEST(Json, ConformidadeLivre) {
    const std::string aninhado = Repetir(500, "[") + Repetir(500, "]");
    const Caso casos[] = {
        {"i_number_double_huge_neg_exp", "[123.456e-789]", "ok"},
        {"i_number_huge_exp", "[0.4e00669999999999999999999999999999999999999999999999999999969999999006]", "ok"},
        {"i_number_neg_int_huge_exp", "[-1e+9999]", "ok"},
        {"i_number_pos_double_huge_exp", "[1.5e+9999]", "ok"},
        {"i_number_real_neg_overflow", "[-123123e100000]", "ok"},
        {"i_number_real_pos_overflow", "[123123e100000]", "ok"},
        {"i_number_real_underflow", "[123e-10000000]", "ok"},
        {"i_number_too_big_neg_int", "[-123123123123123123123123123123]", "32: número inteiro grande demais"},
        {"i_number_too_big_pos_int", "[100000000000000000000]", "22: número inteiro grande demais"},
        {"i_number_very_big_negative_int", "[-237462374673276894279832749832423479823246327846]",
         "50: número inteiro grande demais"},
        {"i_object_key_lone_2nd_surrogate", R"({"\uDFAA":0})", "ok"},
        {"i_string_1st_surrogate_but_2nd_missing", R"(["\uDADA"])", "ok"},
        {"i_string_1st_valid_surrogate_2nd_invalid", R"(["\uD888\u1234"])", "ok"},
        {"i_string_UTF-16LE_with_BOM", "\xFF\xFE[\0\"\0"sv, "0: valor inesperado"},
        {"i_string_UTF-8_invalid_sequence", "[\"\xE6\x97\xA5\xD1\x88\xFA\"]", "ok"},
        {"i_string_UTF8_surrogate_U+D800", "[\"\xED\xA0\x80\"]", "ok"},
        {"i_string_incomplete_surrogate_and_escape_valid", R"(["\uD800\n"])", "ok"},
        {"i_string_incomplete_surrogate_pair", R"(["\uDd1ea"])", "ok"},
        {"i_string_invalid_lonely_surrogate", R"(["\ud800"])", "ok"},
        {"i_string_invalid_surrogate", R"(["\ud800abc"])", "ok"},
        {"i_string_invalid_utf-8", "[\"\xFF\"]", "ok"},
        {"i_string_inverted_surrogates_U+1D11E", R"(["\uDd1e\uD834"])", "ok"},
        {"i_string_iso_latin_1", "[\"\xE9\"]", "ok"},
        {"i_string_lone_second_surrogate", R"(["\uDFAA"])", "ok"},
        {"i_string_lone_utf8_continuation_byte", "[\"\x81\"]", "ok"},
        {"i_string_not_in_unicode_range", "[\"\xF4\xBF\xBF\xBF\"]", "ok"},
        {"i_string_overlong_sequence_2_bytes", "[\"\xC0\xAF\"]", "ok"},
        {"i_string_overlong_sequence_6_bytes", "[\"\xFC\x83\xBF\xBF\xBF\xBF\"]", "ok"},
        {"i_string_truncated-utf-8", "[\"\xE0\xFF\"]", "ok"},
        {"i_string_utf16BE_no_BOM", "\0[\0\"\0"sv, "0: valor inesperado"},
        {"i_structure_500_nested_arrays", aninhado, "65: aninhamento demais"},
        {"i_structure_UTF-8_BOM_empty_object", "\xEF\xBB\xBF{}", "ok"},
        {"n_number_-01", "[-01]", "ok"},
        {"n_number_-1.0.", "[-1.0.]", "ok"},
        {"n_number_-2.", "[-2.]", "ok"},
        {"n_number_0.1.2", "[0.1.2]", "ok"},
        {"n_number_0.3e", "[0.3e]", "ok"},
        {"n_number_0.3e+", "[0.3e+]", "ok"},
        {"n_number_0.e1", "[0.e1]", "ok"},
        {"n_number_0_capital_E+", "[0E+]", "ok"},
        {"n_number_0e", "[0e]", "ok"},
        {"n_number_1.0e-", "[1.0e-]", "ok"},
        {"n_number_1eE2", "[1eE2]", "ok"},
        {"n_number_2.e+3", "[2.e+3]", "ok"},
        {"n_number_9.e+", "[9.e+]", "ok"},
        {"n_number_neg_int_starting_with_zero", "[-012]", "ok"},
        {"n_number_neg_real_without_int_part", "[-.123]", "ok"},
        {"n_number_real_without_fractional_part", "[1.]", "ok"},
        {"n_number_with_leading_zero", "[012]", "ok"},
        {"n_number_invalid+-", "[0e+-1]", "ok"},
        {"n_number_minus_inside", "[1-2]", "ok"},
        {"n_number_minus_plus", "[-+1]", "4: número inteiro grande demais"},
        {"n_number_double_minus", "[--1]", "4: número inteiro grande demais"},
    };
    Conferir(casos);
}

TEST(Json, NumerosPelosDoisCampos) {
    const struct {
        std::string documento;
        double numero;
        std::int64_t inteiro;
    } casos[] = {
        {"0", 0, 0},
        {"-0", -0.0, 0},
        {"007", 7, 7},
        {"1-2", 1, 1},
        {"1+2", 1, 1},
        {"9007199254740993", 9007199254740992.0, 9007199254740993},
        {"9223372036854775807", 9223372036854775808.0, kMaior},
        {"-9223372036854775808", -9223372036854775808.0, kMenor},
        {"1.2.3", 1.2, 1},
        {"-2.99", -2.99, -2},
        {"0.1", 0.1, 0},
        {"1e3", 1000, 1000},
        {"1E+3", 1000, 1000},
        {"25e-1", 2.5, 2},
        {"1e", 1, 1},
        {"-.5", -0.5, 0},
        {"-e5", 0, 0},
        {"-+1e5", 0, 0},
        {"9.223372036854775e18", 9.223372036854775e18, 9223372036854774784},
        {"-9223372036854775808.0", -9223372036854775808.0, kMenor},
        {"9223372036854775808.0", 9223372036854775808.0, kMenor},
        {"1.7976931348623157e308", std::numeric_limits<double>::max(), kMenor},
        // halfway between two doubles, and the least bit above it
        {"9007199254740993.0", 9007199254740992.0, 9007199254740992},
        {"9007199254740993.00000000000000000000000000000000000000000001", 9007199254740994.0, 9007199254740994},
        {"2.2250738585072011e-308", 2.2250738585072011e-308, 0},
        {"4.9e-324", std::numeric_limits<double>::denorm_min(), 0},
        {"1e400", kInfinito, kMenor},
        {"-1e400", -kInfinito, kMenor},
        {"1e-400", 0, 0},
        {"-1e-400", -0.0, 0},
        {"1e99999999999999999999", kInfinito, kMenor},
        {"1e-99999999999999999999", 0, 0},
        {"0e99999999999999999999", 0, 0},
        {Repetir(400, "9") + "e-1", kInfinito, kMenor},
        {Repetir(400, "9") + ".5", kInfinito, kMenor},
        {"0." + Repetir(400, "0") + "1", 0, 0},
        {"0." + Repetir(400, "0") + "1e10", 0, 0},
        {"0." + Repetir(400, "0") + "1e900", kInfinito, kMenor},
        {"1e400.5e-900", kInfinito, kMenor},
    };
    // The player's locale, with its decimal comma, must not matter.
    for (const char* localidade : {"C", "Portuguese_Brazil", "pt_BR.UTF-8"}) {
        std::setlocale(LC_NUMERIC, localidade);
        for (const auto& [documento, numero, inteiro] : casos) {
            const ValorJson valor = Lido(documento);
            EXPECT_EQ(valor.tipo, TipoJson::kNumero) << documento;
            EXPECT_EQ(valor.numero, numero) << documento;
            EXPECT_EQ(std::signbit(valor.numero), std::signbit(numero)) << documento;
            EXPECT_EQ(valor.inteiro, inteiro) << documento;
        }
    }
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(Resultado("9223372036854775808"), "19: número inteiro grande demais");
    EXPECT_EQ(Resultado("-9223372036854775809"), "20: número inteiro grande demais");
}

TEST(Json, TextosComEscapes) {
    const std::pair<std::string_view, std::string_view> casos[] = {
        {R"("")", ""},
        {R"("placa \"X\" \\ \/")", "placa \"X\" \\ /"},
        {R"("\b\f\n\r\t")", "\b\f\n\r\t"},
        {R"("a\u0000b")", "a\0b"sv},
        {R"("\u007f\u0080\u07FF\u0800\uffff")", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        {R"("n\u00e3o")", "não"},
        {R"("\uD83D\uDE00!")", "\xF0\x9F\x98\x80!"},
        {R"("\uD800\uDC00\uDBFF\uDFFF")", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        // lone halves, and pairs whose second half is none
        {R"("\uD800x\uDC00")", "\xED\xA0\x80x\xED\xB0\x80"},
        {R"("\uD800\n")", "\xED\xA0\x80\n"},
        {R"("\uD800\u0000")", "\xE2\x90\x80"},
        {R"("\uD800\uD800\uDC00")", "\xEF\xB0\x80\xED\xB0\x80"},
        {R"("\uDBFF\uFFFF")", "\xF4\x91\xBF\xBF"},
        {"\"\xFF\xC0\x80\x7F\"", "\xFF\xC0\x80\x7F"},
    };
    for (const auto& [documento, texto] : casos) {
        const ValorJson valor = Lido(documento);
        EXPECT_EQ(valor.tipo, TipoJson::kTexto) << documento;
        EXPECT_EQ(valor.texto, texto) << documento;
    }
}

constexpr std::string_view kRelatorio =
    "\xEF\xBB\xBF{\"d3d12\": true, \"vulkan\": 0, \"placa\": \"GeForce \\u00e7\\uD83D\\uDE00\", \"nada\": null,\r\n"
    "\t\"itens\": [1, -2.5e3, [], {}, {\"a\": [false]}], \"placa\": \"outra\", \"\": \"vazia\"}";

TEST(Json, ArvoreInteira) {
    ValorJson valor = Lido(R"([1,"x"])");
    std::string erro = "intacto";
    ASSERT_TRUE(LerJson(kRelatorio, valor, erro));
    EXPECT_EQ(erro, "intacto");
    EXPECT_EQ(Descrever(valor),
              "{d3d12=sim vulkan=0 placa=<GeForce ç\xF0\x9F\x98\x80> nada=nulo "
              "itens=[1 -2500 [] {} {a=[não ] } ] placa=<outra> =<vazia> }");
    EXPECT_TRUE(valor.elementos.empty());

    // What is complete stays when the rest fails; what was there before the call does not.
    EXPECT_FALSE(LerJson(R"({"a": [1, 2, x], "b": 1})", valor, erro));
    EXPECT_EQ(Descrever(valor), "{}");
    EXPECT_FALSE(LerJson(R"([1, {"a": 2}, {"b": 3])", valor, erro));
    EXPECT_EQ(Descrever(valor), "[1 {a=2 } ]");
    EXPECT_EQ(erro, "JSON inválido perto do caractere 21: esperava ',' ou '}'");
    EXPECT_FALSE(LerJson("true x", valor, erro));
    EXPECT_EQ(Descrever(valor), "sim");
    EXPECT_EQ(erro, "JSON inválido: sobra texto no caractere 5");
    EXPECT_FALSE(LerJson("", valor, erro));
    EXPECT_EQ(Descrever(valor), "nulo");
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
        {"texto", "t"},     {"vazio", ""},       {"a\0b"sv, "c"},     {"a", "padrão"},    {"sim", "padrão"},
        {"nulo", "padrão"}, {"troca", "padrão"}, {"lista", "padrão"}, {"fora", "padrão"},
    };
    for (const auto& [chave, esperado] : textos)
        EXPECT_EQ(JsonTexto(objeto, chave, "padrão"), esperado) << chave;
    for (const char* documento : {"[true]", "\"sim\"", "null", "1"}) {
        EXPECT_TRUE(JsonBool(Lido(documento), "sim", true)) << documento;
        EXPECT_EQ(JsonTexto(Lido(documento), "sim"), "") << documento;
    }
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
        {listas(65, "1"), "65: aninhamento demais"},
        {listas(66, ""), "65: aninhamento demais"},
        {listas(65, "  x"), "67: aninhamento demais"},
        {objetos(64, "1"), "ok"},
        {objetos(64, "{}"), "ok"},
        {objetos(65, "1"), "325: aninhamento demais"},
        {objetos(65, " 1"), "325: aninhamento demais"},
        {Formatar("[{},{}]", listas(63, "1"), listas(63, "2")), "ok"},
        {Repetir(100000, "["), "65: aninhamento demais"},
        {Repetir(100000, "[{\"\":"), "161: aninhamento demais"},
        {listas(100000, "1"), "65: aninhamento demais"},
    };
    for (const auto& [documento, resultado] : casos)
        EXPECT_EQ(Resultado(documento), resultado) << documento.substr(0, 80) << " (" << documento.size() << ")";
}

// The game was stopped while it wrote: every cut is refused, at a place inside what is there.
TEST(Json, CortadoEmQualquerByte) {
    for (std::size_t tamanho = 0; tamanho < kRelatorio.size(); ++tamanho) {
        const std::string resultado = Resultado(kRelatorio.substr(0, tamanho));
        ASSERT_NE(resultado, "ok") << tamanho;
        ASSERT_LE(std::stoul(resultado), tamanho) << resultado;
    }
}

TEST(Json, CemMegabytes) {
    const std::string letras(kCemMegas, 'a');
    EXPECT_EQ(Lido('"' + letras + '"').texto, letras);
    EXPECT_EQ(Resultado('"' + letras), "100000001: texto sem fim");
    EXPECT_EQ(Resultado(std::string(kCemMegas, ' ')), "100000000: fim inesperado");
    EXPECT_EQ(Resultado(std::string(kCemMegas, '[')), "65: aninhamento demais");
    EXPECT_EQ(Resultado(std::string(kCemMegas, '1')), "100000000: número inteiro grande demais");
    std::string numero(kCemMegas, '0');
    numero[1] = '.';
    EXPECT_EQ(Resultado(numero), "ok");
    constexpr std::size_t kEscapes = kCemMegas / 60;
    EXPECT_EQ(Lido(Formatar("\"{}\"", Repetir(kEscapes, "\\u00e7"))).texto.size(), kEscapes * 2);
}

}  // namespace
}  // namespace zu::launcher

#include "update/lista.h"

#include <gtest/gtest.h>

#include "core/formato.h"

namespace zu::launcher::update {
namespace {

const std::string kSha(64, 'a');

// What is read, written again, or why it is refused. What the record held before may not show.
std::string Lida(std::string_view texto) {
    UpdateList lista{.seq = 99, .versao = "antes", .chaveAssets = "antes", .itens = {{}}, .remover = {"antes"}};
    std::string erro;
    return LerLista(std::string(texto), lista, erro) ? EscreverLista(lista) : erro;
}

TEST(Lista, LeTudoOQueOFormatoPermiteEEscreveOMesmo) {
    const std::string escrita = Formatar(
        ";seq\t-12\n;versao\t2.0 ção\n;chave-assets\tk\n"
        "Data\\Zu.ini\t0CBF4392\t10\t\n"
        "a b/ç234567.pak\t000000FF\t18446744073709551615\t{}\t999\n"
        "c\t00000000\t0\t\n"
        ";blocos\ta b\\ç234567.pak\t9\t{}\n"
        ";remover\tvelho\\x.dll\n;remover\ty\n",
        kSha, kSha);
    const std::string maiusculas(64, 'A');
    const std::string lida = Formatar(
        "\xEF\xBB\xBF;seq\t-12abc\r\n"
        ";comentário\tqualquer\n;SEQ\t3\n"
        ";blocos\tc\t-1\t{}\n;blocos\t../c\t1\t{}\n;blocos\tc\t1\tcurto\n;blocos\tc\t1\n;blocos\n"
        ";blocos\ta b\\ç234567.pak\t9\t{}\n"
        ";versao\t1.0\n;versao\t2.0 ção\t3.0\n;chave-assets\tk\n;sozinha\n\n"
        ";remover\tvelho\\x.dll\n"
        "Data\\Zu.ini\t0cbf4392\t10  \r\n"
        "a b/ç234567.pak\tFF\t18446744073709551615\t{}\t999\tignorado\tmais\n"
        "c\t0\t0\t\t0\n"
        ";seq\tabc\n;seq\t99999999999999999999\n;remover\ty",
        kSha, kSha, maiusculas, maiusculas);
    EXPECT_EQ(Lida(lida), escrita);
    EXPECT_EQ(Lida(escrita), escrita);
    EXPECT_EQ(Lida("a\t1\t1\t" + std::string(64, '!')), ";seq\t0\na\t00000001\t1\t" + std::string(64, '!') + "\n");
}

// Faults: a day that the calendar does not have expires the list; another form is guessed at; the last line that cannot
// be read undoes one before.
TEST(Lista, ValidadeSoNaFormaExata) {
    const std::string item = "a\t00000001\t1\t\n";
    const auto escrita = [&](const std::string& validade) { return ";seq\t0\n;validade\t" + validade + "\n" + item; };
    for (const char* const certa : {"2027-01-31T00:00:00Z", "2028-02-29T23:59:59Z"})
        EXPECT_EQ(Lida(";validade\t" + std::string(certa) + "\n;validade\tnunca\n" + item), escrita(certa));
    for (const char* const errada :
         {"2027-02-29T00:00:00Z", "2027-01-31T24:00:00Z", "2027-01-31T23:60:00Z", "2027-01-31T23:59:60Z",
          "2027-01-31t00:00:00Z", "2027-01-31T00:00:00+00:00", "2027-01-31T00:00:00.5Z", "2027-1-31T00:00:00Z", ""})
        EXPECT_EQ(Lida(";validade\t" + std::string(errada) + "\n" + item), ";seq\t0\n" + item) << errada;
}

TEST(Lista, RecusaNaPrimeiraLinhaComFalta) {
    const std::pair<std::string, const char*> casos[] = {
        {";a\t1\t1\n;remover\tx\n", "lista vazia"},
        {"\n\na\t1", "linha 3: esperado caminho, CRC e tamanho separados por TAB"},
        {"ok\t1\t1\n..\\x\tzz\t1", "linha 2: caminho inseguro (..\\x)"},
        {"a\t1\t1\n;remover\t../x", "linha 2: caminho inseguro em ;remover (../x)"},
        {"a\t1CBF43926\t1", "linha 1: CRC/tamanho inválido"},
        {"a\tFF \t1", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t-1", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t18446744073709551616", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t1\t" + kSha.substr(1), "linha 1: SHA-256 inválido"},
        {"a\t1\t1\ta" + kSha, "linha 1: SHA-256 inválido"},
        {"a\t1\t1\t\t1000", "linha 1: número de partes inválido"},
        {"a\t1\t1\t\tdez", "linha 1: número de partes inválido"}};
    for (const auto& [texto, erro] : casos)
        EXPECT_EQ(Lida(texto), erro) << texto;
}

TEST(Lista, SeparaAAssinaturaSoNoFim) {
    const ListaSeparada s = SepararAssinatura("\xEF\xBB\xBFx\t1\t1\r\n;assinatura\tQUJD  \r\n\n ");
    EXPECT_EQ(s.assinados, "\xEF\xBB\xBFx\t1\t1\r\n");
    EXPECT_EQ(std::string(s.assinatura.begin(), s.assinatura.end()), "ABC");
    EXPECT_TRUE(SepararAssinatura(";assinatura\tQUJD").ok);

    for (const char* texto : {"", ";assinatura", "a\t1\t1\n", ";assinatura\t", ";assinatura\t=\n", ";assinatura\tQU JD",
                              "x;assinatura\tQUJD", "a\t1\t1\n;assinatura\tQUJD\nb\t1\t1\n",
                              "x;assinatura\tQUJD\n;assinatura\tQUJD", ";assinatura\tQUJD\n;assinatura\tQUJD"})
        EXPECT_FALSE(SepararAssinatura(texto).ok) << texto;
}

}  // namespace
}  // namespace zu::launcher::update

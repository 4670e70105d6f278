#include "update/lista.h"

#include <gtest/gtest.h>

namespace zu::launcher::update {
namespace {

const std::string kSha(64, 'A');

std::string Erro(std::string_view texto) {
    UpdateList lista;
    std::string erro;
    return LerLista(texto, lista, erro) ? "lida" : erro;
}

TEST(Lista, LeTudoOQueOFormatoPermite) {
    const std::string texto =
        "\xEF\xBB\xBF;seq\t12abc\r\n"
        ";comentário\tqualquer\n"
        ";versao\t1.0\n;versao\t2.0 beta\n;chave-assets\tk\n;sozinha\n\n"
        "Data\\Zu.ini\t0cbf43926\t10  \r\n"
        "a b/ç.pak\tFF\t18446744073709551615\t" +
        kSha +
        "\t999\tignorado\tmais\n"
        "c\t0\t0\t\t0\n"
        ";remover\tvelho\\x.dll\n"
        ";seq\tabc\n;seq\t99999999999999999999";
    UpdateList lista;
    std::string erro;
    ASSERT_TRUE(LerLista(texto, lista, erro)) << erro;
    EXPECT_EQ(lista.seq, 12);
    EXPECT_EQ(lista.versao, "2.0 beta");
    EXPECT_EQ(lista.chaveAssets, "k");
    EXPECT_EQ(lista.remover, std::vector<std::string>{"velho\\x.dll"});
    ASSERT_EQ(lista.itens.size(), 3U);
    EXPECT_EQ(lista.itens[0].caminho, "Data\\Zu.ini");
    EXPECT_EQ(lista.itens[0].crc, 0xCBF43926U);
    EXPECT_EQ(lista.itens[0].tamanho, 10U);
    EXPECT_EQ(lista.itens[0].sha256, "");
    EXPECT_EQ(lista.itens[1].sha256, std::string(64, 'a'));
    EXPECT_EQ(lista.itens[1].tamanho, 18446744073709551615U);
    EXPECT_EQ(lista.itens[1].partes, 999U);
    EXPECT_EQ(lista.itens[2].partes, 0U);
}

TEST(Lista, RecusaNaPrimeiraLinhaComFalta) {
    const std::pair<std::string, const char*> casos[] = {
        {"", "lista vazia"},
        {";a\t1\t1\n;remover\tx\n", "lista vazia"},
        {"\n\na\t1", "linha 3: esperado caminho, CRC e tamanho separados por TAB"},
        {"so texto", "linha 1: esperado caminho, CRC e tamanho separados por TAB"},
        {"ok\t1\t1\n..\\x\tzz\t1", "linha 2: caminho inseguro (..\\x)"},
        {"\t\t", "linha 1: caminho inseguro ()"},
        {"a/\t1\t1", "linha 1: caminho inseguro (a/)"},
        {"a\t1\t1\n;remover\t../x", "linha 2: caminho inseguro em ;remover (../x)"},
        {"a\t1CBF43926\t1", "linha 1: CRC/tamanho inválido"},
        {"a\tFF \t1", "linha 1: CRC/tamanho inválido"},
        {"a\t\t1", "linha 1: CRC/tamanho inválido"},
        {"a\t0x1\t1", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t-1", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t18446744073709551616", "linha 1: CRC/tamanho inválido"},
        {"a\t1\t1\t" + std::string(63, 'a'), "linha 1: SHA-256 inválido"},
        {"a\t1\t1\t" + std::string(65, 'a'), "linha 1: SHA-256 inválido"},
        {"a\t1\t1\t" + kSha + "\t1000", "linha 1: número de partes inválido"},
        {"a\t1\t1\t\tdez", "linha 1: número de partes inválido"},
        {"a\t1\t1\t\t-1", "linha 1: número de partes inválido"},
    };
    for (const auto& [texto, erro] : casos)
        EXPECT_EQ(Erro(texto), erro) << texto;
    EXPECT_EQ(Erro("a\t1\t1\t" + std::string(64, '!')), "lida");
}

TEST(Lista, SeparaAAssinaturaSoNoFim) {
    const ListaSeparada s = SepararAssinatura(
        "\xEF\xBB\xBF"
        "a\t1\t1\r\n;assinatura\tQUJD  \r\n\n ");
    EXPECT_TRUE(s.ok);
    EXPECT_EQ(s.assinados,
              "\xEF\xBB\xBF"
              "a\t1\t1\r\n");
    EXPECT_EQ(std::string(s.assinatura.begin(), s.assinatura.end()), "ABC");
    EXPECT_TRUE(SepararAssinatura(";assinatura\tQUJD").ok);

    for (const char* texto : {"", ";assinatura", "a\t1\t1\n", ";assinatura\t", ";assinatura\t=\n", ";assinatura\tQU JD",
                              ";assinatura\tQU-D", "x;assinatura\tQUJD", "a\t1\t1\n;assinatura\tQUJD\nb\t1\t1\n",
                              "a\t1\t1\n ;assinatura\tQUJD", "x;assinatura\tQUJD\n;assinatura\tQUJD",
                              ";assinatura\tQUJD\n;assinatura\tQUJD"}) {
        EXPECT_FALSE(SepararAssinatura(texto).ok) << texto;
    }
}

TEST(Lista, OQueSeEscreveSeLeDeVolta) {
    UpdateList lista;
    lista.seq = -3;
    lista.versao = "1.0 ção";
    lista.itens = {{.caminho = "a b/ç", .sha256 = std::string(64, '0'), .tamanho = 5, .crc = 0xAB, .partes = 0},
                   {.caminho = "z", .sha256 = std::string(64, 'f'), .tamanho = 1ULL << 40, .crc = 1, .partes = 12}};
    lista.remover = {"velho"};
    const std::string inteira = JuntarAssinatura(EscreverLista(lista), std::vector<std::uint8_t>{1, 2, 3, 4});
    const ListaSeparada s = SepararAssinatura(inteira);
    ASSERT_TRUE(s.ok);
    EXPECT_EQ(s.assinatura, (std::vector<std::uint8_t>{1, 2, 3, 4}));
    UpdateList volta;
    std::string erro;
    ASSERT_TRUE(LerLista(s.assinados, volta, erro)) << erro;
    EXPECT_EQ(EscreverLista(volta), EscreverLista(lista));
    EXPECT_EQ(volta.itens[1].partes, 12U);
    EXPECT_EQ(volta.itens[1].tamanho, 1ULL << 40);
}

}  // namespace
}  // namespace zu::launcher::update

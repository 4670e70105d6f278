#include "update/registros.h"

#include <gtest/gtest.h>

#include "update/velocidade.h"

namespace zu::launcher {
namespace {

TEST(Registros, SeqDoEstado) {
    const std::pair<const char*, std::int64_t> casos[] = {
        {"seq=7\nversao=1\n", 7},   {"seq=-5", -5}, {"xseq=7", 7}, {"seq= \t+12abc", 12},
        {"versao=seq=3\nseq=9", 3}, {"seq=", 0},    {"se=", 0},    {"seq=9223372036854775808", INT64_MAX}};
    for (const auto& [texto, seq] : casos)
        EXPECT_EQ(SeqDoTexto(texto), seq) << texto;
    EXPECT_EQ(TextoDoEstado(-12, "1.0 é"), "seq=-12\nversao=1.0 é\n");
}

TEST(Registros, CacheEmOrdemESemLinhasComFalta) {
    // "#" stands for a digest. What is wrong with each of the first lines, then the two that are kept, in order.
    const std::string lido =
        "v1\t#\t1\t1\t1\ta\n"
        "v2\t#a\t1\t1\t1\tb\n"
        "v2\t#\t\t1\t1\tc\n"
        "v2\t#\t1\t1 1\tc\n"
        "v2\t#\t1\t-1\t1\td\n"
        "v2\t#\t1\t1\t1\t\n"
        "v2\t#\t1\t1\n\nlixo\n"
        "v2\t#\t1\t1\t1\tcaminho com espaço\tç\n"
        "v2\t#\t0000000a\t5\t6\tcaminho com espaço\tç\n"
        "v2\t#\tCBF43926\t1099511627776\t133000000000000000\ta";
    const std::string escrito =
        "v2\t#\tCBF43926\t1099511627776\t133000000000000000\ta\n"
        "v2\t#\t0000000A\t5\t6\tcaminho com espaço\tç\n";
    const auto comDigest = [](std::string texto) {
        for (std::size_t lugar = 0; (lugar = texto.find('#')) != std::string::npos;)
            texto.replace(lugar, 1, 64, 'a');
        return texto;
    };
    EXPECT_EQ(TextoDoCache(CacheDoTexto(comDigest(lido))), comDigest(escrito));
}

TEST(Registros, PendentesIdaEVolta) {
    const std::vector<LinhaPendente> linhas{{"C:\\Zu\\a.novo", "C:\\Zu\\a"}, {"", "C:\\Zu\\pasta ç\\b"}};
    const std::string texto = TextoDosPendentes(linhas);
    EXPECT_EQ(texto, "M\tC:\\Zu\\a.novo\tC:\\Zu\\a\nD\tC:\\Zu\\pasta ç\\b\n");
    EXPECT_EQ(PendentesDoTexto(texto), linhas);
    EXPECT_TRUE(PendentesDoTexto("M\t\tb\nM\ta\t\nM\ta\nD\t\nX\ta\tb\n\nD").empty());
}

TEST(Velocidade, AmostraSuavizaENuncaVaiAbaixoDeZero) {
    using std::chrono::milliseconds;
    const VelocidadeMedia::Instante inicio{};
    VelocidadeMedia media(inicio, 0);
    EXPECT_EQ(media.Amostrar(inicio + milliseconds(200), 500), 0);      // too early
    EXPECT_EQ(media.Amostrar(inicio + milliseconds(250), 500), 2000);   // the first is taken as it is
    EXPECT_EQ(media.Amostrar(inicio + milliseconds(450), 9000), 2000);  // too early again
    EXPECT_DOUBLE_EQ(media.Amostrar(inicio + milliseconds(1250), 4500), 0.15 * 4000 + 0.85 * 2000);
    EXPECT_DOUBLE_EQ(media.Amostrar(inicio + milliseconds(2250), 10), 0.85 * 2300);
}

}  // namespace
}  // namespace zu::launcher

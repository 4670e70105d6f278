#include "update/caminhos.h"

#include <gtest/gtest.h>

#include "update/erro_http.h"
#include "update/url.h"

namespace zu::launcher::update {
namespace {

TEST(Caminhos, Normalizacao) {
    const std::pair<const char*, const char*> casos[] = {{"Data\\Zu.ini", "Data/Zu.ini"},
                                                         {"//a//\\b", "a/b"},
                                                         {"./././a", "a"},
                                                         {".//a", "a"},
                                                         {"a/./b", "a/./b"},
                                                         {"a/", "a/"},
                                                         {"a./b", "a./b"}};
    for (const auto& [caminho, esperado] : casos)
        EXPECT_EQ(NormalizarCaminho(caminho), esperado) << caminho;
}

TEST(Caminhos, SegurosEInseguros) {
    const std::string inseguros[] = {
        // out of the folder
        "", "/", ".", "..", "../a", "a/../b", "a/..", "..\\..\\windows\\a", "a/./b", "C:/a", "\\\\?\\C:\\a", "a/",
        "a\\",
        // streams, wildcards and letters that no name holds
        "Zu.exe::$DATA", "a*", "a?", "a|b", "a<b", "a>b", "a\"b", "a\tb", "a\x1f", std::string("a\0b", 3),
        // names that Windows would change or that are devices
        "a.", "a ", "a./b", "a /b", "...", "CON", "aux.txt", "COM1.dat", "lpt9", "Nul", "b/PRN.x.y", "con.",
        // length
        std::string(401, 'a')};
    for (const std::string& caminho : inseguros)
        EXPECT_FALSE(CaminhoSeguro(caminho)) << caminho;
    const std::string seguros[] = {"a",        "Data\\Zu.ini", "//Data//x", "./a",
                                   "con2.txt", "com0",         "com10",     "lpt",
                                   "xcon",     ".a",           "a b/ç.txt", "//" + std::string(400, 'a')};
    for (const std::string& caminho : seguros)
        EXPECT_TRUE(CaminhoSeguro(caminho)) << caminho;
}

TEST(Caminhos, Protegidos) {
    for (const char* caminho :
         {"CONFIG\\ZU.INI", "DATA/MACRO.TXT", "config/launcher.", "SCREENSHOTS/a.jpg", "./Cache/x", "a/b.LOG",
          "x.baixando", "ZuLauncher.exe.novo", "a.tmp", "b.upd", "big.pak.upd.p001"})
        EXPECT_TRUE(CaminhoProtegido(caminho)) << caminho;
    for (const char* caminho : {"Config/Zu.ini2", "Data/Config/Zu.ini", "Launcher.emu", "MeuCache/x", "a.logo",
                                "upd/p001", "screenshots", "data/macro.txt/x"})
        EXPECT_FALSE(CaminhoProtegido(caminho)) << caminho;
}

TEST(Url, EscapaOCaminhoEJuntaABase) {
    EXPECT_EQ(MontarUrl("http://s/b", "a b/ç"), "http://s/b/a%20b/%C3%A7");
    EXPECT_EQ(MontarUrl("http://s/b/", "aZ09-._~/x"), "http://s/b/aZ09-._~/x");
    EXPECT_EQ(MontarUrl("", "100%+#?\\&':@[`{"), "/100%25%2B%23%3F%5C%26%27%3A%40%5B%60%7B");
}

// Those that no test provokes.
TEST(Url, ErrosEmPalavras) {
    const std::pair<std::uint32_t, const char*> casos[] = {{12002, "tempo esgotado"},
                                                           {12005, "URL inválida"},
                                                           {12007, "servidor não encontrado (DNS)"},
                                                           {12030, "conexão interrompida"},
                                                           {12175, "certificado HTTPS inválido"}};
    for (const auto& [codigo, texto] : casos)
        EXPECT_EQ(TextoDoErroHttp("download", codigo), std::string("download: ") + texto);
}

}  // namespace
}  // namespace zu::launcher::update

#include "update/caminhos.h"

#include <gtest/gtest.h>

namespace zu::launcher::update {
namespace {

TEST(Caminhos, Normalizacao) {
    const std::pair<const char*, const char*> casos[] = {{"Data\\Zu.ini", "Data/Zu.ini"},
                                                         {"//a//\\b", "a/b"},
                                                         {"./././a", "a"},
                                                         {"/./a", "a"},
                                                         {".//a", "a"},
                                                         {"a/./b", "a/./b"},
                                                         {"a/", "a/"},
                                                         {"...", "..."},
                                                         {"a./b", "a./b"},
                                                         {"\\", ""}};
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
    const std::string seguros[] = {"a",
                                   "Data\\Zu.ini",
                                   "//Data//x",
                                   "./a",
                                   "con2.txt",
                                   "com0",
                                   "com10",
                                   "lpt",
                                   "xcon",
                                   ".a",
                                   "a b/ç.txt",
                                   "Config/Launcher.cache",
                                   std::string(400, 'a')};
    for (const std::string& caminho : seguros)
        EXPECT_TRUE(CaminhoSeguro(caminho)) << caminho;
}

TEST(Caminhos, Protegidos) {
    for (const char* caminho :
         {"CONFIG\\ZU.INI", "data/macro.txt", "config/launcher.", "SCREENSHOTS/a.jpg", "./Cache/x", "a/b.LOG",
          "x.baixando", "ZuLauncher.exe.novo", "a.tmp", "b.upd", "big.pak.upd.p001"}) {
        EXPECT_TRUE(CaminhoProtegido(caminho)) << caminho;
    }
    for (const char* caminho : {"Config/Zu.ini2", "Data/Config/Zu.ini", "Launcher.emu", "MeuCache/x", "a.logo",
                                "upd/p001", "screenshots", "data/macro.txt/x"}) {
        EXPECT_FALSE(CaminhoProtegido(caminho)) << caminho;
    }
}

}  // namespace
}  // namespace zu::launcher::update

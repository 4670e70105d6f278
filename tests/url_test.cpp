#include "update/url.h"

#include <gtest/gtest.h>

#include "update/erro_http.h"

namespace zu::launcher {
namespace {

TEST(Url, EscapaOCaminhoEJuntaABase) {
    EXPECT_EQ(MontarUrl("http://s/b", "a b/ç"), "http://s/b/a%20b/%C3%A7");
    EXPECT_EQ(MontarUrl("http://s/b/", "aZ09-._~/x"), "http://s/b/aZ09-._~/x");
    EXPECT_EQ(MontarUrl("", "100%+#?\\&':@[`{"), "/100%25%2B%23%3F%5C%26%27%3A%40%5B%60%7B");
}

TEST(Url, ErrosEmPalavras) {
    const std::pair<std::uint32_t, const char*> casos[] = {{12002, "tempo esgotado"},
                                                           {12005, "URL inválida"},
                                                           {12006, "URL deve começar com http:// ou https://"},
                                                           {12007, "servidor não encontrado (DNS)"},
                                                           {12029, "não conectou ao servidor"},
                                                           {12030, "conexão interrompida"},
                                                           {12175, "certificado HTTPS inválido"},
                                                           {12152, "erro 12152"},
                                                           {0, "erro 0"}};
    for (const auto& [codigo, texto] : casos)
        EXPECT_EQ(TextoDoErroHttp("download", codigo), std::string("download: ") + texto);
}

}  // namespace
}  // namespace zu::launcher

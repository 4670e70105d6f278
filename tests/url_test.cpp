#include "update/url.h"

#include <gtest/gtest.h>

#include "update/erro_http.h"

namespace zu::launcher {
namespace {

TEST(Url, EscapaOCaminhoEJuntaABase) {
    EXPECT_EQ(MontarUrl("http://s/b", "a b/ç"), "http://s/b/a%20b/%C3%A7");
    EXPECT_EQ(MontarUrl("http://s/b/", "aZ09-._~/x"), "http://s/b/aZ09-._~/x");
    EXPECT_EQ(MontarUrl("", "100%+#?\\&'"), "/100%25%2B%23%3F%5C%26%27");
}

TEST(Url, ErrosEmPalavras) {
    const std::pair<std::uint32_t, const char*> casos[] = {
        {12002, "download: tempo esgotado"},
        {12005, "download: URL inválida"},
        {12006, "download: URL deve começar com http:// ou https://"},
        {12007, "download: servidor não encontrado (DNS)"},
        {12029, "download: não conectou ao servidor"},
        {12030, "download: conexão interrompida"},
        {12175, "download: certificado HTTPS inválido"},
        {12152, "download: erro 12152"},
        {0, "download: erro 0"},
    };
    for (const auto& [codigo, texto] : casos)
        EXPECT_EQ(TextoDoErroHttp("download", codigo), texto);
}

}  // namespace
}  // namespace zu::launcher

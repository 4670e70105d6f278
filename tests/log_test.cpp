#include "core/log.h"

#include <gtest/gtest.h>

#include <regex>
#include <thread>

#include "core/handle.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

TEST(Log, LinhasInteirasDeMuitasThreadsEmQualquerLeitor) {
    const teste::PastaTemporaria pasta;
    pasta.Escrever("ZuLauncher.log", "da execução anterior\r\n");
    teste::Configurar(pasta.Caminho(), "");
    LogLinha("é {} de {}", 1, "x");
    // Only the first line of a process moves the old log away, so in this process another test may have done it.
    EXPECT_TRUE(pasta.Ler("ZuLauncher.anterior.log") == "da execução anterior\r\n" ||
                pasta.Ler("ZuLauncher.log").starts_with("da execução anterior\r\n"));

    const HandleArquivo editor(CreateFileW((pasta / "ZuLauncher.log").c_str(), GENERIC_READ | GENERIC_WRITE,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    std::vector<std::jthread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 50; ++i)
                LogLinha("thread {} linha {} {}", t, i, std::string(100, 'a'));
        });
    }
    threads.clear();
    const std::string log = pasta.Ler("ZuLauncher.log");
    const std::regex forma("\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d thread \\d linha \\d+ a{100}\r");
    int inteiras = 0;
    for (std::string_view resto = log; !resto.empty();) {
        const std::string_view linha = TomarAte(resto, '\n');
        inteiras += std::regex_match(linha.begin(), linha.end(), forma) ? 1 : 0;
    }
    EXPECT_EQ(inteiras, 8 * 50);
    EXPECT_NE(log.find(" é 1 de x\r\n"), std::string::npos);
}

}  // namespace
}  // namespace zu::launcher

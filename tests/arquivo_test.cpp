#include "core/arquivo.h"

#include <gtest/gtest.h>

#include <regex>
#include <thread>

#include "core/handle.h"
#include "core/log.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"

namespace zu::launcher {
namespace {

TEST(Arquivo, GravacaoTrocaTudoOuNadaELeituraInteiraAteOLimite) {
    const teste::PastaTemporaria pasta(L"Pasta Ç");
    // A run that was killed left its temporary file.
    pasta.Escrever("estado.tmp", "resto");
    EXPECT_TRUE(GravarArquivoAtomico(pasta / "estado", "antes"));
    {
        const HandleArquivo preso = pasta.Prender("estado");
        EXPECT_FALSE(GravarArquivoAtomico(pasta / "estado", "depois"));
    }
    // What may not be on the disk yet takes nothing's place.
    teste::recusa = {.chamada = "FlushFileBuffers", .erro = ERROR_DISK_FULL};
    EXPECT_FALSE(GravarArquivoAtomico(pasta / "estado", "depois"));
    teste::recusa = {};
    EXPECT_EQ(pasta.Ler("estado"), "antes");
    EXPECT_FALSE(pasta.Tem("estado.tmp"));

    // A temporary file that someone else holds is not taken away from them.
    pasta.Escrever("estado.tmp", "de outro");
    const HandleArquivo deOutro = pasta.Prender("estado.tmp");
    EXPECT_FALSE(GravarArquivoAtomico(pasta / "estado", "depois"));
    EXPECT_EQ(pasta.Ler("estado.tmp"), "de outro");

    std::string bytes = "lixo";
    pasta.Escrever("f", "");
    EXPECT_TRUE(LerArquivoInteiro(pasta / "f", bytes) && bytes.empty());
    for (const unsigned alem : {1U, 0U}) {
        std::filesystem::resize_file(pasta / "f", kLimiteArquivoInteiro + alem);
        EXPECT_EQ(LerArquivoInteiro(pasta / "f", bytes), alem == 0);
    }
    EXPECT_EQ(bytes.size(), kLimiteArquivoInteiro);
}

TEST(Arquivo, PastasIdentidadeECaminhoCanonico) {
    const teste::PastaTemporaria pasta(L"Pasta Ç");
    EXPECT_TRUE(CriarPastas(L"C:\\"));
    EXPECT_TRUE(CriarPastas(pasta / "a/b b/ç"));
    pasta.Escrever("a/arquivo", "x");
    EXPECT_FALSE(CriarPastas(pasta / "a/arquivo"));

    EXPECT_TRUE(MesmoArquivo(pasta / "a/arquivo", pasta / "A/../a/ARQUIVO"));
    pasta.Escrever("a/outro", "x");
    EXPECT_FALSE(MesmoArquivo(pasta / "a/arquivo", pasta / "a/outro"));
    EXPECT_FALSE(MesmoArquivo(pasta / "a/falta", pasta / "a/falta"));

    EXPECT_EQ(CaminhoCanonico(pasta / "A/"), pasta / "a");
    EXPECT_EQ(CaminhoCanonico(pasta / "a/b b/../Falta/X"), pasta / "a/Falta/X");
    EXPECT_TRUE(CaminhoCanonico(L"relativo").is_absolute());
    EXPECT_EQ(CaminhoCanonico(L"C:\\"), std::filesystem::path(L"C:\\"));
}

TEST(HandleDeArquivo, FechaUmaVezEGuardaOErro) {
    const auto aberto = [](HANDLE h) { return WaitForSingleObject(h, 0) != WAIT_FAILED; };
    HANDLE const primeiro = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE const segundo = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    {
        HandleKernel dono(primeiro);
        dono = HandleKernel(segundo);
        EXPECT_TRUE(!aberto(primeiro) && aberto(segundo));
        const HandleKernel fechado(primeiro);  // its closing fails, and says so
        SetLastError(1234);
    }
    EXPECT_EQ(GetLastError(), 1234U);
    EXPECT_FALSE(aberto(segundo));
}

TEST(Log, LinhasInteirasDeMuitasThreadsEmQualquerLeitor) {
    const teste::PastaTemporaria pasta;
    teste::Configurar(pasta.Caminho(), "");
    LogLinha("é {} de {}", 1, "x");
    const HandleArquivo editor =
        pasta.Prender("ZuLauncher.log", FILE_SHARE_READ | FILE_SHARE_WRITE, GENERIC_READ | GENERIC_WRITE);
    std::vector<std::jthread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 50; ++i)
                LogLinha("thread {} linha {} {}", t, i, std::string(100, 'a'));
        });
    threads.clear();
    const std::string log = pasta.Ler("ZuLauncher.log");
    const std::regex forma("\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d thread \\d linha \\d+ a{100}\r\n");
    EXPECT_EQ(std::distance(std::sregex_iterator(log.begin(), log.end(), forma), {}), 8 * 50);
    EXPECT_NE(log.find(" é 1 de x\r\n"), std::string::npos);
}

}  // namespace
}  // namespace zu::launcher

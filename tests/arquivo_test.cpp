#include "core/arquivo.h"

#include <gtest/gtest.h>

#include "core/handle.h"
#include "core/processo.h"
#include "tests/suporte/pasta.h"

namespace zu::launcher {
namespace {

class Arquivo : public testing::Test {
 protected:
    teste::PastaTemporaria pasta_{L"Pasta Ç"};
};

TEST_F(Arquivo, GravacaoAtomicaTrocaTudoOuNada) {
    const auto alvo = pasta_ / "estado";
    for (const std::string& conteudo : {std::string("um"), std::string(), std::string(3'000'000, 'x')}) {
        EXPECT_TRUE(GravarArquivoAtomico(alvo, conteudo));
        EXPECT_EQ(pasta_.Ler("estado"), conteudo);
    }
    // A run that was killed left its temporary file.
    {
        const HandleArquivo resto(
            CreateFileW((pasta_ / "estado.tmp").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    }
    EXPECT_TRUE(GravarArquivoAtomico(alvo, "antes"));
    {
        const HandleArquivo preso = pasta_.Prender("estado");
        EXPECT_FALSE(GravarArquivoAtomico(alvo, "depois"));
    }
    EXPECT_EQ(pasta_.Ler("estado"), "antes");
    EXPECT_FALSE(pasta_.Tem("estado.tmp"));

    // A temporary file that someone else holds is not taken away from them.
    {
        const HandleArquivo deOutro(
            CreateFileW((pasta_ / "estado.tmp").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        EXPECT_FALSE(GravarArquivoAtomico(alvo, "depois"));
    }
    EXPECT_TRUE(pasta_.Tem("estado.tmp"));
    EXPECT_FALSE(GravarArquivoAtomico(pasta_ / "falta/estado", "x"));
}

TEST_F(Arquivo, LeituraInteiraENoLimite) {
    std::string bytes = "lixo";
    pasta_.Escrever("vazio", "");
    EXPECT_TRUE(LerArquivoInteiro(pasta_ / "vazio", bytes));
    EXPECT_EQ(bytes, "");
    EXPECT_FALSE(LerArquivoInteiro(pasta_ / "falta", bytes));
    EXPECT_FALSE(LerArquivoInteiro(pasta_.Caminho(), bytes));

    const HandleArquivo grande(
        CreateFileW((pasta_ / "grande").c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr));
    for (const std::int64_t alem : {1, 0}) {
        LARGE_INTEGER fim{};
        fim.QuadPart = static_cast<std::int64_t>(kLimiteArquivoInteiro) + alem;
        ASSERT_TRUE(SetFilePointerEx(grande.Valor(), fim, nullptr, FILE_BEGIN) && SetEndOfFile(grande.Valor()));
        EXPECT_EQ(LerArquivoInteiro(pasta_ / "grande", bytes), alem == 0);
    }
    EXPECT_EQ(bytes.size(), kLimiteArquivoInteiro);
}

TEST_F(Arquivo, PastasIdentidadeECaminhoCanonico) {
    EXPECT_TRUE(CriarPastas(pasta_ / "a/b b/ç"));
    EXPECT_TRUE(CriarPastas(pasta_ / "a/b b/ç"));
    EXPECT_TRUE(CriarPastas(L"C:\\"));
    pasta_.Escrever("a/arquivo", "x");
    EXPECT_FALSE(CriarPastas(pasta_ / "a/arquivo/dentro"));
    EXPECT_FALSE(CriarPastas(pasta_ / "a/arquivo"));

    EXPECT_TRUE(MesmoArquivo(pasta_ / "a/arquivo", pasta_ / "A/../a/ARQUIVO"));
    pasta_.Escrever("a/outro", "x");
    EXPECT_FALSE(MesmoArquivo(pasta_ / "a/arquivo", pasta_ / "a/outro"));
    EXPECT_FALSE(MesmoArquivo(pasta_ / "a/falta", pasta_ / "a/falta"));

    const auto real = pasta_ / "a";
    EXPECT_EQ(CaminhoCanonico(pasta_ / "A"), real);
    EXPECT_EQ(CaminhoCanonico(pasta_ / "a/"), real);
    EXPECT_EQ(CaminhoCanonico(pasta_ / "a/b b/../Falta/X"), real / L"Falta" / L"X");
    EXPECT_TRUE(CaminhoCanonico(L"relativo").is_absolute());
    EXPECT_EQ(CaminhoCanonico(L"C:\\"), std::filesystem::path(L"C:\\"));
}

TEST(HandleDeArquivo, FechaUmaVezEGuardaOErro) {
    const auto evento = [] { return CreateEventW(nullptr, TRUE, FALSE, nullptr); };
    const auto aberto = [](HANDLE h) {
        DWORD opcoes = 0;
        return GetHandleInformation(h, &opcoes) != 0;
    };
    HANDLE const primeiro = evento();
    HANDLE const segundo = evento();
    {
        HandleKernel dono(primeiro);
        HandleKernel outro(std::move(dono));
        EXPECT_TRUE(aberto(primeiro));
        outro = HandleKernel(segundo);
        EXPECT_TRUE(!aberto(primeiro) && aberto(segundo));
        SetLastError(1234);
    }
    EXPECT_EQ(GetLastError(), 1234U);
    EXPECT_FALSE(aberto(segundo));
}

}  // namespace
}  // namespace zu::launcher

#include "game/requisitos.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "core/config.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

class Requisitos : public testing::Test {
 protected:
    Requisitos() {
        Configurar(pasta_.Caminho(), "");
        std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
    }

    void Ajustar(const std::string& ajustes) { pasta_.Escrever("jogo_falso.txt", ajustes); }

    static ResultadoRequisitos Rodar(std::chrono::milliseconds limite = kLimiteDoDiagnostico) {
        IniciarRequisitos(limite);
        EXPECT_TRUE(Esperar(30s, [] { return ObterRequisitos().concluido; }));
        return ObterRequisitos();
    }
    static std::filesystem::path ArquivoDoRelatorio() {
        return std::filesystem::temp_directory_path() /
               (L"ZuLauncher-requisitos-" + std::to_wstring(GetCurrentProcessId()) + L".json");
    }

    PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

TEST_F(Requisitos, UmaLinhaNoLogENadaFicaParaTras) {
    const std::string semDiagnostico =
        "Requisitos: o Zu.exe não gerou o diagnóstico (versão antiga sem --requisitos-json?)";
    const std::pair<std::string, std::string> casos[] = {
        {"relatorio=so_vulkan",
         "Requisitos: DirectX 12 não | Vulkan sim | NVIDIA GeForce RTX 3060 (12 GiB) | Seu computador roda o jogo só "
         "com Vulkan"},
        {"relatorio=copiar", "Requisitos: DirectX 12 sim | Vulkan não |  | t"},
        {"relatorio=nenhum", semDiagnostico},
        {"relatorio=metade", semDiagnostico},
        {"relatorio=travar", semDiagnostico}};
    pasta_.Escrever("jogo_falso.json", R"({"vulkan":0,"titulo":"t"})");
    for (const auto& [ajustes, linha] : casos) {
        SCOPED_TRACE(ajustes);
        Ajustar(ajustes);
        // Left behind by somebody: never taken for this run's.
        ASSERT_TRUE(GravarArquivoAtomico(ArquivoDoRelatorio(), R"({"d3d12":false,"vulkan":false})"));
        const auto limite = ajustes == "relatorio=travar" ? 300ms : kLimiteDoDiagnostico;
        EXPECT_EQ(Rodar(limite).relatorioLido, linha != semDiagnostico);
        EXPECT_EQ(LinhasDoLog(pasta_), std::vector{linha});
        std::filesystem::remove(pasta_ / "ZuLauncher.log");
        EXPECT_FALSE(std::filesystem::exists(ArquivoDoRelatorio()));
        EXPECT_FALSE(EmUso(pasta_ / "Zu.exe"));
    }
    // Without a game the run ends without a word.
    std::filesystem::remove(pasta_ / "Zu.exe");
    std::filesystem::create_directory(pasta_ / "Zu.exe");
    EXPECT_EQ(ObterVeredito(Rodar()).titulo, L"Não foi possível fazer o diagnóstico");
    EXPECT_FALSE(pasta_.Tem("ZuLauncher.log"));
}

TEST_F(Requisitos, PastaDoJogoArgumentosInteirosESimulacao) {
    pasta_.Escrever("../Pasta.exe", "");  // what a path without quotes would start
    const std::wstring temporaria = std::filesystem::temp_directory_path();
    SetEnvironmentVariableW(L"TMP", pasta_.Caminho().c_str());
    Rodar();
    DefinirConfig({.pastaJogo = pasta_.Caminho(), .requisitosSimular = L"duas palavras é"});
    Ajustar("relatorio=so_vulkan");
    EXPECT_EQ(ObterVeredito(Rodar()).titulo, L"Seu computador roda o jogo só com Vulkan");
    const std::string linha = ". | --requisitos-json=" + ParaUtf8(ArquivoDoRelatorio().native());
    EXPECT_EQ(pasta_.Ler("jogo_falso.log"), linha + "\n" + linha + " | --requisitos-simular=duas palavras é\n");
    SetEnvironmentVariableW(L"TMP", temporaria.c_str());
}

TEST_F(Requisitos, OMaisNovoSempreVence) {
    const std::tuple<const char*, std::chrono::milliseconds, const char*> casos[] = {
        // The older game writes its report after the newer one has answered.
        {"relatorio=so_d3d12\ndemora=800", 30s, "relatorio=so_vulkan"},
        // The older one answers first, and must not take the newer one's place.
        {"relatorio=so_d3d12\ndemora=300", 30s, "relatorio=so_vulkan\ndemora=800"},
        // The older one ends while the newer one's report lies written, and must not delete it.
        {"relatorio=travar", 700ms, "relatorio=so_vulkan\nfica=1500"}};
    for (const auto& [velho, limiteDoVelho, novo] : casos) {
        SCOPED_TRACE(novo);
        std::filesystem::remove(pasta_ / "jogo_falso.log");
        Ajustar(velho);
        std::jthread antigo(RodarRequisitos, RenovarRequisitos(), limiteDoVelho);
        EXPECT_TRUE(Esperar(30s, [this] { return pasta_.Tem("jogo_falso.log"); }));
        Ajustar(novo);
        const ResultadoRequisitos logo = Rodar();
        antigo.join();
        const ResultadoRequisitos fim = ObterRequisitos();
        EXPECT_TRUE(logo.relatorioLido && !logo.d3d12 && fim.concluido && fim.relatorioLido && !fim.d3d12);
        EXPECT_FALSE(std::filesystem::exists(ArquivoDoRelatorio()));
    }
    // One that was overtaken before it began leaves the game, the file and the result alone.
    const std::uint32_t velho = RenovarRequisitos();
    RenovarRequisitos();
    std::filesystem::remove(pasta_ / "jogo_falso.log");
    ASSERT_TRUE(GravarArquivoAtomico(ArquivoDoRelatorio(), "do mais novo"));
    RodarRequisitos(velho);
    EXPECT_FALSE(ObterRequisitos().concluido || pasta_.Tem("jogo_falso.log"));
    EXPECT_TRUE(std::filesystem::remove(ArquivoDoRelatorio()));
}

}  // namespace
}  // namespace zu::launcher

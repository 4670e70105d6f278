#include "game/requisitos.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "core/config.h"
#include "core/formato.h"
#include "tests/jogo_falso/relatorios.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"

namespace zu::launcher {
namespace {

using std::chrono::milliseconds;

constexpr const char* kSemDiagnostico =
    "Requisitos: o Zu.exe não gerou o diagnóstico (versão antiga sem --requisitos-json?)";

class Requisitos : public testing::Test {
 protected:
    Requisitos() { Simular(L""); }

    // The settings as start-up fills them.
    void Simular(const std::wstring& simular) {
        ConfigLauncher config;
        config.pastaJogo = pasta_.Caminho();
        config.requisitosSimular = simular;
        DefinirConfig(config);
    }
    void InstalarJogo() { std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe"); }
    void Ajustar(const std::string& ajustes) { pasta_.Escrever("jogo_falso.txt", ajustes); }

    static ResultadoRequisitos Aguardar() {
        for (int i = 0; i < 3'000 && !ObterRequisitos().concluido; ++i)
            Sleep(10);
        EXPECT_TRUE(ObterRequisitos().concluido);
        return ObterRequisitos();
    }
    static ResultadoRequisitos Rodar(milliseconds limite = kLimiteDoDiagnostico) {
        IniciarRequisitos(limite);
        return Aguardar();
    }
    [[nodiscard]] std::string UltimaLinha() const {
        const auto linhas = teste::LinhasDoLog(pasta_);
        return linhas.empty() ? "" : linhas.back();
    }
    static std::filesystem::path ArquivoDoRelatorio() {
        return std::filesystem::temp_directory_path() /
               (L"ZuLauncher-requisitos-" + std::to_wstring(GetCurrentProcessId()) + L".json");
    }
    // The processes of this test's game that still run.
    [[nodiscard]] bool JogoVivo() const {
        std::error_code erro;
        std::filesystem::rename(pasta_ / "Zu.exe", pasta_ / "Zu2.exe", erro);
        const HandleArquivo exe(
            CreateFileW((pasta_ / "Zu2.exe").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        return !exe;
    }

    teste::PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

TEST_F(Requisitos, CadaRelatorioDoJogo) {
    InstalarJogo();
    constexpr const char* kNvidia = "https://www.nvidia.com/pt-br/drivers/";
    const struct {
        const char* nome;
        bool d3d12, vulkan;
        std::size_t itens;
        int nivel;
        const char* endereco;
    } casos[] = {
        {"bom", true, true, 9, 0, ""},
        {"so_d3d12", true, false, 9, 1, kNvidia},
        {"so_vulkan", false, true, 9, 1, kNvidia},
        {"avisos", true, true, 9, 1, kNvidia},
        {"falha", false, false, 9, 2, "https://www.intel.com.br/content/www/br/pt/support/detect.html"},
        {"sem_driver", false, false, 9, 2, "https://www.amd.com/pt/support/download/drivers.html"},
        {"abaixo_do_minimo", false, false, 9, 2, ""},
        {"sessenta", true, true, 60, 0, ""},
        {"longos", true, true, 9, 1, ""},
        {"sem_itens", true, true, 0, 0, ""},
        {"vazio", true, true, 0, 0, ""},
    };
    for (const auto& caso : casos) {
        Ajustar(std::string("relatorio=") + caso.nome + "\r\nmarca=1\r\n");
        const ResultadoRequisitos r = Rodar();
        EXPECT_TRUE(r.relatorioLido) << caso.nome;
        EXPECT_EQ(r.d3d12, caso.d3d12) << caso.nome;
        EXPECT_EQ(r.vulkan, caso.vulkan) << caso.nome;
        EXPECT_EQ(r.items.size(), caso.itens) << caso.nome;
        EXPECT_EQ(static_cast<int>(ObterVeredito(r).nivel), caso.nivel) << caso.nome;
        EXPECT_EQ(r.acaoEndereco, caso.endereco) << caso.nome;
        EXPECT_EQ(UltimaLinha(), Formatar("Requisitos: DirectX 12 {} | Vulkan {} | {} | {}", r.d3d12 ? "sim" : "não",
                                          r.vulkan ? "sim" : "não", r.placa, r.titulo));
        EXPECT_FALSE(std::filesystem::exists(ArquivoDoRelatorio())) << caso.nome;
    }
    EXPECT_EQ(UltimaLinha(), "Requisitos: DirectX 12 sim | Vulkan sim |  | ");

    Ajustar("relatorio=abaixo_do_minimo");
    EXPECT_EQ(ObterVeredito(Rodar()).titulo, L"Seu computador não atende aos requisitos mínimos");
    Ajustar("relatorio=avisos");
    const ResultadoRequisitos avisos = Rodar();
    EXPECT_EQ(ObterVeredito(avisos).titulo, L"Seu computador atende aos requisitos mínimos");
    EXPECT_EQ(avisos.acaoTexto, "Abrir site do driver");
    EXPECT_EQ(avisos.oQueFazer.size(), 2U);
    EXPECT_EQ(avisos.items[1].valor, "AMD Ryzen 5 5600X | 6 núcleos");
}

TEST_F(Requisitos, SemDiagnosticoUsavelTerminaComUmaLinha) {
    InstalarJogo();
    const std::pair<const char*, std::string> casos[] = {
        {"nenhum", ""},
        {"quebrado", ""},
        {"metade", ""},
        {"copiar", std::string(100 * 1024 * 1024, '[')},
        {"copiar", "{\"relatorio\":\"" + std::string(100 * 1024 * 1024, 'a') + "\"}"},
        {"copiar", std::string(200'000, '[')},
        {"copiar", ""},
    };
    for (const auto& [nome, copia] : casos) {
        Ajustar(std::string("relatorio=") + nome);
        pasta_.Escrever("jogo_falso.json", copia);
        std::filesystem::remove(pasta_ / "ZuLauncher.log");
        const ResultadoRequisitos r = Rodar();
        EXPECT_FALSE(r.relatorioLido) << nome;
        EXPECT_TRUE(r.d3d12 && r.vulkan) << nome;
        EXPECT_EQ(teste::LinhasDoLog(pasta_), std::vector<std::string>{kSemDiagnostico}) << nome;
        EXPECT_FALSE(std::filesystem::exists(ArquivoDoRelatorio())) << nome;
    }
    // A report that was left behind by someone is never taken for this one's.
    Ajustar("relatorio=nenhum");
    ASSERT_TRUE(GravarArquivoAtomico(ArquivoDoRelatorio(), teste::MontarRelatorio("bom")));
    EXPECT_FALSE(Rodar().relatorioLido);

    pasta_.Escrever("Zu.exe", "não é um programa");
    std::filesystem::remove(pasta_ / "ZuLauncher.log");
    EXPECT_FALSE(Rodar().relatorioLido);
    EXPECT_EQ(teste::LinhasDoLog(pasta_), std::vector<std::string>{kSemDiagnostico});
}

TEST_F(Requisitos, SemJogoConcluiCalado) {
    EXPECT_FALSE(Rodar().relatorioLido);
    std::filesystem::create_directory(pasta_ / "Zu.exe");
    const ResultadoRequisitos r = Rodar();
    EXPECT_FALSE(r.relatorioLido);
    EXPECT_FALSE(pasta_.Tem("ZuLauncher.log"));
    EXPECT_EQ(ObterVeredito(r).titulo, L"Não foi possível fazer o diagnóstico");
}

TEST_F(Requisitos, ArgumentosInteirosESimulacao) {
    InstalarJogo();
    Rodar();
    const std::string relatorio = "--requisitos-json=" + ParaUtf8(ArquivoDoRelatorio().native());
    EXPECT_EQ(pasta_.Ler("jogo_falso.log"), relatorio + "\n");

    Simular(L"duas palavras é");
    EXPECT_TRUE(Rodar().d3d12);
    EXPECT_EQ(pasta_.Ler("jogo_falso.log"), relatorio + "\n" + relatorio + " | --requisitos-simular=duas palavras é\n");
    Simular(L"so_vulkan");
    EXPECT_FALSE(Rodar().d3d12);
}

TEST_F(Requisitos, JogoQueTravaEEncerrado) {
    InstalarJogo();
    Ajustar("relatorio=travar");
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_FALSE(Rodar(milliseconds(300)).relatorioLido);
    const auto levou = std::chrono::steady_clock::now() - inicio;
    EXPECT_GE(levou, milliseconds(300));
    EXPECT_LT(levou, milliseconds(10'000));
    EXPECT_EQ(UltimaLinha(), kSemDiagnostico);
    EXPECT_FALSE(JogoVivo());
}

TEST_F(Requisitos, OMaisNovoSempreVence) {
    InstalarJogo();
    const struct {
        const char* antigo;
        milliseconds limiteDoAntigo;
        const char* novo;
    } casos[] = {
        // The older game hangs on after the newer one has answered.
        {"relatorio=travar", milliseconds(1'500), "relatorio=so_vulkan"},
        // The older one answers first, and must not take the newer one's place.
        {"relatorio=so_d3d12\ndemora=300", kLimiteDoDiagnostico, "relatorio=so_vulkan\ndemora=800"},
        // The older one ends while the newer one's report lies written, and must not delete it.
        {"relatorio=travar", milliseconds(700), "relatorio=so_vulkan\nfica=1500"},
    };
    for (const auto& caso : casos) {
        std::filesystem::remove(pasta_ / "jogo_falso.log");
        std::filesystem::remove(pasta_ / "ZuLauncher.log");
        Ajustar(caso.antigo);
        IniciarRequisitos(caso.limiteDoAntigo);
        while (!pasta_.Tem("jogo_falso.log"))
            Sleep(10);
        Ajustar(caso.novo);
        IniciarRequisitos();
        EXPECT_FALSE(ObterRequisitos().concluido);
        const ResultadoRequisitos logo = Aguardar();
        EXPECT_TRUE(logo.relatorioLido && !logo.d3d12 && logo.vulkan) << caso.novo;
        while (teste::LinhasDoLog(pasta_).size() < 2)
            Sleep(10);
        Sleep(100);
        const ResultadoRequisitos fim = ObterRequisitos();
        EXPECT_TRUE(fim.concluido && fim.relatorioLido && !fim.d3d12 && fim.vulkan) << caso.novo;
        EXPECT_FALSE(std::filesystem::exists(ArquivoDoRelatorio())) << caso.novo;
    }
}

}  // namespace
}  // namespace zu::launcher

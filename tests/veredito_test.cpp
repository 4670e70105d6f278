#include "game/veredito.h"

#include <gtest/gtest.h>

#include "core/formato.h"
#include "game/relatorio.h"

namespace zu::launcher {
namespace {

constexpr const char* kNvidia = "https://www.nvidia.com/pt-br/drivers/";
constexpr const char* kAmd = "https://www.amd.com/pt/support/download/drivers.html";
constexpr const char* kIntel = "https://www.intel.com.br/content/www/br/pt/support/detect.html";
constexpr const char* kAtualizacoes = "ms-settings:windowsupdate";

ResultadoRequisitos Analisar(const std::string& relatorio) {
    ResultadoRequisitos resultado;
    resultado.relatorioLido = true;
    resultado.relatorio = relatorio;
    AnalisarRelatorio(resultado);
    return resultado;
}

// The items in one line each: "state nome<valor<penultima<ultima".
std::string Itens(const ResultadoRequisitos& resultado) {
    std::string texto;
    for (const ItemRequisito& item : resultado.items) {
        texto += Formatar("{} {}<{}<{}<{}\n", static_cast<int>(item.estado), item.nome, item.valor, item.penultima,
                          item.ultima);
    }
    return texto;
}

TEST(Relatorio, LinhasDaTabela) {
    const std::pair<const char*, const char*> casos[] = {
        {"Item | a\n[OK] n | v | p | u", "0 n<v<p<u\n"},
        {"Item | a\r\n \t[!]n | v1 | v2 | v3 | p | u \t\r\n", "1 n<v1 | v2 | v3<p<u\n"},
        {"  Item | \t|\r\n[X]  n |  |  | u", "2 n<<<u\n"},
        {"Item | a\n[X] a | b | c", ""},    // three parts
        {"Item | a\n[X] a | b | c |", ""},  // the last separator lost its blank
        {"Item | a\n[X] a|b|c|d | e | f | g", "2 a|b|c|d<e<f<g\n"},
        {"Item | a\n[ok] a | b | c | d\nOK a | b | c | d\n[OK a | b | c | d", ""},
        {"Item | a\ntexto solto\n[OK] a | b | c | d", "0 a<b<c<d\n"},  // the table goes on behind a line that is no row
        {"Item | a\n[OK] a | b | c | d\n \r\n[X] e | f | g | h", "0 a<b<c<d\n"},
        {"Item | a\n\nItem | b\n[X] e | f | g | h", "2 e<f<g<h\n"},  // a second table
        {"Item |\n[OK] a | b | c | d", ""},
        {"item | a\n[OK] a | b | c | d", ""},
        {"[OK] a | b | c | d", ""},
        {"Item | a\nO que fazer:\n[OK] a | b | c | d", "0 a<b<c<d\n"},
        {"Item | [X] a | b | c | d", ""},
        {"", ""},
        {"Item | a", ""},
    };
    for (const auto& [texto, esperado] : casos)
        EXPECT_EQ(Itens(Analisar(texto)), esperado) << texto;
}

TEST(Relatorio, Conselhos) {
    using Conselhos = std::vector<std::string>;
    const std::pair<const char*, Conselhos> casos[] = {
        {"- antes\nO que fazer:\r\n  - um \r\n\n-dois\n- três\n-  quatro\n- ", {"um", "três", " quatro"}},
        {"O que fazer: \n- a", {"a"}},  // trimmed like every line
        {"O que fazer:x\n- a", {}},
        {"o que fazer:\n- a", {}},
        // Advice and table do not end one another.
        {"Item | a\nO que fazer:\n- dentro\n\n- fora", {"fora"}},
        {"O que fazer:\n- um\nItem | a\n- dentro\n\n- dois", {"um", "dois"}},
    };
    for (const auto& [texto, esperado] : casos)
        EXPECT_EQ(Analisar(texto).oQueFazer, esperado) << texto;
}

TEST(Relatorio, FornecedorEAcao) {
    const std::string tabela = "\n\nItem | a\n";
    const std::string vulkan = tabela + "[X] Vulkan 1.3 | a | b | Não roda\n";
    const std::string semDriver = tabela + "[X] Placa de vídeo | a | b | Sem driver\n";
    const struct {
        std::string texto;
        const char* endereco;
    } casos[] = {
        // which rows mark
        {tabela + "[OK] Vulkan 1.3 | a | b | c", ""},
        {tabela + "[!] Memória | a | b | c", ""},
        {tabela + "[X] Vulkan | a | b | c\n[X] vulkan 1.3 | a | b | c\n[X] DirectX 12.0 | a | b | c", ""},
        {tabela + "[!] Placa de vídeo | a | b | c", kAtualizacoes},
        {tabela + "[X] DirectX 12 | a | b | c", kAtualizacoes},
        {tabela + "[!] Vulkan 1.3 | a | b | c", kAtualizacoes},
        {tabela + "[X] Driver de vídeo | a | b | c", kAtualizacoes},
        // the id of the card
        {"VEN 10DE" + vulkan, kNvidia},
        {"x (PCI\\VEN 1002 DEV 1)" + vulkan, kAmd},
        {"VEN 1022" + vulkan, kAmd},
        {"- VEN 8086" + vulkan, kIntel},
        {"O que fazer:\n- VEN 8086" + vulkan, kIntel},
        {"VEN 10de" + vulkan, kAtualizacoes},
        {"ven 10DE" + vulkan, kAtualizacoes},
        {"VEN_10DE" + vulkan, kAtualizacoes},
        {"VEN 10D" + vulkan, kAtualizacoes},
        {"VEN 1414 (software)\nVEN 8086" + vulkan, kIntel},
        {"VEN 8086\nVEN 10DE" + vulkan, kIntel},
        {"VEN 1414\nVEN 10DE" + vulkan, kAtualizacoes},  // the first counts, known or not
        {vulkan + "\nVEN 8086", kIntel},
        {vulkan + "VEN 8086", kAtualizacoes},  // inside the table
        // the driver's name goes before the id
        {"VEN 8086" + vulkan + "[OK] Driver de vídeo | NVIDIA 551 | b | c", kNvidia},
        {"VEN 8086" + vulkan + "[OK] Driver de vídeo | AMD 24 | b | c", kAmd},
        {"VEN 10DE" + vulkan + "[OK] Driver de vídeo | Intel 31 | x | b | c", kIntel},
        {"VEN 10DE" + vulkan + "[OK] Driver de vídeo | O NVIDIA | b | c", kNvidia},
        {"VEN 10DE" + vulkan + "[OK] Driver de vídeo | intel | b | c", kNvidia},
        {"VEN 10DE" + vulkan + "[OK] Driver | Intel | b | c", kNvidia},
        {tabela + "[!] Driver de vídeo | NVIDIA 531 | b | c", kNvidia},
        // a card without driver
        {"VEN 10DE\nPlaca sem driver: VEN 1002" + semDriver, kAmd},
        {"Placa sem driver: VEN 8086\nPlaca sem driver: VEN 1002" + semDriver, kIntel},
        {"Placa sem driver: VEN 1002" + vulkan, kAtualizacoes},  // it has one
        {"Placa sem driver\nVEN 10DE" + semDriver, kNvidia},
        {"Placa sem driver (software) VEN 1002" + semDriver, kAmd},
        {"Placa sem driver: VEN 1002" + semDriver + "[X] Driver de vídeo | NVIDIA | b | c", kAmd},
        // no driver helps a card that is too weak
        {"VEN 10DE" + vulkan + "[X] Placa de vídeo | a | b | Abaixo do mínimo", ""},
        {"VEN 10DE" + vulkan + "[OK] Placa de vídeo | a | b | Abaixo do mínimo", ""},
        {"VEN 10DE" + vulkan + "[X] Memória | a | b | Abaixo do mínimo", kNvidia},
        {"VEN 10DE" + vulkan + "[!] Placa de vídeo | a | b | Abaixo do recomendado", kNvidia},
    };
    for (const auto& caso : casos) {
        const ResultadoRequisitos r = Analisar(caso.texto);
        const std::string endereco = caso.endereco;
        EXPECT_EQ(r.acaoEndereco, endereco) << caso.texto;
        EXPECT_EQ(r.acaoTexto, endereco.empty()            ? ""
                               : endereco == kAtualizacoes ? "Abrir Windows Update"
                                                           : "Abrir site do driver")
            << caso.texto;
    }
}

TEST(Relatorio, PaginaSoParaONomeExato) {
    for (const char* nome : {"", "nvidia", "NVIDIA ", "Nvidia", "INTEL", "10de", "10DE ", "0x10DE", "1414", "amd"})
        EXPECT_EQ(PaginaDoDriver(nome), kAtualizacoes) << nome;
    EXPECT_EQ(PaginaDoDriver("AMD"), kAmd);
    EXPECT_EQ(PaginaDoDriver("NVIDIA"), kNvidia);
    EXPECT_EQ(PaginaDoDriver("Intel"), kIntel);
}

TEST(Relatorio, ChavesTiposEPadroes) {
    const struct {
        const char* json;
        bool d3d12;
        bool vulkan;
        const char* titulo;
    } casos[] = {
        {"{}", true, true, ""},
        {"{\"d3d12\":0,\"vulkan\":2,\"titulo\":7}", false, true, ""},
        {"{\"d3d12\":\"false\",\"vulkan\":null,\"titulo\":[\"a\"]}", true, true, ""},
        {"{\"d3d12\":false,\"vulkan\":false,\"titulo\":\"t\"}", false, false, "t"},
        {"{\"d3d12\":true,\"d3d12\":false,\"titulo\":\"a\",\"titulo\":\"b\"}", true, true, "a"},
        {"{\"D3D12\":false,\"x\":{\"vulkan\":false},\"Titulo\":\"t\"}", true, true, ""},
        {"\xEF\xBB\xBF{\"vulkan\":false}", true, false, ""},
        {"[{\"d3d12\":false}]", true, true, ""},
        {"null", true, true, ""},
    };
    for (const auto& caso : casos) {
        ResultadoRequisitos r;
        std::string erro;
        ASSERT_TRUE(LerRelatorio(caso.json, r, erro)) << caso.json << erro;
        EXPECT_TRUE(r.relatorioLido && !r.concluido);
        EXPECT_EQ(r.d3d12, caso.d3d12) << caso.json;
        EXPECT_EQ(r.vulkan, caso.vulkan) << caso.json;
        EXPECT_EQ(r.titulo, caso.titulo) << caso.json;
    }

    ResultadoRequisitos r;
    std::string erro;
    ASSERT_TRUE(LerRelatorio(R"({"d3d12Detalhe":"1","vulkanDetalhe":"2","placa":"3","memoria":"4","sistema":"5",
        "geral":"6","titulo":"7","relatorio":"VEN 10DE\nItem | a\n[X] DirectX 12 | b | c | d\n\nO que fazer:\n- e"})",
                             r, erro));
    EXPECT_EQ(r.d3d12Detalhe + r.vulkanDetalhe + r.placa + r.memoria + r.sistema + r.geral + r.titulo, "1234567");
    EXPECT_EQ(Itens(r), "2 DirectX 12<b<c<d\n");
    EXPECT_EQ(r.oQueFazer, std::vector<std::string>{"e"});
    EXPECT_EQ(r.acaoEndereco, kNvidia);
}

TEST(Relatorio, CortadoEmCadaByteNadaSai) {
    const std::string inteiro =
        R"({"d3d12":false,"placa":"vídeo é","lista":[1,{"a":null}],"relatorio":"Item | a\n[X] Vulkan 1.3 | b | c | d"})";
    for (std::size_t i = 0; i < inteiro.size(); ++i) {
        ResultadoRequisitos r;
        std::string erro;
        EXPECT_FALSE(LerRelatorio(inteiro.substr(0, i), r, erro)) << i;
        EXPECT_FALSE(r.relatorioLido || !r.d3d12 || !r.placa.empty() || !r.items.empty()) << i;
    }
    ResultadoRequisitos r;
    std::string erro;
    EXPECT_FALSE(LerRelatorio(inteiro + "}", r, erro));
    EXPECT_FALSE(LerRelatorio(std::string(1'000'000, '['), r, erro));
    EXPECT_FALSE(r.relatorioLido);
}

TEST(Veredito, UmRamoPorVez) {
    const std::wstring soVulkan =
        L"Só o Vulkan roda neste computador: escolha o Vulkan em Opções → API gráfica (fica gravado no "
        L"Config\\Zu.ini).";
    const std::wstring soD3d12 =
        L"Só o DirectX 12 roda neste computador: escolha o DirectX 12 em Opções → API gráfica (fica gravado no "
        L"Config\\Zu.ini).";
    const std::wstring falha = L"O jogo não pode ser aberto neste computador. Veja abaixo o que falta e como resolver.";
    const std::wstring amarelo =
        L"Há itens em amarelo (abaixo do recomendado ou a atualizar): o jogo roda, mas pode ficar lento.";
    const std::wstring ambos =
        L"O jogo roda com DirectX 12 e com Vulkan neste computador (escolha em Opções → API gráfica).";
    const std::wstring atende = L"Seu computador atende aos requisitos";
    const struct {
        const char* geral;
        bool d3d12, vulkan;
        EstadoItem item;
        const wchar_t* titulo;
        int nivel;
        std::wstring tituloEsperado, texto;
    } casos[] = {
        {"falha", true, true, EstadoItem::kOk, L"", 2, L"Seu computador não atende aos requisitos mínimos", falha},
        {"falha", false, false, EstadoItem::kFalha, L"Título do jogo", 2, L"Título do jogo", falha},
        {"aviso", true, false, EstadoItem::kFalha, L"", 1, atende, soD3d12},
        {"aviso", false, false, EstadoItem::kOk, L"", 1, atende, soD3d12},
        {"aviso", false, true, EstadoItem::kOk, L"", 1, atende, soVulkan},
        {"aviso", true, true, EstadoItem::kOk, L"", 1, atende, soVulkan},
        {"ok", true, true, EstadoItem::kAviso, L"", 1, atende, amarelo},
        {"", false, true, EstadoItem::kFalha, L"t", 1, L"t", amarelo},
        {"Falha", true, false, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com DirectX 12 neste computador."},
        {"", false, true, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com Vulkan neste computador."},
        {"", false, false, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com Vulkan neste computador."},
        {"aviso ", true, true, EstadoItem::kOk, L"t", 0, L"t", ambos},
    };
    for (const auto& caso : casos) {
        ResultadoRequisitos r{.concluido = true, .relatorioLido = true, .d3d12 = caso.d3d12, .vulkan = caso.vulkan};
        r.geral = caso.geral;
        r.items = {ItemRequisito{}, ItemRequisito{.estado = caso.item}};
        const VereditoRequisitos v = JulgarRequisitos(r, caso.titulo);
        const std::string nome = Formatar("{} {} {}", caso.geral, caso.d3d12, caso.vulkan);
        EXPECT_EQ(static_cast<int>(v.nivel), caso.nivel) << nome;
        EXPECT_EQ(v.titulo, caso.tituloEsperado) << nome;
        EXPECT_EQ(v.texto, caso.texto) << nome;
    }

    ResultadoRequisitos semRelatorio{.concluido = true, .geral = "falha"};
    const VereditoRequisitos v = JulgarRequisitos(semRelatorio, L"título");
    EXPECT_EQ(v.nivel, NivelVeredito::kOk);
    EXPECT_EQ(v.titulo, L"Não foi possível fazer o diagnóstico");
    EXPECT_EQ(v.texto,
              L"O Zu.exe não respondeu ao --requisitos-json (Zu.exe ausente ou de uma versão antiga). Feche e abra o "
              L"launcher para baixar o jogo de novo; detalhes no ZuLauncher.log.");
}

}  // namespace
}  // namespace zu::launcher

#include "game/veredito.h"

#include <gtest/gtest.h>

#include "core/formato.h"
#include "game/relatorio.h"

namespace zu::launcher {
namespace {

const std::string kNvidia = "https://www.nvidia.com/pt-br/drivers/";
const std::string kAmd = "https://www.amd.com/pt/support/download/drivers.html";
const std::string kIntel = "https://www.intel.com.br/content/www/br/pt/support/detect.html";
const std::string kAtualizacoes = "ms-settings:windowsupdate";

ResultadoRequisitos Analisar(const std::string& relatorio) {
    ResultadoRequisitos resultado{.relatorioLido = true, .relatorio = relatorio};
    AnalisarRelatorio(resultado);
    return resultado;
}

// A line for each item, "state name<value<next-to-last<last", and for each piece of advice, "- advice".
std::string ItensEConselhos(const ResultadoRequisitos& resultado) {
    std::string texto;
    for (const ItemRequisito& i : resultado.items)
        texto += Formatar("{} {}<{}<{}<{}\n", static_cast<int>(i.estado), i.nome, i.valor, i.penultima, i.ultima);
    for (const std::string& conselho : resultado.oQueFazer)
        texto += "- " + conselho + "\n";
    return texto;
}

TEST(Relatorio, TabelaEConselhosLinhaPorLinha) {
    const std::pair<const char*, const char*> casos[] = {
        {"Item | a\r\n[OK] n | v | p | u\r\n \t[!]n | v1 | v2 | v3 | p | u \t\r\n[X]  n |  |  | u",
         "0 n<v<p<u\n1 n<v1 | v2 | v3<p<u\n2 n<<<u\n"},
        {"Item | a\n[X] a | b | c\n[X] a | b | c |\n[X] a|b|c|d | e | f | g", "2 a|b|c|d<e<f<g\n"},
        {"Item | a\n[ok] a | b | c | d\nOK a | b | c | d\n[OK] a | b | c | d", "0 a<b<c<d\n"},
        {"Item | a\n[OK] a | b | c | d\n \r\n[X] e | f | g | h\nItem | b\n[X] i | j | k | l", "0 a<b<c<d\n2 i<j<k<l\n"},
        {"Item |\n[OK] a | b | c | d\nItem | [X] a | b | c | d", ""},
        {"- antes\nO que fazer:\r\n  - um \r\n\n-dois\n- três\n-  quatro", "- um\n- três\n-  quatro\n"},
        {"O que fazer:x\n- a\no que fazer:\n- b", ""},
        // Advice and table do not end one another.
        {"Item | a\nO que fazer:\n- dentro\n[OK] a | b | c | d\n\n- fora", "0 a<b<c<d\n- fora\n"},
        {"O que fazer:\n- um\nItem | a\n- dentro\n\n- dois", "- um\n- dois\n"},
    };
    for (const auto& [texto, esperado] : casos)
        EXPECT_EQ(ItensEConselhos(Analisar(texto)), esperado) << texto;
}

TEST(Relatorio, FornecedorEAcao) {
    const std::string tabela = "\n\nItem | a\n";
    const std::string vulkan = tabela + "[X] Vulkan 1.3 | a | b | Não roda\n";
    const std::string semDriver = tabela + "[X] Placa de vídeo | a | b | Sem driver\n";
    const std::pair<std::string, std::string> casos[] = {
        // which rows mark
        {tabela + "[OK] Vulkan 1.3 | a | b | c\n[!] Memória | a | b | c\n[X] Vulkan | a | b | c", ""},
        {tabela + "[!] Placa de vídeo | a | b | c", kAtualizacoes},
        {tabela + "[X] DirectX 12 | a | b | c", kAtualizacoes},
        {tabela + "[X] Driver de vídeo | a | b | c", kAtualizacoes},
        // the id of the card: the first counts, known or not, but not one inside the table
        {"VEN 10DE" + vulkan, kNvidia},
        {"x (PCI\\VEN 1002 DEV 1)" + vulkan, kAmd},
        {"O que fazer:\n- VEN 1022" + vulkan, kAmd},
        {vulkan + "VEN 10DE\n\nVEN 8086", kIntel},
        {"VEN 1414 (software)\nVEN 8086\nVEN 10DE" + vulkan, kIntel},
        {"VEN 1414\nVEN 10DE" + vulkan, kAtualizacoes},
        {"VEN 10de" + vulkan, kAtualizacoes},
        {"VEN 10D\nVEN 8086" + vulkan, kIntel},
        // the driver's name goes before the id
        {"VEN 8086" + vulkan + "[OK] Driver de vídeo | NVIDIA 551 | b | c", kNvidia},
        {"VEN 8086" + vulkan + "[OK] Driver de vídeo | AMD 24 | b | c", kAmd},
        {"VEN 10DE" + vulkan + "[OK] Driver de vídeo | Intel 31 | x | b | c", kIntel},
        {"VEN 10DE" + vulkan + "[OK] Driver de vídeo | O AMD | b | c\n[OK] Driver | Intel | b | c", kNvidia},
        // a card without driver
        {"VEN 10DE\nPlaca sem driver: VEN 1002\nPlaca sem driver: VEN 8086" + semDriver +
             "[X] Driver de vídeo | NVIDIA | b | c",
         kAmd},
        {"Placa sem driver: VEN 1002" + tabela + "[X] Placa de vídeo | a | b | c", kAtualizacoes},  // it has one
        {"Placa sem driver\nVEN 10DE" + semDriver, kNvidia},
        // no driver helps a card that is too weak
        {"VEN 10DE" + vulkan + "[OK] Placa de vídeo | a | b | Abaixo do mínimo", ""},
        {"VEN 10DE" + vulkan + "[X] Memória | a | b | Abaixo do mínimo", kNvidia},
    };
    for (const auto& [texto, endereco] : casos) {
        const ResultadoRequisitos r = Analisar(texto);
        EXPECT_EQ(r.acaoEndereco, endereco) << texto;
        const char* const rotulo = endereco == kAtualizacoes ? "Abrir Windows Update" : "Abrir site do driver";
        EXPECT_EQ(r.acaoTexto, endereco.empty() ? "" : rotulo) << texto;
    }
}

TEST(Relatorio, ChavesTiposEPadroes) {
    const std::tuple<const char*, bool, bool, const char*> casos[] = {
        {"{\"d3d12\":0,\"vulkan\":2,\"titulo\":7}", false, true, ""},
        {"{\"d3d12\":\"false\",\"vulkan\":null,\"titulo\":[\"a\"]}", true, true, ""},
        {"\xEF\xBB\xBF{\"vulkan\":false,\"titulo\":\"t\",\"titulo\":\"u\"}", true, false, "t"},
        {"{\"D3D12\":false,\"x\":{\"vulkan\":false}}", true, true, ""},
        {"[{\"d3d12\":false}]", true, true, ""},
    };
    for (const auto& [json, d3d12, vulkan, titulo] : casos) {
        ResultadoRequisitos r;
        std::string erro;
        ASSERT_TRUE(LerRelatorio(json, r, erro)) << json << erro;
        EXPECT_TRUE(r.relatorioLido && !r.concluido);
        EXPECT_EQ(std::tuple(r.d3d12, r.vulkan, r.titulo), std::tuple(d3d12, vulkan, std::string(titulo))) << json;
    }

    const std::string inteiro = R"({"d3d12Detalhe":"1","vulkanDetalhe":"2","placa":"3","memoria":"4","sistema":"5",
        "geral":"6","titulo":"7","relatorio":"VEN 10DE\nItem | a\n[X] DirectX 12 | b | c | d\n\nO que fazer:\n- e"})";
    ResultadoRequisitos r;
    std::string erro;
    for (std::size_t i = 0; i < inteiro.size(); ++i)
        EXPECT_FALSE(LerRelatorio(inteiro.substr(0, i), r, erro)) << i;
    EXPECT_FALSE(r.relatorioLido || !r.placa.empty() || !r.items.empty());
    ASSERT_TRUE(LerRelatorio(inteiro, r, erro));
    EXPECT_EQ(r.d3d12Detalhe + r.vulkanDetalhe + r.placa + r.memoria + r.sistema + r.geral + r.titulo, "1234567");
    EXPECT_EQ(ItensEConselhos(r), "2 DirectX 12<b<c<d\n- e\n");
    EXPECT_EQ(r.acaoEndereco, kNvidia);
}

TEST(Veredito, UmRamoPorVez) {
    const auto so = [](const std::wstring& api) {
        return L"Só o " + api + L" roda neste computador: escolha o " + api +
               L" em Opções → API gráfica (fica gravado no Config\\Zu.ini).";
    };
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
        {"aviso", false, false, EstadoItem::kFalha, L"", 1, atende, so(L"DirectX 12")},
        {"aviso", true, true, EstadoItem::kOk, L"t", 1, L"t", so(L"Vulkan")},
        {"falhas", false, true, EstadoItem::kAviso, L"t", 1, L"t", amarelo},
        {"ok", true, false, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com DirectX 12 neste computador."},
        {"", false, true, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com Vulkan neste computador."},
        {"", false, false, EstadoItem::kOk, L"", 0, atende, L"O jogo roda com Vulkan neste computador."},
        {"aviso ", true, true, EstadoItem::kOk, L"", 0, atende, ambos},
    };
    for (const auto& caso : casos) {
        ResultadoRequisitos r{.relatorioLido = true, .d3d12 = caso.d3d12, .vulkan = caso.vulkan, .geral = caso.geral};
        r.items = {ItemRequisito{}, ItemRequisito{.estado = caso.item}};
        const VereditoRequisitos v = JulgarRequisitos(r, caso.titulo);
        EXPECT_EQ(static_cast<int>(v.nivel), caso.nivel) << caso.geral;
        EXPECT_EQ(v.titulo, caso.tituloEsperado) << caso.geral;
        EXPECT_EQ(v.texto, caso.texto) << caso.geral;
    }

    const VereditoRequisitos v = JulgarRequisitos({.geral = "falha"}, L"título");
    EXPECT_EQ(v.nivel, NivelVeredito::kOk);
    EXPECT_EQ(v.titulo, L"Não foi possível fazer o diagnóstico");
    EXPECT_EQ(v.texto,
              L"O Zu.exe não respondeu ao --requisitos-json (Zu.exe ausente ou de uma versão antiga). Feche e abra o "
              L"launcher para baixar o jogo de novo; detalhes no ZuLauncher.log.");
}

}  // namespace
}  // namespace zu::launcher

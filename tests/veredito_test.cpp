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
    ResultadoRequisitos resultado{{.relatorioLido = true}};
    resultado.relatorio = relatorio;
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
        {"O que fazer:\n- um\nItem | a\n- dentro\n\n- dois", "- um\n- dois\n"}};
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
        {tabela + "[X] Driver de vídeo | a | b | c", kAtualizacoes},
        // the id of the card: the first counts, known or not, but not one inside the table
        {"O que fazer:\n- VEN 1022" + vulkan, kAmd},
        {vulkan + "VEN 10DE\n\nVEN 8086", kIntel},
        {"VEN 1414 (software)\nVEN 8086\nVEN 10DE" + vulkan, kIntel},
        {"VEN 1414\nVEN 10DE" + vulkan, kAtualizacoes},
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
        {"VEN 10DE" + vulkan + "[OK] Placa de vídeo | a | b | Abaixo do mínimo\n[OK] Placa de vídeo | a | b | c", ""},
        {"VEN 10DE" + vulkan + "[X] Memória | a | b | Abaixo do mínimo", kNvidia}};
    for (const auto& [texto, endereco] : casos) {
        const ResultadoRequisitos r = Analisar(texto);
        EXPECT_EQ(r.acaoEndereco, endereco) << texto;
        const char* const rotulo = endereco == kAtualizacoes ? "Abrir Windows Update" : "Abrir site do driver";
        EXPECT_EQ(r.acaoTexto, endereco.empty() ? "" : rotulo) << texto;
    }
}

TEST(Relatorio, CadaChaveNoSeuLugarEOQueFaltaRoda) {
    const std::string inteiro = R"({"d3d12Detalhe":"1","vulkanDetalhe":"2","placa":"3","memoria":"4","sistema":"5",
        "geral":"6","titulo":"7","relatorio":"VEN 10DE\nItem | a\n[X] DirectX 12 | b | c | d\n\nO que fazer:\n- e"})";
    ResultadoRequisitos r;
    std::string erro;
    EXPECT_FALSE(LerRelatorio(inteiro + ",", r, erro) || r.relatorioLido || !r.items.empty());
    EXPECT_TRUE(LerRelatorio(inteiro, r, erro) && r.relatorioLido && r.d3d12 && r.vulkan);
    EXPECT_EQ(r.d3d12Detalhe + r.vulkanDetalhe + r.placa + r.memoria + r.sistema + r.geral + r.titulo, "1234567");
    EXPECT_EQ(ItensEConselhos(r), "2 DirectX 12<b<c<d\n- e\n");
    EXPECT_EQ(r.acaoEndereco, kNvidia);
}

TEST(Veredito, UmRamoPorVez) {
    const std::tuple<const char*, bool, bool, EstadoItem, const wchar_t*, int, const wchar_t*, std::wstring> casos[] = {
        {"falha", true, true, EstadoItem::kOk, L"", 2, L"Seu computador não atende aos requisitos mínimos", L"O jogo"},
        {"aviso", false, false, EstadoItem::kFalha, L"t", 1, L"t", L"Só o DirectX 12 roda neste"},
        {"aviso", true, true, EstadoItem::kOk, L"t", 1, L"t", L"Só o Vulkan roda neste"},
        {"falhas", false, true, EstadoItem::kAviso, L"", 1, L"Seu computador atende aos requisitos", L"Há itens em am"},
        {"ok", true, false, EstadoItem::kOk, L"t", 0, L"t", L"O jogo roda com DirectX 12 neste computador."},
        {"", false, true, EstadoItem::kOk, L"t", 0, L"t", L"O jogo roda com Vulkan neste computador."},
        {"aviso ", true, true, EstadoItem::kOk, L"t", 0, L"t", L"O jogo roda com DirectX 12 e com Vulkan neste"}};
    for (const auto& [geral, d3d12, vulkan, item, nosso, nivel, titulo, inicio] : casos) {
        ResultadoRequisitos r{{.relatorioLido = true, .d3d12 = d3d12, .vulkan = vulkan}};
        r.geral = geral;
        r.items = {ItemRequisito{}, ItemRequisito{.estado = item}};
        const VereditoRequisitos v = JulgarRequisitos(r, nosso);
        EXPECT_EQ(static_cast<int>(v.nivel), nivel) << geral;
        EXPECT_EQ(v.titulo, titulo) << geral;
        EXPECT_TRUE(v.texto.starts_with(inicio)) << geral;
        r.relatorioLido = false;
        EXPECT_EQ(JulgarRequisitos(r, nosso).titulo, L"Não foi possível fazer o diagnóstico");
        EXPECT_EQ(JulgarRequisitos(r, nosso).nivel, NivelVeredito::kOk);
    }
}

}  // namespace
}  // namespace zu::launcher

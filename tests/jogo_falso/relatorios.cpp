#include "tests/jogo_falso/relatorios.h"

#include <algorithm>
#include <vector>

#include "core/formato.h"

namespace zu::launcher::teste {
namespace {

using Linhas = std::vector<std::string>;

// The columns of the table below: what a report has in place of that of a computer on which everything runs.
struct Relatorio {
    std::string_view nome;
    bool d3d12 = true;
    bool vulkan = true;
    std::string geral = "ok";
    std::string titulo = "Seu computador atende aos requisitos";
    Linhas conselhos;
    Linhas linhas;  // for the rows of the same names
    std::string placa = "NVIDIA GeForce RTX 3060 (12 GiB)";
    std::string placas = "Placa: NVIDIA GeForce RTX 3060 (VEN 10DE DEV 2503)";
    int itens = 9;
};

const std::string kLongo(2'000, 'w');
const std::string kAtualize = "Atualize o driver da placa de vídeo.";

// clang-format off
const Relatorio kRelatorios[] = {
    {"bom"},
    {"so_d3d12", true, false, "aviso", "Seu computador roda o jogo só com DirectX 12", {kAtualize}},
    {"so_vulkan", false, true, "aviso", "Seu computador roda o jogo só com Vulkan", {"Escolha o Vulkan em Opções."}},
    {"avisos", true, true, "ok", "Seu computador atende aos requisitos mínimos", {kAtualize, "Feche outros programas."},
     {"[!] Memória | 7,9 GiB | 8 GiB | Abaixo do recomendado", "[!] Driver de vídeo | NVIDIA 531 | 532 | Atualizar"}},
    {"falha", false, false, "falha", "Seu computador não atende aos requisitos mínimos", {kAtualize},
     {"[!] Placa de vídeo | Intel(R) HD Graphics 530 | GeForce GTX 1050 | Abaixo do recomendado",
      "[X] Driver de vídeo | Intel 20.19.15 | NVIDIA 532 | Desatualizado"},
     "Intel(R) HD Graphics 530", "Placa: Intel(R) HD Graphics 530 (VEN 8086 DEV 1912)"},
    {"sem_driver", false, false, "falha", "A placa de vídeo está sem driver", {kAtualize},
     {"[X] Placa de vídeo | Controlador de vídeo | GeForce GTX 1050 | Sem driver",
      "[X] Driver de vídeo | Microsoft 10.0 | NVIDIA 532 | Sem driver"},
     "Adaptador de Vídeo Básico", "Placa sem driver: Controlador de vídeo (VEN 1002 DEV 73BF)"},
    {"abaixo_do_minimo", false, false, "falha", "", {"O jogo precisa de uma placa de vídeo mais nova."},
     {"[X] Placa de vídeo | NVIDIA GeForce 9500 GT | GeForce GTX 1050 | Abaixo do mínimo"}, "NVIDIA GeForce 9500 GT"},
    {"longos", true, true, "ok", kLongo, {kLongo, "curto"}, {"[!] Memória | " + kLongo + " | 8 GiB | " + kLongo}, kLongo},
    {.nome = "sessenta", .itens = 60},
    {.nome = "sem_itens", .itens = 0},
};
// clang-format on

// The line ends are those of a JSON text.
const std::string kFim = "\\r\\n";

std::string Tabela(const Relatorio& r) {
    const Linhas boas{"[OK] Sistema | Windows 11 Pro 64 bits (22631) | Windows 10 64 bits (19041) | OK",
                      "[OK] Processador | AMD Ryzen 5 5600X | 6 núcleos | 4 núcleos | OK",
                      "[OK] Memória | 15,9 GiB | 8 GiB | OK",
                      "[OK] Placa de vídeo | NVIDIA GeForce RTX 3060 | GeForce GTX 1050 | OK",
                      "[OK] Memória de vídeo | 12,0 GiB | 2 GiB | OK",
                      "[OK] Driver de vídeo | NVIDIA 551.86 | NVIDIA 531.18 | OK",
                      r.d3d12 ? "[OK] DirectX 12 | Recurso 12_1 | Recurso 12_0 | OK"
                              : "[X] DirectX 12 | Recurso 11_0 | Recurso 12_0 | Não roda",
                      r.vulkan ? "[OK] Vulkan 1.3 | Vulkan 1.3.277 | Vulkan 1.3 | OK"
                               : "[X] Vulkan 1.3 | não encontrado | Vulkan 1.3 | Não roda",
                      "[OK] Espaço em disco | 214 GiB | 20 GiB | OK"};
    std::string texto = "Item | Seu computador | Mínimo | Situação" + kFim;
    for (int i = 0; i < r.itens; ++i) {
        const bool extra = i >= static_cast<int>(boas.size());
        const std::string boa =
            extra ? Formatar("[OK] Item {} | valor | nenhum | OK", i) : boas[static_cast<std::size_t>(i)];
        const std::string nome = boa.substr(boa.find(']'), boa.find(" |") - boa.find(']') + 2);
        const auto outra = std::ranges::find_if(
            r.linhas, [&](const std::string& linha) { return linha.find(nome) != std::string::npos; });
        texto += (outra == r.linhas.end() ? boa : *outra) + kFim;
    }
    return r.itens == 0 ? "" : texto;
}

std::string Texto(const Relatorio& r) {
    std::string texto = "Diagnóstico do Zu" + kFim + r.placas + kFim +
                        "Placa: Microsoft Basic Render Driver (software) (VEN 1414 DEV 008C)" + kFim + kFim + Tabela(r);
    if (!r.conselhos.empty()) texto += kFim + "O que fazer:" + kFim;
    for (const std::string& conselho : r.conselhos)
        texto += "- " + conselho + kFim;
    return texto;
}

}  // namespace

std::string MontarRelatorio(std::string_view nome) {
    if (nome == "vazio") return "{}";
    if (nome == "quebrado") return "{\"d3d12\": talvez}";
    if (nome == "metade") return MontarRelatorio("bom").substr(0, 1'000);
    const auto r = std::ranges::find(kRelatorios, nome, &Relatorio::nome);
    if (r == std::end(kRelatorios)) return {};
    const bool longos = nome == "longos";
    const std::pair<const char*, std::string> textos[] = {
        {"d3d12Detalhe", longos     ? kLongo
                         : r->d3d12 ? "Recurso 12_1"
                                    : "Recurso 11_0: o jogo precisa do 12_0"},
        {"vulkanDetalhe", longos      ? kLongo
                          : r->vulkan ? "Vulkan 1.3.277"
                                      : "vulkan-1.dll não encontrada"},
        {"placa", r->placa},
        {"memoria", "15,9 GiB"},
        {"sistema", longos ? kLongo : "Windows 11 Pro 64 bits (22631)"},
        {"geral", r->geral},
        {"titulo", r->titulo},
        {"relatorio", Texto(*r)}};
    std::string json =
        Formatar("\"d3d12\": {}, \"vulkan\": {}", r->d3d12 ? "true" : "false", r->vulkan ? "true" : "false");
    for (const auto& [chave, valor] : textos)
        json += Formatar(",\n\"{}\": \"{}\"", chave, valor);
    return "{" + json + "}\n";
}

}  // namespace zu::launcher::teste

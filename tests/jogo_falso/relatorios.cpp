#include "tests/jogo_falso/relatorios.h"

#include <functional>
#include <map>
#include <vector>

#include "core/formato.h"

namespace zu::launcher::teste {
namespace {

struct Linha {
    std::string marca;
    std::string nome;
    std::string seu;
    std::string minimo;
    std::string situacao;
};

struct Relatorio {
    bool d3d12 = true;
    bool vulkan = true;
    std::string d3d12Detalhe = "Recurso 12_1, Shader Model 6.7";
    std::string vulkanDetalhe = "Vulkan 1.3.277";
    std::string placa = "NVIDIA GeForce RTX 3060 (12 GiB)";
    std::string memoria = "15,9 GiB";
    std::string sistema = "Windows 11 Pro 64 bits (22631)";
    std::string geral = "ok";
    std::string titulo = "Seu computador atende aos requisitos";
    std::vector<std::string> placas{"Placa: NVIDIA GeForce RTX 3060 (VEN 10DE DEV 2503)",
                                    "Placa: Microsoft Basic Render Driver (software) (VEN 1414 DEV 008C)"};
    std::vector<Linha> linhas{{"[OK]", "Sistema", "Windows 11 Pro 64 bits (22631)", "Windows 10 64 bits (19041)", "OK"},
                              {"[OK]", "Processador", "AMD Ryzen 5 5600X | 6 núcleos", "4 núcleos", "OK"},
                              {"[OK]", "Memória", "15,9 GiB", "8 GiB", "OK"},
                              {"[OK]", "Placa de vídeo", "NVIDIA GeForce RTX 3060", "GeForce GTX 1050", "OK"},
                              {"[OK]", "Memória de vídeo", "12,0 GiB", "2 GiB", "OK"},
                              {"[OK]", "Driver de vídeo", "NVIDIA 551.86", "NVIDIA 531.18", "OK"},
                              {"[OK]", "DirectX 12", "Recurso 12_1", "Recurso 12_0", "OK"},
                              {"[OK]", "Vulkan 1.3", "Vulkan 1.3.277", "Vulkan 1.3", "OK"},
                              {"[OK]", "Espaço em disco", "214 GiB", "20 GiB", "OK"}};
    std::vector<std::string> conselhos;
    bool comTabela = true;

    void Marcar(const std::string& nome, const std::string& marca, const std::string& seu,
                const std::string& situacao) {
        for (Linha& linha : linhas) {
            if (linha.nome == nome) linha = {marca, nome, seu, linha.minimo, situacao};
        }
    }
    void SemD3d12() {
        d3d12 = false;
        d3d12Detalhe = "Recurso 11_0: o jogo precisa do 12_0";
        Marcar("DirectX 12", "[X]", "Recurso 11_0", "Não roda");
    }
    void SemVulkan() {
        vulkan = false;
        vulkanDetalhe = "vulkan-1.dll não encontrada";
        Marcar("Vulkan 1.3", "[X]", "não encontrado", "Não roda");
    }
};

std::string TextoDoRelatorio(const Relatorio& r) {
    std::string texto = "Diagnóstico do Zu\r\n\r\nSistema: " + r.sistema + "\r\n";
    for (const std::string& placa : r.placas)
        texto += placa + "\r\n";
    if (!r.comTabela) return texto;
    texto += "\r\nItem | Seu computador | Mínimo | Situação\r\n";
    for (const Linha& l : r.linhas)
        texto += l.marca + " " + l.nome + " | " + l.seu + " | " + l.minimo + " | " + l.situacao + "\r\n";
    if (r.conselhos.empty()) return texto;
    texto += "\r\nO que fazer:\r\n";
    for (const std::string& conselho : r.conselhos)
        texto += "- " + conselho + "\r\n";
    return texto;
}

std::string EntreAspasJson(std::string_view texto) {
    std::string saida = "\"";
    for (const char c : texto) {
        if (c == '"' || c == '\\') saida += '\\';
        if (static_cast<unsigned char>(c) < 0x20) {
            saida += Formatar("\\u{:04x}", static_cast<unsigned>(c));
        } else {
            saida += c;
        }
    }
    return saida + "\"";
}

std::string Json(const Relatorio& r) {
    std::string texto = std::string("{\n  \"d3d12\": ") + (r.d3d12 ? "true" : "false") +
                        ",\n  \"vulkan\": " + (r.vulkan ? "true" : "false");
    const std::pair<const char*, std::string> textos[] = {{"d3d12Detalhe", r.d3d12Detalhe},
                                                          {"vulkanDetalhe", r.vulkanDetalhe},
                                                          {"placa", r.placa},
                                                          {"memoria", r.memoria},
                                                          {"sistema", r.sistema},
                                                          {"geral", r.geral},
                                                          {"titulo", r.titulo},
                                                          {"relatorio", TextoDoRelatorio(r)}};
    for (const auto& [chave, valor] : textos)
        texto += ",\n  " + EntreAspasJson(chave) + ": " + EntreAspasJson(valor);
    return texto + "\n}\n";
}

void SoD3d12(Relatorio& r) {
    r.SemVulkan();
    r.geral = "aviso";
    r.titulo = "Seu computador roda o jogo só com DirectX 12";
    r.conselhos = {"Atualize o driver da placa de vídeo no site da NVIDIA."};
}

void SoVulkan(Relatorio& r) {
    r.SemD3d12();
    r.geral = "aviso";
    r.titulo = "Seu computador roda o jogo só com Vulkan";
    r.conselhos = {"Escolha o Vulkan em Opções."};
}

void Avisos(Relatorio& r) {
    r.titulo = "Seu computador atende aos requisitos mínimos";
    r.memoria = "7,9 GiB";
    r.Marcar("Memória", "[!]", "7,9 GiB", "Abaixo do recomendado");
    r.Marcar("Driver de vídeo", "[!]", "NVIDIA 531.18", "Atualizar");
    r.conselhos = {"Atualize o driver da placa de vídeo.", "Feche outros programas antes de jogar."};
}

void Falha(Relatorio& r) {
    r.SemD3d12();
    r.SemVulkan();
    r.geral = "falha";
    r.titulo = "Seu computador não atende aos requisitos mínimos";
    r.placa = "Intel(R) HD Graphics 530";
    r.placas = {"Placa: Intel(R) HD Graphics 530 (VEN 8086 DEV 1912)"};
    r.Marcar("Placa de vídeo", "[!]", "Intel(R) HD Graphics 530", "Abaixo do recomendado");
    r.Marcar("Driver de vídeo", "[X]", "Intel 20.19.15", "Desatualizado");
    r.conselhos = {"Instale o driver mais novo da Intel e reinicie o computador."};
}

void SemDriver(Relatorio& r) {
    r.SemD3d12();
    r.SemVulkan();
    r.geral = "falha";
    r.titulo = "A placa de vídeo está sem driver";
    r.placa = "Adaptador de Vídeo Básico da Microsoft";
    r.placas = {"Placa: Microsoft Basic Render Driver (software) (VEN 1414 DEV 008C)",
                "Placa sem driver: Controlador de vídeo (VEN 1002 DEV 73BF)"};
    r.Marcar("Placa de vídeo", "[X]", "Controlador de vídeo", "Sem driver");
    r.Marcar("Driver de vídeo", "[X]", "Microsoft 10.0", "Sem driver");
    r.conselhos = {"Instale o driver da placa de vídeo no site da AMD."};
}

void AbaixoDoMinimo(Relatorio& r) {
    r.SemD3d12();
    r.SemVulkan();
    r.geral = "falha";
    r.titulo = "";
    r.placa = "NVIDIA GeForce 9500 GT";
    r.placas = {"Placa: NVIDIA GeForce 9500 GT (VEN 10DE DEV 0640)"};
    r.Marcar("Placa de vídeo", "[X]", "NVIDIA GeForce 9500 GT", "Abaixo do mínimo");
    r.conselhos = {"O jogo precisa de uma placa de vídeo mais nova."};
}

void Sessenta(Relatorio& r) {
    for (std::size_t i = r.linhas.size() + 1; i <= 60; ++i)
        r.linhas.push_back({"[OK]", Formatar("Item {}", i), Formatar("valor {}", i), "nenhum", "OK"});
}

void Longos(Relatorio& r) {
    const std::string longo(2'000, 'w');
    for (std::string* texto : {&r.d3d12Detalhe, &r.vulkanDetalhe, &r.placa, &r.memoria, &r.sistema, &r.titulo})
        *texto = longo;
    r.Marcar("Memória", "[!]", longo, longo);
    r.conselhos = {longo, "curto"};
}

}  // namespace

std::string MontarRelatorio(std::string_view nome) {
    static const std::map<std::string, std::function<void(Relatorio&)>, std::less<>> kRelatorios{
        {"bom", [](Relatorio&) {}},
        {"so_d3d12", SoD3d12},
        {"so_vulkan", SoVulkan},
        {"avisos", Avisos},
        {"falha", Falha},
        {"sem_driver", SemDriver},
        {"abaixo_do_minimo", AbaixoDoMinimo},
        {"sessenta", Sessenta},
        {"longos", Longos},
        {"sem_itens", [](Relatorio& r) { r.comTabela = false; }}};
    if (nome == "vazio") return "{}";
    if (nome == "quebrado") return "{\"d3d12\": talvez}";
    if (nome == "metade") {
        const std::string inteiro = MontarRelatorio("bom");
        return inteiro.substr(0, inteiro.size() / 2);
    }
    const auto lugar = kRelatorios.find(nome);
    if (lugar == kRelatorios.end()) return {};
    Relatorio relatorio;
    lugar->second(relatorio);
    return Json(relatorio);
}

}  // namespace zu::launcher::teste

#include "game/relatorio.h"

#include <array>
#include <utility>

#include "core/json.h"
#include "core/texto.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kSeparador = " | ";
constexpr std::string_view kWindowsUpdate = "ms-settings:windowsupdate";

struct PaginaDeFornecedor {
    std::string_view fornecedor;
    std::string_view endereco;
};
constexpr std::string_view kPaginaNvidia = "https://www.nvidia.com/pt-br/drivers/";
constexpr std::string_view kPaginaAmd = "https://www.amd.com/pt/support/download/drivers.html";
constexpr std::string_view kPaginaIntel = "https://www.intel.com.br/content/www/br/pt/support/detect.html";
constexpr std::array kPaginas{
    PaginaDeFornecedor{"NVIDIA", kPaginaNvidia}, PaginaDeFornecedor{"10DE", kPaginaNvidia},
    PaginaDeFornecedor{"AMD", kPaginaAmd},       PaginaDeFornecedor{"1002", kPaginaAmd},
    PaginaDeFornecedor{"1022", kPaginaAmd},      PaginaDeFornecedor{"Intel", kPaginaIntel},
    PaginaDeFornecedor{"8086", kPaginaIntel},
};

// PCI vendor ids that the report's lines name; empty: none.
struct Fornecedores {
    std::string_view placa;
    std::string_view placaSemDriver;
};

std::string_view Aparar(std::string_view texto) {
    constexpr std::string_view kBrancos = " \t\r";
    const std::size_t inicio = texto.find_first_not_of(kBrancos);
    if (inicio == std::string_view::npos) return {};
    return texto.substr(inicio, texto.find_last_not_of(kBrancos) - inicio + 1);
}

// Takes a row's state marker off its front. False for a line that is no row.
bool TomarMarca(std::string_view& linha, EstadoItem& estado) {
    constexpr std::array<std::pair<std::string_view, EstadoItem>, 3> kMarcas{
        {{"[OK]", EstadoItem::kOk}, {"[!]", EstadoItem::kAviso}, {"[X]", EstadoItem::kFalha}}};
    for (const auto& [marca, valor] : kMarcas) {
        if (!linha.starts_with(marca)) continue;
        linha.remove_prefix(marca.size());
        estado = valor;
        return true;
    }
    return false;
}

std::vector<std::string_view> Cortar(std::string_view linha) {
    std::vector<std::string_view> partes;
    while (true) {
        const std::size_t fim = linha.find(kSeparador);
        partes.push_back(Aparar(linha.substr(0, fim)));
        if (fim == std::string_view::npos) return partes;
        linha.remove_prefix(fim + kSeparador.size());
    }
}

void LerLinhaDaTabela(std::string_view linha, std::vector<ItemRequisito>& items) {
    ItemRequisito item;
    if (!TomarMarca(linha, item.estado)) return;
    const std::vector<std::string_view> partes = Cortar(linha);
    const std::size_t quantas = partes.size();
    if (quantas < 4) return;
    item.nome = partes[0];
    item.valor = partes[1];
    for (std::size_t i = 2; i + 2 < quantas; ++i)
        item.valor.append(kSeparador).append(partes[i]);
    item.penultima = partes[quantas - 2];
    item.ultima = partes[quantas - 1];
    items.push_back(std::move(item));
}

void LerFornecedor(std::string_view linha, Fornecedores& fornecedores) {
    constexpr std::string_view kMarca = "VEN ";
    constexpr std::size_t kTamanhoDoId = 4;
    const std::size_t lugar = linha.find(kMarca);
    if (lugar == std::string_view::npos || linha.size() - lugar < kMarca.size() + kTamanhoDoId) return;
    const std::string_view id = linha.substr(lugar + kMarca.size(), kTamanhoDoId);
    if (linha.starts_with("Placa sem driver")) {
        if (fornecedores.placaSemDriver.empty()) fornecedores.placaSemDriver = id;
    } else if (linha.find("(software)") == std::string_view::npos && fornecedores.placa.empty()) {
        fornecedores.placa = id;
    }
}

// The ids point into the result's own text.
Fornecedores LerLinhas(ResultadoRequisitos& resultado) {
    constexpr std::string_view kConselho = "- ";
    Fornecedores fornecedores;
    bool naTabela = false;
    bool nosConselhos = false;
    std::string_view resto = resultado.relatorio;
    while (!resto.empty()) {
        const std::string_view linha = Aparar(TomarAte(resto, '\n'));
        if (linha.starts_with("Item | ")) {
            naTabela = true;
            continue;
        }
        if (linha.empty()) naTabela = false;
        if (linha == "O que fazer:") nosConselhos = true;
        if (naTabela) {
            LerLinhaDaTabela(linha, resultado.items);
            continue;
        }
        if (nosConselhos && linha.starts_with(kConselho))
            resultado.oQueFazer.emplace_back(linha.substr(kConselho.size()));
        LerFornecedor(linha, fornecedores);
    }
    return fornecedores;
}

bool UmDriverPodeResolver(const ItemRequisito& item) {
    return item.estado != EstadoItem::kOk && (item.nome == "Placa de vídeo" || item.nome == "DirectX 12" ||
                                              item.nome == "Vulkan 1.3" || item.nome == "Driver de vídeo");
}

std::string_view NomeNoDriver(std::string_view valor) {
    for (const std::string_view nome : {"NVIDIA", "AMD", "Intel"}) {
        if (valor.starts_with(nome)) return nome;
    }
    return {};
}

void EscolherAcao(ResultadoRequisitos& resultado, const Fornecedores& fornecedores) {
    std::string_view fornecedor = fornecedores.placa;
    bool abaixoDoMinimo = false;
    bool semDriver = false;
    bool driverPodeResolver = false;
    for (const ItemRequisito& item : resultado.items) {
        if (item.nome == "Placa de vídeo") {
            abaixoDoMinimo = abaixoDoMinimo || item.ultima == "Abaixo do mínimo";
            semDriver = semDriver || item.ultima == "Sem driver";
        } else if (item.nome == "Driver de vídeo") {
            const std::string_view nome = NomeNoDriver(item.valor);
            if (!nome.empty()) fornecedor = nome;
        }
        driverPodeResolver = driverPodeResolver || UmDriverPodeResolver(item);
    }
    if (semDriver && !fornecedores.placaSemDriver.empty()) fornecedor = fornecedores.placaSemDriver;
    // No driver lifts a card over the minimum.
    if (!driverPodeResolver || abaixoDoMinimo) return;
    resultado.acaoEndereco = PaginaDoDriver(fornecedor);
    resultado.acaoTexto =
        resultado.acaoEndereco.starts_with("ms-settings:") ? "Abrir Windows Update" : "Abrir site do driver";
}

}  // namespace

bool LerRelatorio(std::string_view documento, ResultadoRequisitos& resultado, std::string& erro) {
    ValorJson raiz;
    if (!LerJson(documento, raiz, erro)) return false;
    resultado.relatorioLido = true;
    resultado.d3d12 = JsonBool(raiz, "d3d12", true);
    resultado.vulkan = JsonBool(raiz, "vulkan", true);
    resultado.d3d12Detalhe = JsonTexto(raiz, "d3d12Detalhe");
    resultado.vulkanDetalhe = JsonTexto(raiz, "vulkanDetalhe");
    resultado.placa = JsonTexto(raiz, "placa");
    resultado.memoria = JsonTexto(raiz, "memoria");
    resultado.sistema = JsonTexto(raiz, "sistema");
    resultado.geral = JsonTexto(raiz, "geral");
    resultado.titulo = JsonTexto(raiz, "titulo");
    resultado.relatorio = JsonTexto(raiz, "relatorio");
    AnalisarRelatorio(resultado);
    return true;
}

void AnalisarRelatorio(ResultadoRequisitos& resultado) {
    const Fornecedores fornecedores = LerLinhas(resultado);
    EscolherAcao(resultado, fornecedores);
}

std::string_view PaginaDoDriver(std::string_view fornecedor) {
    for (const PaginaDeFornecedor& pagina : kPaginas) {
        if (pagina.fornecedor == fornecedor) return pagina.endereco;
    }
    return kWindowsUpdate;
}

}  // namespace zu::launcher

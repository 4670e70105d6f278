#include "tools/forjal/publicar/remocoes.h"

#include <unordered_set>

#include "core/formato.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

// Files and folders of the client, by `ChaveDoNome`.
std::unordered_set<std::string> ChavesDoCliente(std::span<const ArquivoDoCliente> arquivos) {
    std::unordered_set<std::string> chaves;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        chaves.insert(ChaveDoNome(arquivo.caminho));
    }
    VisitarPastas(arquivos, [&](const std::string& pasta) { chaves.insert(ChaveDoNome(pasta)); });
    return chaves;
}

}  // namespace

std::set<std::string> RecusarRemocoes(std::span<const ArquivoDoCliente> arquivos,
                                      std::span<const std::string> remover) {
    std::set<std::string> recusas;
    if (remover.empty()) return recusas;
    const std::unordered_set<std::string> existentes = ChavesDoCliente(arquivos);
    for (const std::string& caminho : remover) {
        if (existentes.contains(ChaveDoNome(caminho))) {
            recusas.insert(Formatar("--remover={}: o cliente ainda tem este caminho", caminho));
        }
    }
    return recusas;
}

Ausentes AcharAusentes(const update::UpdateList& publicada, std::span<const ArquivoDoCliente> arquivos) {
    Ausentes ausentes;
    if (publicada.itens.empty()) return ausentes;
    const std::unordered_set<std::string> existentes = ChavesDoCliente(arquivos);
    const auto achar = [&](const std::string& caminho) {
        std::string normal = update::NormalizarCaminho(caminho);
        if (existentes.contains(ChaveDoNome(normal)) || update::CaminhoProtegido(normal)) return;
        ausentes.caminhos.push_back(std::move(normal));
    };
    for (const update::ItemLista& item : publicada.itens)
        achar(item.caminho);
    ausentes.arquivos = ausentes.caminhos.size();
    for (const std::string& caminho : publicada.remover)
        achar(caminho);
    return ausentes;
}

void Acrescentar(std::span<const std::string> caminhos, std::vector<std::string>& remover) {
    std::unordered_set<std::string> presentes;
    for (const std::string& caminho : remover)
        presentes.insert(ChaveDoNome(caminho));
    for (const std::string& caminho : caminhos) {
        if (presentes.insert(ChaveDoNome(caminho)).second) remover.push_back(caminho);
    }
}

}  // namespace zu::launcher::forjal

#include "tools/forjal/publicar/remocoes.h"

#include <unordered_set>

#include "core/formato.h"

namespace zu::launcher::forjal {
namespace {

// Files and folders of the client, by `ChaveDoNome`.
std::unordered_set<std::string> ChavesDoCliente(std::span<const ArquivoDoCliente> arquivos) {
    std::unordered_set<std::string> chaves;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        chaves.insert(ChaveDoNome(arquivo.caminho));
        for (const std::string& pasta : PastasDe(arquivo.caminho))
            chaves.insert(ChaveDoNome(pasta));
    }
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

}  // namespace zu::launcher::forjal

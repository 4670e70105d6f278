#include "tools/forjal/publicar/remocoes.h"

#include <unordered_set>

#include "core/formato.h"
#include "tools/forjal/fileira.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

class CaminhosDoCliente {
 public:
    explicit CaminhosDoCliente(std::span<const ArquivoDoCliente> arquivos) {
        std::vector<Arquivo> todos;
        todos.reserve(arquivos.size());
        for (const ArquivoDoCliente& arquivo : arquivos)
            todos.push_back({.caminho = arquivo.caminho});
        arquivos_.Juntar(std::move(todos));
        VisitarPastas(arquivos, [&](std::string_view pasta) { pastas_.insert(ChaveDoNome(pasta)); });
    }

    bool Tem(const std::string& caminho) {
        return arquivos_.Achar(caminho) != nullptr || pastas_.contains(ChaveDoNome(caminho));
    }

 private:
    struct Arquivo {
        std::string_view caminho;
    };
    Fileira<Arquivo> arquivos_;
    std::unordered_set<std::string> pastas_;  // by `ChaveDoNome`
};

}  // namespace

std::set<std::string> RecusarRemocoes(std::span<const ArquivoDoCliente> arquivos,
                                      std::span<const std::string> remover) {
    std::set<std::string> recusas;
    if (remover.empty()) return recusas;
    CaminhosDoCliente doCliente(arquivos);
    for (const std::string& caminho : remover) {
        if (doCliente.Tem(caminho)) {
            recusas.insert(Formatar("--remover={}: o cliente ainda tem este caminho", caminho));
        }
    }
    return recusas;
}

Ausentes AcharAusentes(const update::UpdateList& publicada, std::span<const ArquivoDoCliente> arquivos) {
    Ausentes ausentes;
    if (publicada.itens.empty()) return ausentes;
    CaminhosDoCliente doCliente(arquivos);
    const auto achar = [&](std::string_view caminho) {
        std::string normal = update::NormalizarCaminho(caminho);
        if (doCliente.Tem(normal) || update::CaminhoProtegido(normal)) return;
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

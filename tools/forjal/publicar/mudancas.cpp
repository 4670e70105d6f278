#include "tools/forjal/publicar/mudancas.h"

#include <unordered_map>

#include "core/formato.h"
#include "tools/forjal/paralelo.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {

std::string Mudancas::Texto() const {
    return Formatar(
        "{} novo(s), {} mudado(s), {} fora da lista; quem tem a versão publicada baixará {} bytes ({:.1f} MiB)", novos,
        mudados, sumidos, bytes, static_cast<double>(bytes) / static_cast<double>(kMiB));
}

Mudancas Comparar(const update::UpdateList& publicada, const update::UpdateList& nova) {
    std::unordered_map<std::string, const update::ItemLista*> antigos;
    antigos.reserve(publicada.itens.size());
    for (const update::ItemLista& item : publicada.itens)
        antigos.insert_or_assign(update::ChaveDoCaminho(item.caminho), &item);
    Mudancas mudancas;
    std::size_t continuam = 0;
    for (const update::ItemLista& item : nova.itens) {
        const auto antigo = antigos.find(update::ChaveDoCaminho(item.caminho));
        if (antigo == antigos.end()) {
            ++mudancas.novos;
        } else {
            ++continuam;
            const update::ItemLista& antes = *antigo->second;
            if (antes.tamanho == item.tamanho && antes.crc == item.crc &&
                (antes.sha256.empty() || antes.sha256 == item.sha256)) {
                continue;
            }
            ++mudancas.mudados;
        }
        mudancas.bytes += item.tamanho;
    }
    mudancas.sumidos = antigos.size() - continuam;
    return mudancas;
}

}  // namespace zu::launcher::forjal

#include "tools/forjal/publicar/mudancas.h"

#include "core/formato.h"
#include "tools/forjal/fileira.h"
#include "tools/forjal/paralelo.h"

namespace zu::launcher::forjal {

std::string Mudancas::Texto() const {
    return Formatar(
        "{} novo(s), {} mudado(s), {} fora da lista; quem tem a versão publicada baixará até {} bytes ({:.1f} MiB)",
        novos, mudados, sumidos, bytes, static_cast<double>(bytes) / static_cast<double>(kMiB));
}

Mudancas Comparar(update::UpdateList publicada, const update::UpdateList& nova) {
    Fileira<update::ItemLista> antigos(std::move(publicada.itens));
    Mudancas mudancas;
    std::size_t continuam = 0;
    for (const update::ItemLista& item : nova.itens) {
        const update::ItemLista* const antes = antigos.Achar(item.caminho);
        if (antes == nullptr) {
            ++mudancas.novos;
        } else {
            ++continuam;
            if (antes->tamanho == item.tamanho && antes->crc == item.crc &&
                (antes->sha256.empty() || antes->sha256 == item.sha256)) {
                continue;
            }
            ++mudancas.mudados;
        }
        mudancas.bytes += item.tamanho;
    }
    mudancas.sumidos = antigos.Itens().size() - continuam;
    return mudancas;
}

}  // namespace zu::launcher::forjal

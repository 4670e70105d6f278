// The update list comes from the network: any bytes must be read or refused, and what is accepted must be safe.
#include <algorithm>
#include <cstdlib>

#include "update/caminhos.h"
#include "update/lista.h"

using namespace zu::launcher::update;

// Blanks at the end of a line are dropped, so a last field that ends in one does not survive being written.
static bool SobreviveAEscrita(const UpdateList& lista) {
    const auto acabaEmBranco = [](const std::string& texto) { return texto.ends_with(' ') || texto.ends_with('\r'); };
    return !acabaEmBranco(lista.versao) && !acabaEmBranco(lista.chaveAssets) &&
           std::ranges::none_of(lista.itens, [&](const ItemLista& item) { return acabaEmBranco(item.sha256); });
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view texto(reinterpret_cast<const char*>(dados), tamanho);
    const ListaSeparada separada = SepararAssinatura(texto);
    if (separada.ok && separada.assinatura.empty()) std::abort();
    for (const std::string_view assinados : {texto, separada.assinados}) {
        UpdateList lista;
        std::string erro;
        if (!LerLista(assinados, lista, erro)) {
            if (erro.empty()) std::abort();
            continue;
        }
        for (const ItemLista& item : lista.itens) {
            if (!CaminhoSeguro(item.caminho) || item.partes > 999) std::abort();
        }
        UpdateList volta;
        if (!SobreviveAEscrita(lista)) continue;
        if (!LerLista(EscreverLista(lista), volta, erro) || EscreverLista(volta) != EscreverLista(lista)) std::abort();
    }
    return 0;
}

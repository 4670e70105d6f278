// The update list comes from the network: any bytes must be read or refused, and what is accepted must be safe and read
// the same again from what is written. Nothing here knows the directives, so a new one needs nothing here.
#include <cstdlib>

#include "update/caminhos.h"
#include "update/lista.h"

using namespace zu::launcher::update;

// Blanks at the end of a line are dropped, so a last field that ends in one does not survive being written.
static bool SobreviveALeitura(std::string_view escrita) {
    return escrita.find(" \n") == std::string_view::npos && escrita.find("\r\n") == std::string_view::npos;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view texto(reinterpret_cast<const char*>(dados), tamanho);
    const ListaSeparada separada = SepararAssinatura(texto);
    if (separada.ok && separada.assinatura.empty()) std::abort();
    const std::string junta = JuntarAssinatura(separada.assinados, separada.assinatura);
    if (separada.ok && SepararAssinatura(junta).assinatura != separada.assinatura) std::abort();
    for (const std::string_view assinados : {texto, separada.assinados}) {
        UpdateList lista;
        std::string erro;
        const bool lida = LerLista(std::string(assinados), lista, erro);
        if (lida != erro.empty()) std::abort();
        for (const ItemLista& item : lista.itens)
            if (!CaminhoSeguro(item.caminho) || item.partes > 999) std::abort();
        const std::string escrita = EscreverLista(lista);
        if (!lida || !SobreviveALeitura(escrita)) continue;
        if (!LerLista(escrita, lista, erro) || EscreverLista(lista) != escrita) std::abort();
    }
    return 0;
}

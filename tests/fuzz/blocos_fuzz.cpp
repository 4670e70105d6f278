// The block index comes from the network: any bytes must be read or refused, and whatever is accepted must give a plan
// for the whole file in bounded time, here with the index's own bytes as the old file.
#include <cstdlib>

#include "update/blocos_plano.h"

using namespace zu::launcher::update;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view bytes(reinterpret_cast<const char*>(dados), tamanho);
    IndiceDeBlocos indice;
    if (!LerIndice(bytes, indice)) return 0;
    if (bytes.size() > LimiteDoIndice(indice.tamanho)) std::abort();
    std::string_view velho = bytes;
    const auto ler = [&](std::span<std::uint8_t> janela, std::size_t& lidos) {
        lidos = velho.copy(reinterpret_cast<char*>(janela.data()), janela.size());
        velho.remove_prefix(lidos);
        return true;
    };
    std::vector<std::uint64_t> onde;
    if (!BuscarBlocos(indice, ler, onde)) std::abort();
    std::uint64_t iguais = 0;
    velho = bytes;
    if (!ContarIguais(indice, ler, iguais) || iguais > tamanho) std::abort();
    std::uint64_t presentes = indice.tamanho / 3;
    for (const Trecho& t : Planejar(indice, onde, presentes).trechos) {
        if (t.inicio != presentes || t.tamanho == 0 || (!t.DaRede() && t.velho + t.tamanho > tamanho)) std::abort();
        presentes += t.tamanho;
    }
    if (presentes != indice.tamanho) std::abort();
    return 0;
}

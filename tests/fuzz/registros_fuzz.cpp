// The state files lie in a folder that players and other programs write to. What is read once must read the same again
// from what is written.
#include <cstdlib>

#include "update/registros.h"

using namespace zu::launcher;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string texto(reinterpret_cast<const char*>(dados), tamanho);
    const std::string cache = TextoDoCache(CacheDoTexto(texto));
    if (TextoDoCache(CacheDoTexto(cache)) != cache) std::abort();
    const auto pendentes = PendentesDoTexto(texto);
    if (PendentesDoTexto(TextoDosPendentes(pendentes)) != pendentes) std::abort();
    if (SeqDoTexto(TextoDoEstado(SeqDoTexto(texto), texto)) != SeqDoTexto(texto)) std::abort();
    return 0;
}

// The report is written by another program: any bytes must be read or refused, and what is read must read the same
// again from what is written here.
#include <cstdlib>

#include "tests/suporte/json_escrito.h"

using namespace zu::launcher;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    ValorJson valor;
    std::string erro;
    const bool lido = LerJson({reinterpret_cast<const char*>(dados), tamanho}, valor, erro);
    if (lido != erro.empty()) std::abort();
    // What a refused document leaves is a whole tree as well.
    const std::string escrito = teste::Escrito(valor);
    ValorJson volta;
    if (lido && (!LerJson(escrito, volta, erro) || teste::Escrito(volta) != escrito)) std::abort();
    return 0;
}

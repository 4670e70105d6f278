// Whatever a path looks like, what passes as safe must stay below the folder it is joined to.
#include <cstdlib>
#include <filesystem>

#include "update/caminhos.h"
#include "update/url.h"

using namespace zu::launcher;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view caminho(reinterpret_cast<const char*>(dados), tamanho);
    const std::string normal = update::NormalizarCaminho(caminho);
    if (update::NormalizarCaminho(normal) != normal) std::abort();
    if (update::CaminhoSeguro(caminho) != update::CaminhoSeguro(normal)) std::abort();
    if (update::CaminhoSeguro(caminho)) {
        const std::filesystem::path junto = (std::filesystem::path("/jogo") / normal).lexically_normal();
        const auto relativo = junto.lexically_relative("/jogo");
        if (relativo.empty() || relativo == "." || *relativo.begin() == "..") std::abort();
    }
    for (const char c : MontarUrl("http://s/", caminho))
        if (c <= ' ' || c > '~' || c == '?' || c == '#') std::abort();
    return 0;
}

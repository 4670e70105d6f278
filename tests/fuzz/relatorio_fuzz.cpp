// The report comes from the game's file: any bytes must be read or refused, and what is taken from the report text must
// keep to its grammar. The bytes serve twice: as the document, and as the report text itself.
#include <cstdlib>

#include "game/relatorio.h"
#include "game/veredito.h"

using namespace zu::launcher;

namespace {

void Exigir(bool certo) {
    if (!certo) std::abort();
}

void Conferir(const ResultadoRequisitos& resultado) {
    for (const ItemRequisito& item : resultado.items)
        Exigir(item.ultima.find('\n') == std::string::npos && item.nome.find(" | ") == std::string::npos);
    Exigir(resultado.acaoEndereco.empty() == resultado.acaoTexto.empty());
    Exigir(resultado.acaoEndereco.empty() || resultado.acaoEndereco.starts_with("https://") ||
           resultado.acaoEndereco == "ms-settings:windowsupdate");
    const VereditoRequisitos veredito = JulgarRequisitos(resultado, L"");
    Exigir(!veredito.titulo.empty() && !veredito.texto.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dados, std::size_t tamanho) {
    const std::string_view texto(reinterpret_cast<const char*>(dados), tamanho);
    ResultadoRequisitos lido;
    std::string erro;
    Exigir(LerRelatorio(texto, lido, erro) == erro.empty() && lido.relatorioLido == erro.empty());
    Conferir(lido);

    ResultadoRequisitos analisado{{.relatorioLido = true}};
    analisado.relatorio = texto;
    AnalisarRelatorio(analisado);
    Conferir(analisado);
    return 0;
}

#include "tools/forjal/lista_publicada.h"

#include <windows.h>

#include <span>

#include "core/arquivo.h"
#include "core/formato.h"
#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {
namespace {

std::span<const std::uint8_t> Bytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()};
}

}  // namespace

bool ProvarLista(std::string_view texto, const UpdateSigningKey& publica, update::UpdateList& lista,
                 std::string& erro) {
    const update::ListaSeparada separada = update::SepararAssinatura(texto);
    if (!separada.ok || !VerifyListSignature({&publica, 1}, Bytes(separada.assinados), separada.assinatura)) {
        erro = "UpdateList.txt não tem uma assinatura válida desta chave";
        return false;
    }
    if (update::LerLista(separada.assinados, lista, erro)) return true;
    erro = Formatar("UpdateList.txt inválida: {}", erro);
    return false;
}

bool LerListaPublicada(const std::filesystem::path& pasta, const UpdateSigningKey& publica, update::UpdateList& lista,
                       std::string& erro) {
    std::string texto;
    if (!LerArquivoInteiro(pasta / kNomeDaLista, texto)) {
        erro = Formatar("não foi possível ler UpdateList.txt (erro {})", GetLastError());
        return false;
    }
    return ProvarLista(texto, publica, lista, erro);
}

bool GravarListaPublicada(const std::filesystem::path& pasta, const ChaveDaLista& chave,
                          const update::UpdateList& lista, std::string& erro) {
    const std::string assinados = update::EscreverLista(lista);
    std::vector<std::uint8_t> assinatura;
    if (!chave.Assinar(Bytes(assinados), assinatura)) {
        erro = "o Windows não assinou a lista";
        return false;
    }
    const std::string texto = update::JuntarAssinatura(assinados, assinatura);
    if (texto.size() > update::kLimiteDaLista) {
        erro = Formatar("a lista teria {} bytes, o limite do launcher é {}", texto.size(), update::kLimiteDaLista);
        return false;
    }
    if (GravarArquivoAtomico(pasta / kNomeDaLista, texto)) return true;
    erro = Formatar("não foi possível gravar UpdateList.txt (erro {})", GetLastError());
    return false;
}

}  // namespace zu::launcher::forjal

#include "tools/forjal/lista_publicada.h"

#include <windows.h>

#include <span>

#include "core/arquivo.h"
#include "core/formato.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::forjal {
namespace {

std::span<const std::uint8_t> Bytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()};
}

}  // namespace

bool ProvarLista(std::string_view texto, std::span<const UpdateSigningKey> chaves, update::UpdateList& lista,
                 std::string& erro) {
    const update::ListaSeparada separada = update::SepararAssinatura(texto);
    if (!separada.ok || !VerifyListSignature(chaves, Bytes(separada.assinados), separada.assinatura)) {
        erro = "UpdateList.txt não tem uma assinatura válida desta chave";
        return false;
    }
    if (update::LerLista(std::string(separada.assinados), lista, erro)) return true;
    erro = Formatar("UpdateList.txt inválida: {}", erro);
    return false;
}

bool LerListaPublicada(const std::filesystem::path& pasta, std::span<const UpdateSigningKey> chaves,
                       update::UpdateList& lista, std::string& erro) {
    std::string texto;
    if (!LerArquivoInteiro(pasta / kNomeDaLista, texto)) {
        erro = Formatar("não foi possível ler UpdateList.txt (erro {})", GetLastError());
        return false;
    }
    return ProvarLista(texto, chaves, lista, erro);
}

bool LerListaAnterior(const std::filesystem::path& pasta, const ChaveDaLista& chave, const UpdateSigningKey& anterior,
                      update::UpdateList& lista, std::string& erro) {
    std::vector<UpdateSigningKey> chaves(1);
    if (!chave.ExportarPublica(chaves.front())) {
        erro = "o Windows não entregou a chave pública";
        return false;
    }
    if (!anterior.empty()) chaves.push_back(anterior);
    return LerListaPublicada(pasta, chaves, lista, erro);
}

bool AssinarLista(const ChaveDaLista& chave, const update::UpdateList& lista, std::string& texto, std::string& erro) {
    const std::string assinados = update::EscreverLista(lista);
    std::vector<std::uint8_t> assinatura;
    if (!chave.Assinar(Bytes(assinados), assinatura)) {
        erro = "o Windows não assinou a lista";
        return false;
    }
    texto = update::JuntarAssinatura(assinados, assinatura);
    if (texto.size() <= update::kLimiteDaLista) return true;
    erro = Formatar("a lista teria {} bytes, o limite do launcher é {}", texto.size(), update::kLimiteDaLista);
    return false;
}

Fileira<update::IndiceListado> IndicesDe(const update::UpdateList& lista) {
    std::vector<update::IndiceListado> indices = lista.blocos;
    for (update::IndiceListado& indice : indices)
        indice.caminho = update::NormalizarCaminho(indice.caminho);
    return Fileira(std::move(indices));
}

std::vector<std::string> NomesPublicados(const update::ItemLista& item) {
    const std::string normal = update::NormalizarCaminho(item.caminho);
    if (item.partes == 0) return {normal};
    std::vector<std::string> nomes;
    for (std::uint32_t parte = 1; parte <= item.partes; ++parte)
        nomes.push_back(normal + SufixoDaParte(parte));
    return nomes;
}

}  // namespace zu::launcher::forjal

#include "tools/forjal/publicar/chaves_no_cliente.h"

#include <algorithm>
#include <string_view>

#include "core/chaves.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/chave_da_lista.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::string_view kMarcaDaPrivada = "RSA3";
constexpr std::size_t kTamanhoDoSegredo = SegredoSelo{}.size();

bool NomeDeChave(const std::string& caminho) {
    const std::string chave = ChaveDoNome(caminho);
    return chave.ends_with(".chave") || chave.ends_with(".segredo");
}

bool Iguais(BytesSecretos& a, BytesSecretos& b) {
    return std::ranges::equal(a.Bytes(), b.Bytes());
}

}  // namespace

std::set<std::string> RecusarChaves(const std::filesystem::path& cliente, std::span<const ArquivoDoCliente> arquivos,
                                    const std::filesystem::path& chave) {
    std::set<std::string> recusas;
    std::string erro;
    BytesSecretos privada;
    BytesSecretos segredo;
    if (!privada.Ler(chave, kTamanhoPrivada, erro)) return {Formatar("--chave: {}", erro)};
    const bool comSegredo = segredo.Ler(chave.parent_path() / L"selo.segredo", kTamanhoDoSegredo, erro);
    for (const ArquivoDoCliente& arquivo : arquivos) {
        bool recusar = NomeDeChave(arquivo.caminho);
        BytesSecretos bytes;
        if (!recusar && (arquivo.tamanho == kTamanhoPrivada || arquivo.tamanho == kTamanhoDoSegredo)) {
            if (!bytes.Ler(cliente / DeUtf8(arquivo.caminho), arquivo.tamanho, erro)) {
                recusas.insert(erro);
                continue;
            }
            recusar = Iguais(privada, bytes) || (comSegredo && Iguais(segredo, bytes)) ||
                      (arquivo.tamanho == kTamanhoPrivada &&
                       std::ranges::equal(bytes.Bytes().first(kMarcaDaPrivada.size()), kMarcaDaPrivada));
        }
        if (recusar) {
            recusas.insert(Formatar("{}: é uma chave, que não pode ir para a web; tire-a do cliente", arquivo.caminho));
        }
    }
    return recusas;
}

}  // namespace zu::launcher::forjal

// "Forjal chaves": the key pair of the update list and the secret of the settings file.

#include <windows.h>

#include <array>

#include "core/arquivo.h"
#include "core/chaves.h"
#include "core/formato.h"
#include "core/hash.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"

namespace zu::launcher::forjal {
namespace {

int Gravar(const std::filesystem::path& pasta, std::span<const ArquivoNovo> arquivos, Saida& saida) {
    if (!CriarPastas(pasta)) {
        return Falhar(
            saida, kRecusado,
            Formatar("--saida: não foi possível criar a pasta {} (erro {})", ParaUtf8(pasta.native()), GetLastError()));
    }
    std::string erro;
    if (!CriarArquivos(arquivos, erro))
        return Falhar(saida, kRecusado, Formatar("--saida: {}: nada foi gravado", erro));
    for (const ArquivoNovo& arquivo : arquivos)
        saida.Linha(ParaUtf8(arquivo.caminho.native()));
    saida.Linha("Chaves geradas. Guarde lista.chave e selo.segredo fora do servidor e fora do cliente.");
    return kFeito;
}

}  // namespace

int RodarChaves(const Opcoes& opcoes, Saida& saida) {
    const std::filesystem::path pasta = opcoes.Texto(L"--saida");
    const std::array<std::filesystem::path, 3> caminhos{pasta / L"lista.chave", pasta / L"lista.pub",
                                                        pasta / L"selo.segredo"};
    ChaveDaLista chave;
    BytesSecretos privada(kTamanhoPrivada);
    UpdateSigningKey publica;
    BytesSecretos segredo(SegredoSelo{}.size());
    std::string erro;
    if (!chave.Gerar(erro)) return Falhar(saida, kRecusado, erro);
    if (!chave.ExportarPrivada(privada.Bytes()) || !chave.ExportarPublica(publica) || !RandomBytes(segredo.Bytes())) {
        return Falhar(saida, kRecusado, "o Windows não entregou as chaves geradas");
    }
    const ArquivoNovo arquivos[] = {
        {caminhos[0], privada.Bytes()}, {caminhos[1], publica, false}, {caminhos[2], segredo.Bytes()}};
    return Gravar(pasta, arquivos, saida);
}

}  // namespace zu::launcher::forjal

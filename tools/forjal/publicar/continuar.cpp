// "Forjal publicar --continuar" and "--so-assinar": what can be done to a published folder without a client.

#include <windows.h>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/publicar/pedido.h"
#include "tools/forjal/publicar/trava.h"
#include "tools/forjal/publicar/troca.h"

namespace zu::launcher::forjal {
namespace {

bool EhPasta(const std::filesystem::path& caminho) {
    InfoArquivo info;
    return LerInfoArquivo(caminho, info) && info.Pasta();
}

bool Renovar(const std::filesystem::path& pasta, const ChaveDaLista& chave, const UpdateSigningKey& anterior,
             update::Instante validade, std::string& erro) {
    Trava trava;
    Troca troca(pasta);
    update::UpdateList lista;
    std::string texto;
    if (!trava.Trancar(pasta, erro) || !ContinuarTroca(pasta, erro) ||
        !LerListaAnterior(pasta, chave, anterior, lista, erro)) {
        return false;
    }
    lista.validade = validade;
    return AssinarLista(chave, lista, texto, erro) && troca.Iniciar(erro) && troca.Preparar({}, texto, erro) &&
           troca.Efetivar(erro);
}

}  // namespace

int RodarContinuar(const Opcoes& opcoes, Saida& saida) {
    const std::filesystem::path pasta = opcoes.Texto(L"--saida");
    if (!EhPasta(pasta)) {
        return Falhar(saida, kUsoErrado, Formatar("--saida: {} não é uma pasta", ParaUtf8(pasta.native())));
    }
    Trava trava;
    std::string erro;
    if (!trava.Trancar(pasta, erro)) return Falhar(saida, kRecusado, Formatar("--saida: {}", erro));
    const bool interrompida = TrocaInterrompida(pasta);
    if (!ContinuarTroca(pasta, erro)) return Falhar(saida, kRecusado, Formatar("--saida: {}", erro));
    saida.Linha(interrompida ? "A publicação interrompida foi terminada."
                             : "Nenhuma publicação foi interrompida aqui.");
    return kFeito;
}

int RodarSoAssinar(const Opcoes& opcoes, Saida& saida) {
    const std::filesystem::path pasta = opcoes.Texto(L"--saida");
    ChaveDaLista chave;
    UpdateSigningKey anterior;
    std::optional<update::Instante> validade;
    std::string erro;
    if (!LerValidade(opcoes, validade, erro) || !LerChaveAnterior(opcoes, anterior, erro)) {
        return Falhar(saida, kUsoErrado, erro);
    }
    if (!EhPasta(pasta)) {
        return Falhar(saida, kUsoErrado, Formatar("--saida: {} não é uma pasta", ParaUtf8(pasta.native())));
    }
    if (!chave.Ler(opcoes.Texto(L"--chave"), erro)) return Falhar(saida, kUsoErrado, Formatar("--chave: {}", erro));
    if (!Renovar(pasta, chave, anterior, *validade, erro)) {
        return Falhar(saida, kRecusado, Formatar("--saida: {}", erro));
    }
    saida.Linha(Formatar("Lista assinada de novo: vale até {}", update::TextoDoInstante(*validade)));
    return kFeito;
}

}  // namespace zu::launcher::forjal

#include "update/busca_lista.h"

#include <span>
#include <utility>

#include "core/chaves.h"
#include "core/config.h"
#include "core/log.h"
#include "core/utf16.h"
#include "update/estado.h"
#include "update/http.h"

namespace zu::launcher {
namespace {

constexpr int kTentativas = 3;
constexpr std::chrono::milliseconds kPausa{1500};

bool NaoPublicada(std::string_view erro) {
    return erro.starts_with("HTTP 404");
}

// The tick count makes each address a new one, which no cache on the way can answer.
std::wstring UrlDaLista() {
    return DeUtf8(Formatar("{}{}?t={}", ObterConfig().urlUpdate, "UpdateList.txt", GetTickCount64()));
}

std::span<const std::uint8_t> Bytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()};
}

bool Assinada(const update::ListaSeparada& separada, Sha256Digest& digest) {
    return separada.ok && VerifyListSignature(ChavesDaLista(), Bytes(separada.assinados), separada.assinatura, &digest);
}

// How a run ends that gets no list.
struct Fim {
    StatusUpdate status = StatusUpdate::kErro;
    std::string frase;
};

bool Terminar(Fim& fim, StatusUpdate status, std::string frase) {
    fim = {status, std::move(frase)};
    return false;
}

bool Buscar(Atualizador& atualizador, int tentativas, std::string& texto, Fim& fim) {
    std::string erro;
    for (int tentativa = 0; tentativa < tentativas; ++tentativa) {
        if (tentativa > 0 && atualizador.EsperarOuCancelar(kPausa)) break;
        if (HttpBaixarTexto(UrlDaLista(), texto, erro, update::kLimiteDaLista, &atualizador.Cancelamento()))
            return true;
        if (NaoPublicada(erro)) break;
    }
    if (atualizador.Cancelado()) return Terminar(fim, StatusUpdate::kErro, "Cancelado.");
    if (NaoPublicada(erro)) {
        return Terminar(fim, StatusUpdate::kPronto, "Nenhuma atualização publicada ainda: o cliente segue como está.");
    }
    return Terminar(fim, StatusUpdate::kSemServidor, Formatar("Sem conexão com o servidor de atualização ({}).", erro));
}

bool Vencida(const update::UpdateList& lista) {
    return lista.validade && std::chrono::system_clock::now() > *lista.validade;
}

bool Provar(std::string texto, ListaObtida& obtida, Fim& fim) {
    const update::ListaSeparada separada = update::SepararAssinatura(texto);
    if (!Assinada(separada, obtida.digest)) {
        return Terminar(fim, StatusUpdate::kErro,
                        "A lista de atualização não tem uma assinatura válida: atualização recusada por segurança.");
    }
    update::UpdateList& lista = obtida.lista;
    std::string erro;
    texto.resize(separada.assinados.size());
    if (!update::LerLista(std::move(texto), lista, erro)) {
        return Terminar(fim, StatusUpdate::kErro, Formatar("Lista de atualização inválida: {}", erro));
    }
    const std::int64_t instalado = LerSeqInstalado();
    if (lista.seq < instalado) {
        return Terminar(fim, StatusUpdate::kErro,
                        Formatar("O servidor ofereceu uma versão mais antiga que a instalada (seq {} < {}): recusada.",
                                 lista.seq, instalado));
    }
    if (Vencida(lista)) {
        return Terminar(fim, StatusUpdate::kSemServidor,
                        Formatar("Sem conexão com o servidor de atualização (a lista venceu em {}).",
                                 update::TextoDoDia(*lista.validade)));
    }
    LogLinha("[update] UpdateList seq {} ({}) com {} arquivos e {} a remover; instalado seq {}", lista.seq,
             lista.versao, lista.itens.size(), lista.remover.size(), instalado);
    return true;
}

}  // namespace

bool ObterLista(Atualizador& atualizador, ListaObtida& obtida) {
    Andamento& andamento = atualizador.ObterAndamento();
    andamento.Definir(StatusUpdate::kConectando, "Conectando ao servidor de atualização...");
    std::string texto;
    Fim fim;
    if (!Buscar(atualizador, kTentativas, texto, fim) || !Provar(std::move(texto), obtida, fim)) {
        andamento.Definir(fim.status, fim.frase);
        return false;
    }
    andamento.DefinirVersao(obtida.lista.versao);
    return true;
}

bool ObterOutraLista(Atualizador& atualizador, const ListaObtida& emUso, ListaObtida& outra) {
    std::string texto;
    Fim fim;
    if (!Buscar(atualizador, 1, texto, fim) || !Provar(std::move(texto), outra, fim)) {
        LogLinha("[update] lista pedida de novo: {}", fim.frase);
        return false;
    }
    if (outra.digest == emUso.digest || outra.lista.seq < emUso.lista.seq) return false;
    atualizador.ObterAndamento().DefinirVersao(outra.lista.versao);
    return true;
}

}  // namespace zu::launcher

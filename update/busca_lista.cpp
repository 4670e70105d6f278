#include "update/busca_lista.h"

#include <span>

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

enum class Busca { kObtida, kFalhou, kCancelada };

Busca Buscar(Atualizador& atualizador, std::string& texto, std::string& erro) {
    for (int tentativa = 0; tentativa < kTentativas; ++tentativa) {
        if (tentativa > 0 && atualizador.EsperarOuCancelar(kPausa)) return Busca::kCancelada;
        if (HttpBaixarTexto(UrlDaLista(), texto, erro, update::kLimiteDaLista, &atualizador.Cancelamento()))
            return Busca::kObtida;
        if (NaoPublicada(erro)) break;
    }
    return atualizador.Cancelado() ? Busca::kCancelada : Busca::kFalhou;
}

bool Terminar(Painel& painel, StatusUpdate status, std::string_view texto) {
    painel.Definir(status, texto);
    return false;
}

bool Assinada(const update::ListaSeparada& separada) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(separada.assinados.data());
    return separada.ok && VerifyListSignature(ChavesDaLista(), {bytes, separada.assinados.size()}, separada.assinatura);
}

}  // namespace

bool ObterLista(Atualizador& atualizador, update::UpdateList& lista) {
    Painel& painel = atualizador.Quadro();
    painel.Definir(StatusUpdate::kConectando, "Conectando ao servidor de atualização...");
    std::string texto;
    std::string erro;
    const Busca busca = Buscar(atualizador, texto, erro);
    if (busca == Busca::kCancelada) return Terminar(painel, StatusUpdate::kErro, "Cancelado.");
    if (busca == Busca::kFalhou && NaoPublicada(erro)) {
        return Terminar(painel, StatusUpdate::kPronto,
                        "Nenhuma atualização publicada ainda: o cliente segue como está.");
    }
    if (busca == Busca::kFalhou) {
        return Terminar(painel, StatusUpdate::kSemServidor,
                        Formatar("Sem conexão com o servidor de atualização ({}).", erro));
    }
    const update::ListaSeparada separada = update::SepararAssinatura(texto);
    if (!Assinada(separada)) {
        return Terminar(painel, StatusUpdate::kErro,
                        "A lista de atualização não tem uma assinatura válida: atualização recusada por segurança.");
    }
    if (!update::LerLista(separada.assinados, lista, erro)) {
        return Terminar(painel, StatusUpdate::kErro, Formatar("Lista de atualização inválida: {}", erro));
    }
    const std::int64_t instalado = LerSeqInstalado();
    if (lista.seq < instalado) {
        return Terminar(painel, StatusUpdate::kErro,
                        Formatar("O servidor ofereceu uma versão mais antiga que a instalada (seq {} < {}): recusada.",
                                 lista.seq, instalado));
    }
    painel.DefinirVersao(lista.versao);
    LogLinha("[update] UpdateList seq {} ({}) com {} arquivos e {} a remover; instalado seq {}", lista.seq,
             lista.versao, lista.itens.size(), lista.remover.size(), instalado);
    return true;
}

}  // namespace zu::launcher

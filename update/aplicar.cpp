#include "update/aplicar.h"
#include "update/lista.h"

#include <windows.h>

#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "core/arquivo.h"
#include "core/excecao.h"
#include "core/log.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "update/caminhos.h"
#include "update/cliente.h"

namespace zu::launcher {
namespace {

constexpr std::chrono::milliseconds kPausaPorTentativa{300};

// Where one item is on its way.
struct Aplicacao {
    ContextoDownload& contexto;
    Vez vez;
    const int tentativas;
    const update::ItemLista& item;
    const std::string normal;
    const std::filesystem::path alvo;
    const std::filesystem::path pasta;
    const bool pastaNova;  // nothing of the item stands there
    const std::filesystem::path temporario;
    const std::filesystem::path estacionado;
    const bool haviaEstacionado;
    ItemBaixado baixado;
    std::string erro;  // of the last attempt

    Aplicacao(ContextoDownload& oContexto, const Vez& aVez, int asTentativas)
        : contexto(oContexto),
          vez(aVez),
          tentativas(asTentativas),
          item(contexto.lista.itens[vez.indice]),
          normal(update::NormalizarCaminho(item.caminho)),
          alvo(CaminhoNoCliente(normal)),
          pasta(alvo.parent_path()),
          pastaNova(vez.feitas == 0 && FeitaAgora(contexto, pasta)),
          temporario(ComSufixo(alvo, L".upd")),
          estacionado(ComSufixo(alvo, L".novo")),
          haviaEstacionado(!pastaNova && Existe(estacionado)) {}

 private:
    static bool FeitaAgora(ContextoDownload& contexto, const std::filesystem::path& pasta) {
        const std::lock_guard guarda(contexto.travaPastas);
        const auto lugar = contexto.pastas.find(pasta);
        return lugar != contexto.pastas.end() && lugar->second;
    }
    static bool Existe(const std::filesystem::path& caminho) {
        InfoArquivo info;
        return LerInfoArquivo(caminho, info);
    }
};

// The first attempt believes that a folder that was made once is still there.
bool PrepararPasta(Aplicacao& a) {
    ContextoDownload& contexto = a.contexto;
    {
        const std::lock_guard guarda(contexto.travaPastas);
        if (a.vez.feitas == 0 && contexto.pastas.contains(a.pasta)) return true;
    }
    bool nova = false;
    if (!CriarPastas(a.pasta, &nova)) {
        const DWORD codigo = GetLastError();
        a.erro = Formatar("não foi possível criar a pasta {} (erro {})", ParaUtf8(a.pasta.native()), codigo);
        return false;
    }
    const std::lock_guard guarda(contexto.travaPastas);
    contexto.pastas.try_emplace(a.pasta, nova);
    return true;
}

// What an earlier run has fetched, proved and parked need not come again.
bool RetomarEstacionado(Aplicacao& a) {
    return a.haviaEstacionado && TamanhoDoArquivo(a.estacionado) == a.item.tamanho &&
           a.contexto.atualizador.ConferirItem(a.item, a.estacionado, a.baixado, a.erro) &&
           MoverSobre(a.estacionado, a.temporario, a.contexto.paciencia);
}

// The attempt has failed.
void ContarTentativa(Aplicacao& a) {
    LogLinha("[update] {}: {} (tentativa {})", a.normal, a.erro, ++a.vez.feitas);
}

bool BaixarComTentativas(Aplicacao& a) {
    Atualizador& atualizador = a.contexto.atualizador;
    while (a.vez.feitas < a.tentativas) {
        if (atualizador.Cancelado()) return false;
        if (a.vez.feitas > 0 && atualizador.EsperarOuCancelar(a.vez.feitas * kPausaPorTentativa)) return false;
        if (PrepararPasta(a) && atualizador.BaixarItem(a.item, a.temporario, a.contexto.bytesBaixados, a.baixado,
                                                       a.erro, a.pastaNova && a.vez.feitas == 0)) {
            return true;
        }
        ContarTentativa(a);
    }
    return false;
}

void AnotarFalha(const Aplicacao& a) {
    {
        // What it left there counts when it is tried again.
        const std::lock_guard guarda(a.contexto.travaPastas);
        a.contexto.pastas[a.pasta] = false;
    }
    const std::lock_guard guarda(a.contexto.travaFalhas);
    a.contexto.falhas[a.normal] = {.indice = a.vez.indice, .erro = a.erro};
}

void Colocado(Aplicacao& a) {
    if (a.haviaEstacionado) DeleteFileW(a.estacionado.c_str());
    LogLinha("[update] atualizado: {} (crc {:08X}, {} bytes)", a.normal, a.item.crc, a.item.tamanho);
    InfoArquivo info;
    if (!LerInfoArquivo(a.alvo, info)) return;
    a.contexto.atualizador.Cache().Registrar(
        MinusculasAscii(a.normal),
        {.tamanho = info.tamanho, .modificado = info.modificado, .sha256 = a.baixado.sha256, .crc = a.item.crc});
}

bool Estacionar(Aplicacao& a) {
    if (!MoverSobre(a.temporario, a.estacionado, a.contexto.paciencia)) {
        const DWORD codigo = GetLastError();
        a.erro = Formatar("não foi possível gravar {} (erro {})", ParaUtf8(a.estacionado.native()), codigo);
        LogLinha("[update] {}: {}", a.normal, a.erro);
        return false;
    }
    a.contexto.atualizador.ObterAndamento().Estacionar({.origem = a.estacionado, .destino = a.alvo});
    LogLinha("[update] {} em uso: troca pendente", a.normal);
    return true;
}

// In place, or parked for the helper.
bool Colocar(Aplicacao& a) {
    const bool proprio = !a.pastaNova && MesmoArquivo(a.alvo, a.contexto.executavel);
    if (!proprio && MoverSobre(a.temporario, a.alvo, a.contexto.paciencia)) {
        Colocado(a);
        return true;
    }
    if (!a.contexto.atualizador.Cancelado()) return Estacionar(a);
    a.erro = "cancelado";
    return false;
}

void Encerrar(Aplicacao& a, bool feito) {
    if (feito) {
        a.contexto.atualizador.ObterAndamento().SomarArquivos(1);
    } else {
        AnotarFalha(a);
    }
}

// Memory or threads have run out: this item's trouble, and not the end of the program.
void Desistir(Aplicacao& a, const std::exception& falha) {
    a.erro = TextoDaExcecao(falha);
    LogLinha("[update] {}: {}", a.normal, a.erro);
    Encerrar(a, false);
}

// What is left to do once all bytes have come. A turn: the disk did not take them, and the item may be tried again.
std::optional<Vez> Acabar(Aplicacao& a) {
    try {
        bool feito = false;
        if (a.contexto.atualizador.Cancelado()) {
            a.erro = "cancelado";  // what has come stays for the next run
        } else if (a.contexto.atualizador.DescarregarItem(a.temporario, a.baixado, a.erro)) {
            feito = Colocar(a);
        } else {
            ContarTentativa(a);
            if (a.vez.feitas < a.tentativas) return a.vez;
        }
        Encerrar(a, feito);
    } catch (const std::exception& falha) {
        Desistir(a, falha);
    }
    return std::nullopt;
}

}  // namespace

void AplicarItem(ContextoDownload& contexto, const Vez& vez, int tentativas) {
    const auto a = std::make_shared<Aplicacao>(contexto, vez, tentativas);
    contexto.atualizador.ObterAndamento().DefinirArquivo(a->normal);
    try {
        if (RetomarEstacionado(*a) || BaixarComTentativas(*a)) {
            contexto.acabamento.Entregar([a] { return Acabar(*a); });
        } else {
            Encerrar(*a, false);
        }
    } catch (const std::exception& falha) {
        Desistir(*a, falha);
    }
}

}  // namespace zu::launcher

#include "update/aplicar.h"
#include "update/lista.h"

#include <windows.h>

#include <exception>
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
    const update::ItemLista& item;
    std::string normal;
    std::filesystem::path alvo;
    std::filesystem::path temporario;
    std::filesystem::path estacionado;
    bool haviaEstacionado;
    std::string sha256;  // of the proved file
    std::string erro;    // of the last attempt
};

bool PrepararPasta(Aplicacao& a) {
    if (CriarPastas(a.alvo.parent_path())) return true;
    const DWORD codigo = GetLastError();
    a.erro = Formatar("não foi possível criar a pasta {} (erro {})", ParaUtf8(a.alvo.parent_path().native()), codigo);
    return false;
}

// What an earlier run has fetched, proved and parked need not come again.
bool RetomarEstacionado(Aplicacao& a) {
    return a.haviaEstacionado && TamanhoDoArquivo(a.estacionado) == a.item.tamanho &&
           a.contexto.atualizador.ConferirItem(a.item, a.estacionado, a.sha256, a.erro) &&
           MoverSobre(a.estacionado, a.temporario, a.contexto.paciencia);
}

bool BaixarComTentativas(Aplicacao& a, int tentativas) {
    Atualizador& atualizador = a.contexto.atualizador;
    for (int n = 0; n < tentativas; ++n) {
        if (atualizador.Cancelado()) return false;
        if (n > 0 && atualizador.EsperarOuCancelar(n * kPausaPorTentativa)) return false;
        if (PrepararPasta(a) &&
            atualizador.BaixarItem(a.item, a.temporario, a.contexto.bytesBaixados, a.sha256, a.erro)) {
            return true;
        }
        LogLinha("[update] {}: {} (tentativa {})", a.normal, a.erro, n + 1);
    }
    return false;
}

void AnotarFalha(const Aplicacao& a, std::size_t indice) {
    const std::lock_guard guarda(a.contexto.travaFalhas);
    a.contexto.falhas[a.normal] = {.indice = indice, .erro = a.erro};
}

void Colocado(Aplicacao& a) {
    if (a.haviaEstacionado) DeleteFileW(a.estacionado.c_str());
    LogLinha("[update] atualizado: {} (crc {:08X}, {} bytes)", a.normal, a.item.crc, a.item.tamanho);
    InfoArquivo info;
    if (!LerInfoArquivo(a.alvo, info)) return;
    a.contexto.atualizador.Cache().Registrar(
        MinusculasAscii(a.normal),
        {.tamanho = info.tamanho, .modificado = info.modificado, .sha256 = a.sha256, .crc = a.item.crc});
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
    if (!MesmoArquivo(a.alvo, a.contexto.executavel) && MoverSobre(a.temporario, a.alvo, a.contexto.paciencia)) {
        Colocado(a);
        return true;
    }
    if (!a.contexto.atualizador.Cancelado()) return Estacionar(a);
    a.erro = "cancelado";
    return false;
}

}  // namespace

void AplicarItem(ContextoDownload& contexto, std::size_t indice, int tentativas) {
    const update::ItemLista& item = contexto.lista.itens[indice];
    std::string normal = update::NormalizarCaminho(item.caminho);
    std::filesystem::path alvo = CaminhoNoCliente(normal);
    std::filesystem::path temporario = ComSufixo(alvo, L".upd");
    std::filesystem::path estacionado = ComSufixo(alvo, L".novo");
    InfoArquivo info;
    const bool haviaEstacionado = LerInfoArquivo(estacionado, info);
    Aplicacao a{contexto,
                item,
                std::move(normal),
                std::move(alvo),
                std::move(temporario),
                std::move(estacionado),
                haviaEstacionado,
                {},
                {}};
    contexto.atualizador.ObterAndamento().DefinirArquivo(a.normal);
    bool feito = false;
    try {
        feito = (RetomarEstacionado(a) || BaixarComTentativas(a, tentativas)) && Colocar(a);
    } catch (const std::exception& falha) {
        // Memory or threads have run out: this item's trouble, and not the end of the program.
        a.erro = TextoDaExcecao(falha);
        LogLinha("[update] {}: {}", a.normal, a.erro);
    }
    if (feito) {
        contexto.atualizador.ObterAndamento().SomarArquivo();
    } else {
        AnotarFalha(a, indice);
    }
}

}  // namespace zu::launcher

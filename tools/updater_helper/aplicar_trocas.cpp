#include "tools/updater_helper/aplicar_trocas.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "update/registros.h"

namespace zu::launcher {
namespace {

using Relogio = std::chrono::steady_clock;

enum class Situacao { kAberta, kFeita, kRecusada };

struct Troca {
    LinhaPendente linha;
    std::filesystem::path origem;  // empty: `destino` is to be deleted
    std::filesystem::path destino;
    Situacao situacao = Situacao::kAberta;
    DWORD erro = 0;  // of the last try
};

// Only a clear answer counts: a file that cannot be looked at just now is there.
bool Sumiu(const std::filesystem::path& caminho) {
    InfoArquivo info;
    if (LerInfoArquivo(caminho, info)) return false;
    const DWORD erro = GetLastError();
    return erro == ERROR_FILE_NOT_FOUND || erro == ERROR_PATH_NOT_FOUND;
}

// By the text of the path alone: a folder that the player has moved to another disk and linked here counts as inside.
// A relative path has no way from an absolute folder, so it is outside.
bool DentroDe(const std::filesystem::path& pasta, const std::filesystem::path& caminho) {
    const std::filesystem::path relativo = caminho.lexically_normal().lexically_relative(pasta.lexically_normal());
    return !relativo.empty() && *relativo.begin() != L".." && relativo != L".";
}

std::filesystem::path NomeDoTrocado(const std::filesystem::path& programa) {
    return ComSufixo(programa, L".tmp");
}

// Between the two moves there is no program by that name. An update run that finds it missing brings it back.
bool TrocarASiMesmo(const std::filesystem::path& origem, const std::filesystem::path& programa) {
    const std::filesystem::path trocado = NomeDoTrocado(programa);
    if (!MoverUmaVez(programa, trocado)) return false;
    if (MoverUmaVez(origem, programa)) return true;
    const DWORD erro = GetLastError();
    MoverUmaVez(trocado, programa);
    SetLastError(erro);
    return false;
}

bool Mover(const std::filesystem::path& origem, const std::filesystem::path& destino) {
    if (MesmoArquivo(destino, CaminhoDoPrograma())) return TrocarASiMesmo(origem, destino);
    CriarPastas(destino.parent_path());
    return MoverUmaVez(origem, destino);
}

void Tentar(Troca& troca, const LogDeTrocas& log) {
    const bool remocao = troca.origem.empty();
    const char* palavra = remocao ? "removido" : "trocado";
    if (Sumiu(remocao ? troca.destino : troca.origem)) {
        palavra = remocao ? "já removido" : "já trocado ou sumiu";
    } else if (remocao ? !ApagarArquivo(troca.destino) : !Mover(troca.origem, troca.destino)) {
        troca.erro = GetLastError();
        return;
    }
    troca.situacao = Situacao::kFeita;
    log(Formatar("{}: {}", troca.linha.destino, palavra));
}

bool Aberta(const Troca& troca) {
    return troca.situacao == Situacao::kAberta;
}

std::vector<Troca> LerTrocas(std::string_view texto, const std::filesystem::path& pasta, const LogDeTrocas& log) {
    std::vector<Troca> trocas;
    for (LinhaPendente& linha : PendentesDoTexto(texto)) {
        Troca troca{.linha = std::move(linha)};
        troca.origem = DeUtf8(troca.linha.origem);
        troca.destino = DeUtf8(troca.linha.destino);
        if (!DentroDe(pasta, troca.destino) || (!troca.origem.empty() && !DentroDe(pasta, troca.origem))) {
            troca.situacao = Situacao::kRecusada;
            log(Formatar("{}: fora da pasta do jogo, recusada", troca.linha.destino));
        }
        trocas.push_back(std::move(troca));
    }
    return trocas;
}

// The first round is not cut short: every line has its one try, however long the others took.
void TentarTodas(std::vector<Troca>& trocas, const RegrasDeTroca& regras, Relogio::time_point fim,
                 const LogDeTrocas& log) {
    for (Troca& troca : trocas) {
        if (Aberta(troca)) Tentar(troca, log);
    }
    const auto presas = std::ranges::count_if(trocas, Aberta);
    if (presas == 0) return;
    log(Formatar("{} troca(s) por fazer: tentando de novo por até {} s", presas, regras.limite.count() / 1000));
    while (std::ranges::any_of(trocas, Aberta) && Relogio::now() < fim) {
        std::this_thread::sleep_for(regras.intervalo);
        for (Troca& troca : trocas) {
            if (Aberta(troca) && Relogio::now() < fim) Tentar(troca, log);
        }
    }
}

void RelatarAbertas(const std::vector<Troca>& trocas, const LogDeTrocas& log) {
    for (const Troca& troca : trocas) {
        if (!Aberta(troca)) continue;
        const bool presa = EmUso(troca.destino) || (!troca.origem.empty() && EmUso(troca.origem));
        const char* feito = troca.origem.empty() ? "remover" : "trocar";
        log(presa ? Formatar("{}: ainda em uso (erro {})", troca.linha.destino, troca.erro)
                  : Formatar("{}: não foi possível {} (erro {})", troca.linha.destino, feito, troca.erro));
    }
}

// The list is as fresh as the files in it, and may be held by the same scanners.
bool LerLista(const std::filesystem::path& lista, const RegrasDeTroca& regras, Relogio::time_point fim,
              std::string& texto) {
    while (!LerArquivoInteiro(lista, texto)) {
        if (GetLastError() != ERROR_SHARING_VIOLATION || Relogio::now() >= fim) return false;
        std::this_thread::sleep_for(regras.intervalo);
    }
    return true;
}

bool GravarLista(const std::filesystem::path& lista, const std::string& lida, std::span<const LinhaPendente> restantes,
                 const LogDeTrocas& log) {
    std::string agora;
    if (!LerArquivoInteiro(lista, agora) || agora != lida) {
        log("a lista mudou enquanto isso: fica como está");
        return false;
    }
    const bool feito =
        restantes.empty() ? ApagarArquivo(lista) : GravarArquivoAtomico(lista, TextoDosPendentes(restantes));
    if (!feito) log(Formatar("não foi possível atualizar a lista (erro {})", GetLastError()));
    return feito;
}

}  // namespace

bool AplicarTrocas(const std::filesystem::path& lista, const RegrasDeTroca& regras, const LogDeTrocas& log) {
    const auto fim = Relogio::now() + regras.limite;
    std::string lida;
    if (!LerLista(lista, regras, fim, lida)) {
        const DWORD erro = GetLastError();
        log(Formatar("{}: não foi possível ler a lista (erro {})", ParaUtf8(lista.native()), erro));
        return false;
    }
    std::vector<Troca> trocas = LerTrocas(lida, lista.parent_path().parent_path(), log);
    TentarTodas(trocas, regras, fim, log);
    RelatarAbertas(trocas, log);
    std::vector<LinhaPendente> restantes;
    for (Troca& troca : trocas) {
        if (troca.situacao != Situacao::kFeita) restantes.push_back(std::move(troca.linha));
    }
    if (!restantes.empty()) log(Formatar("{} troca(s) não feita(s)", restantes.size()));
    return GravarLista(lista, lida, restantes, log) && restantes.empty();
}

void ApagarProgramaTrocado() {
    DeleteFileW(NomeDoTrocado(CaminhoDoPrograma()).c_str());
}

}  // namespace zu::launcher

#include "tools/updater_helper/aplicar_trocas.h"

#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "update/registros.h"

namespace zu::launcher {
namespace {

// Only a clear answer counts: a file that cannot be looked at just now is there.
bool Sumiu(const std::filesystem::path& caminho) {
    InfoArquivo info;
    if (LerInfoArquivo(caminho, info)) return false;
    const DWORD erro = GetLastError();
    return erro == ERROR_FILE_NOT_FOUND || erro == ERROR_PATH_NOT_FOUND;
}

// By the text of the path alone: a folder that the player has moved to another disk and linked here counts as inside.
bool DentroDe(const std::filesystem::path& pasta, const std::filesystem::path& caminho) {
    if (!caminho.is_absolute()) return false;
    const std::filesystem::path relativo = caminho.lexically_normal().lexically_relative(pasta.lexically_normal());
    return !relativo.empty() && *relativo.begin() != L".." && relativo != L".";
}

enum class Resultado { kFeita, kTentarDeNovo, kImpossivel };

Resultado Mover(const std::filesystem::path& origem, const std::filesystem::path& destino) {
    if (Sumiu(origem)) return Sumiu(destino) ? Resultado::kImpossivel : Resultado::kFeita;
    CriarPastas(destino.parent_path());
    return MoverUmaVez(origem, destino) ? Resultado::kFeita : Resultado::kTentarDeNovo;
}

Resultado Apagar(const std::filesystem::path& destino) {
    if (Sumiu(destino)) return Resultado::kFeita;
    return ApagarArquivo(destino) ? Resultado::kFeita : Resultado::kTentarDeNovo;
}

bool AplicarLinha(const LinhaPendente& linha, const std::filesystem::path& pasta, const RegrasDeTroca& regras,
                  const LogDeTrocas& log) {
    const std::filesystem::path origem = DeUtf8(linha.origem);
    const std::filesystem::path destino = DeUtf8(linha.destino);
    if (!DentroDe(pasta, destino) || (!linha.origem.empty() && !DentroDe(pasta, origem))) {
        log(Formatar("{}: fora da pasta do jogo, recusada", linha.destino));
        return false;
    }
    const auto fim = std::chrono::steady_clock::now() + regras.limitePorLinha;
    while (true) {
        const Resultado resultado = linha.origem.empty() ? Apagar(destino) : Mover(origem, destino);
        const DWORD erro = GetLastError();
        if (resultado == Resultado::kFeita) {
            log(Formatar("{}: {}", linha.destino, linha.origem.empty() ? "removido" : "trocado"));
            return true;
        }
        if (resultado == Resultado::kImpossivel) {
            log(Formatar("{}: o arquivo novo não existe mais", linha.destino));
            return false;
        }
        if (std::chrono::steady_clock::now() >= fim) {
            log(Formatar("{}: ainda em uso (erro {})", linha.destino, erro));
            return false;
        }
        std::this_thread::sleep_for(regras.intervalo);
    }
}

}  // namespace

std::size_t AplicarTrocas(const std::filesystem::path& lista, const RegrasDeTroca& regras, const LogDeTrocas& log) {
    const std::filesystem::path pasta = lista.parent_path().parent_path();
    std::string texto;
    if (!LerArquivoInteiro(lista, texto)) {
        log(Formatar("{}: lista não encontrada", ParaUtf8(lista.native())));
        return 0;
    }
    std::vector<LinhaPendente> restantes;
    for (LinhaPendente& linha : PendentesDoTexto(texto)) {
        if (!AplicarLinha(linha, pasta, regras, log)) restantes.push_back(std::move(linha));
    }
    if (restantes.empty()) {
        DeleteFileW(lista.c_str());
    } else {
        GravarArquivoAtomico(lista, TextoDosPendentes(restantes));
    }
    return restantes.size();
}

}  // namespace zu::launcher

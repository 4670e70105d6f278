#include "update/remocao.h"
#include "update/lista.h"

#include <windows.h>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/log.h"
#include "core/texto.h"
#include "update/caminhos.h"
#include "update/cliente.h"

namespace zu::launcher {
namespace {

// The helper is started for files that wait for it anyway, and once: a removal alone can wait for the next run.
bool HelperVai(Atualizador& atualizador) {
    return ObterConfig().reaberto == 0 && atualizador.ObterAndamento().Copia().estacionados > 0;
}

bool RemoverUm(Atualizador& atualizador, const std::string& normal) {
    const std::filesystem::path alvo = CaminhoNoCliente(normal);
    InfoArquivo info;
    if (!LerInfoArquivo(alvo, info) || info.Pasta()) return false;
    if (ApagarArquivo(alvo)) {
        LogLinha("[update] removido: {}", normal);
        atualizador.Cache().Esquecer(MinusculasAscii(normal));
        return true;
    }
    const DWORD erro = GetLastError();
    if (erro == ERROR_FILE_NOT_FOUND) return false;
    if (HelperVai(atualizador) && EmUso(alvo)) {
        atualizador.ObterAndamento().Estacionar({.origem = {}, .destino = alvo});
        LogLinha("[update] {} em uso: remoção pendente", normal);
    } else {
        LogLinha("[update] {}: não foi possível remover (erro {}); a próxima execução tenta de novo", normal, erro);
    }
    return false;
}

}  // namespace

std::size_t RemoverArquivos(Atualizador& atualizador, const update::UpdateList& lista) {
    std::size_t removidos = 0;
    for (const std::string& caminho : lista.remover) {
        if (update::CaminhoProtegido(caminho) || !update::CaminhoSeguro(caminho)) continue;
        if (RemoverUm(atualizador, update::NormalizarCaminho(caminho))) ++removidos;
    }
    atualizador.Cache().Gravar();
    return removidos;
}

}  // namespace zu::launcher

#include "update/remocao.h"

#include <windows.h>

#include "core/log.h"
#include "core/texto.h"
#include "update/caminhos.h"
#include "update/cliente.h"

namespace zu::launcher {
namespace {

// Open somewhere, or running.
bool EmUso(DWORD erro) {
    return erro == ERROR_SHARING_VIOLATION || erro == ERROR_ACCESS_DENIED || erro == ERROR_LOCK_VIOLATION ||
           erro == ERROR_USER_MAPPED_FILE;
}

bool RemoverUm(Atualizador& atualizador, const std::string& normal) {
    const std::filesystem::path alvo = CaminhoNoCliente(normal);
    InfoArquivo info;
    if (!LerInfoArquivo(alvo, info) || info.Pasta()) return false;
    if (DeleteFileW(alvo.c_str()) != 0 || (PermitirEscrita(alvo) && DeleteFileW(alvo.c_str()) != 0)) {
        LogLinha("[update] removido: {}", normal);
        atualizador.Cache().Esquecer(MinusculasAscii(normal));
        return true;
    }
    const DWORD erro = GetLastError();
    if (EmUso(erro)) {
        atualizador.Quadro().Estacionar({.origem = {}, .destino = alvo});
        LogLinha("[update] {} em uso: remoção pendente", normal);
    } else if (erro != ERROR_FILE_NOT_FOUND) {
        LogLinha("[update] {}: não foi possível remover (erro {})", normal, erro);
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

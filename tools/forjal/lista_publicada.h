// "UpdateList.txt" in a published folder, with its signature.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "core/assinatura.h"
#include "tools/forjal/chave_da_lista.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// Reads the list and proves its signature, which one of the keys must have made. False with the reason in `erro`.
bool LerListaPublicada(const std::filesystem::path& pasta, std::span<const UpdateSigningKey> chaves,
                       update::UpdateList& lista, std::string& erro);
inline bool LerListaPublicada(const std::filesystem::path& pasta, const UpdateSigningKey& chave,
                              update::UpdateList& lista, std::string& erro) {
    return LerListaPublicada(pasta, {&chave, 1}, lista, erro);
}

// The same with the key that signs from now on and the one before it, which may be empty.
bool LerListaAnterior(const std::filesystem::path& pasta, const ChaveDaLista& chave, const UpdateSigningKey& anterior,
                      update::UpdateList& lista, std::string& erro);

// The whole signed list, as it is published. False with the reason in `erro`, for one that no launcher would fetch too.
bool AssinarLista(const ChaveDaLista& chave, const update::UpdateList& lista, std::string& texto, std::string& erro);

// The files under which one is published: itself or its parts.
std::vector<std::string> NomesPublicados(const update::ItemLista& item);

}  // namespace zu::launcher::forjal

// "UpdateList.txt" in a published folder, with its signature.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/assinatura.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/fileira.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// Proves the signature of a list's text, which one of the keys must have made, and reads it. False with the reason in
// `erro`.
bool ProvarLista(std::string_view texto, std::span<const UpdateSigningKey> chaves, update::UpdateList& lista,
                 std::string& erro);

// The same with the list of a folder.
bool LerListaPublicada(const std::filesystem::path& pasta, std::span<const UpdateSigningKey> chaves,
                       update::UpdateList& lista, std::string& erro);

// The same with the key that signs from now on and the one before it, which may be empty.
bool LerListaAnterior(const std::filesystem::path& pasta, const ChaveDaLista& chave, const UpdateSigningKey& anterior,
                      update::UpdateList& lista, std::string& erro);

// The whole signed list, as it is published. False with the reason in `erro`, for one that no launcher would fetch too.
bool AssinarLista(const ChaveDaLista& chave, const update::UpdateList& lista, std::string& texto, std::string& erro);

// The indexes that a list names, by the normalised paths of their files.
Fileira<update::IndiceListado> IndicesDe(const update::UpdateList& lista);

// The files under which one is published: itself or its parts, its index apart.
std::vector<std::string> NomesPublicados(const update::ItemLista& item);

}  // namespace zu::launcher::forjal

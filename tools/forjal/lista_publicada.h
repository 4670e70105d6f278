// "UpdateList.txt" in a published folder, with its signature.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/assinatura.h"
#include "tools/forjal/chave_da_lista.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// Reads the list and proves its signature. False with the reason in `erro`.
bool LerListaPublicada(const std::filesystem::path& pasta, const UpdateSigningKey& publica, update::UpdateList& lista,
                       std::string& erro);

// The whole signed list, as it is published. False with the reason in `erro`, for one that no launcher would fetch too.
bool AssinarLista(const ChaveDaLista& chave, const update::UpdateList& lista, std::string& texto, std::string& erro);

// The files under which one is published: itself or its parts.
std::vector<std::string> NomesPublicados(const update::ItemLista& item);

}  // namespace zu::launcher::forjal

// "UpdateList.txt" in a published folder, with its signature.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/assinatura.h"
#include "tools/forjal/chave_da_lista.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// Proves the signature of a list's text and reads it. False with the reason in `erro`.
bool ProvarLista(std::string_view texto, const UpdateSigningKey& publica, update::UpdateList& lista, std::string& erro);

// Reads the list and proves its signature. False with the reason in `erro`.
bool LerListaPublicada(const std::filesystem::path& pasta, const UpdateSigningKey& publica, update::UpdateList& lista,
                       std::string& erro);

// Signs and writes the list, atomically. False with the reason in `erro`, and the old list as it was.
bool GravarListaPublicada(const std::filesystem::path& pasta, const ChaveDaLista& chave,
                          const update::UpdateList& lista, std::string& erro);

}  // namespace zu::launcher::forjal

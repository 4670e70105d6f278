// The rules for paths in an update list: UTF-8, relative to the client folder. Nothing here looks at the disk.
#pragma once

#include <string>
#include <string_view>

namespace zu::launcher::update {

// The form used for every comparison and every file access: "/" between the parts, never doubled, none in front, no
// leading "./".
std::string NormalizarCaminho(std::string_view caminho);

// Whether a path, once normalised, may be written below the client folder: no way out of it, no device, no stream, no
// name that Windows would quietly change.
bool CaminhoSeguro(std::string_view caminho);

// Whether a path belongs to the player, to the game or to the launcher itself: the updater neither checks, downloads,
// replaces nor removes it.
bool CaminhoProtegido(std::string_view caminho);

// The key under which a path is remembered: normalised, ASCII letters in lower case.
std::string ChaveDoCaminho(std::string_view caminho);

// `CaminhoProtegido` for a path that is such a key already.
bool ChaveProtegida(std::string_view chave);

}  // namespace zu::launcher::update

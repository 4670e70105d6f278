// Key material has no place on the web.
#pragma once

#include <filesystem>
#include <set>
#include <span>
#include <string>

#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {

// Which of the client's files are keys, by their names, by the mark and size of a private key, or by their content:
// that of the file `chave` and of a "selo.segredo" beside it. One text a file.
std::set<std::string> RecusarChaves(const std::filesystem::path& cliente, std::span<const ArquivoDoCliente> arquivos,
                                    const std::filesystem::path& chave);

}  // namespace zu::launcher::forjal

#include "update/cliente.h"

#include <algorithm>

#include "core/config.h"
#include "core/utf16.h"

namespace zu::launcher {

std::filesystem::path CaminhoNoCliente(std::string_view normal) {
    std::wstring relativo = DeUtf8(normal);
    std::ranges::replace(relativo, L'/', L'\\');
    return ObterConfig().pastaJogo / relativo;
}

}  // namespace zu::launcher

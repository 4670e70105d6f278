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

CaminhosNoCliente::CaminhosNoCliente() : caminho_((ObterConfig().pastaJogo / L"").native()), inicio_(caminho_.size()) {}

const wchar_t* CaminhosNoCliente::De(std::string_view normal) {
    caminho_.resize(inicio_);
    if (std::ranges::all_of(normal, [](char c) { return c >= 0; })) {
        caminho_.append(normal.begin(), normal.end());
    } else {
        caminho_ += DeUtf8(normal);
    }
    std::replace(caminho_.begin() + static_cast<std::ptrdiff_t>(inicio_), caminho_.end(), L'/', L'\\');
    return caminho_.c_str();
}

}  // namespace zu::launcher

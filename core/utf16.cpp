#include "core/utf16.h"

#include <windows.h>

#include <algorithm>

namespace zu::launcher {

std::string ParaUtf8(std::wstring_view texto) {
    if (texto.empty()) return {};
    const int unidades = static_cast<int>(texto.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, texto.data(), unidades, nullptr, 0, nullptr, nullptr);
    std::string saida(static_cast<std::size_t>(std::max(bytes, 0)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, texto.data(), unidades, saida.data(), bytes, nullptr, nullptr);
    return saida;
}

std::wstring DeUtf8(std::string_view texto) {
    if (texto.empty()) return {};
    const int bytes = static_cast<int>(texto.size());
    const int unidades = MultiByteToWideChar(CP_UTF8, 0, texto.data(), bytes, nullptr, 0);
    std::wstring saida(static_cast<std::size_t>(std::max(unidades, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, texto.data(), bytes, saida.data(), unidades);
    return saida;
}

}  // namespace zu::launcher

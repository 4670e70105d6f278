#include "core/texto.h"

namespace zu::launcher {

std::string ParaHex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kDigitos = "0123456789abcdef";
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        hex.push_back(kDigitos[byte >> 4]);
        hex.push_back(kDigitos[byte & 0x0F]);
    }
    return hex;
}

std::string MinusculasAscii(std::string texto) {
    for (char& c : texto) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return texto;
}

std::string_view TomarAte(std::string_view& resto, char separador) {
    const std::size_t fim = resto.find(separador);
    const std::string_view tomado = resto.substr(0, fim);
    resto.remove_prefix(fim == std::string_view::npos ? resto.size() : fim + 1);
    return tomado;
}

}  // namespace zu::launcher

#include "core/base64.h"

#include <algorithm>
#include <array>

namespace zu::launcher {
namespace {

constexpr std::string_view kAlfabeto = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kForaDoAlfabeto = 0xFF;

constexpr auto kValorDaLetra = [] {
    std::array<std::uint8_t, 256> valores{};
    valores.fill(kForaDoAlfabeto);
    for (std::size_t i = 0; i < kAlfabeto.size(); ++i) {
        valores[static_cast<std::uint8_t>(kAlfabeto[i])] = static_cast<std::uint8_t>(i);
    }
    return valores;
}();

}  // namespace

bool Base64Decode(std::string_view texto, std::vector<std::uint8_t>& bytes) {
    bytes.clear();
    bytes.reserve(texto.size() / 4 * 3 + 3);
    std::uint32_t acumulado = 0;
    unsigned pendentes = 0;
    for (const char c : texto) {
        if (c == '=') break;
        const std::uint8_t valor = kValorDaLetra[static_cast<std::uint8_t>(c)];
        if (valor == kForaDoAlfabeto) return false;
        acumulado = (acumulado << 6 | valor) & 0xFFFF;
        pendentes += 6;
        if (pendentes >= 8) {
            pendentes -= 8;
            bytes.push_back(static_cast<std::uint8_t>(acumulado >> pendentes));
        }
    }
    return true;
}

std::string Base64Encode(std::span<const std::uint8_t> bytes) {
    std::string texto;
    texto.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t grupo = 0;
        for (std::size_t j = 0; j < 3; ++j)
            grupo = grupo << 8 | (j < n ? bytes[i + j] : 0U);
        for (std::size_t j = 0; j < 4; ++j) {
            texto.push_back(j <= n ? kAlfabeto[grupo >> (18 - 6 * j) & 0x3F] : '=');
        }
    }
    return texto;
}

}  // namespace zu::launcher

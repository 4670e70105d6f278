#include "core/texto.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>

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

// Sixteen at a time: some C libraries look at one after the other.
std::size_t AcharByte(std::string_view texto, char byte) {
    const __m128i procurado = _mm_set1_epi8(byte);
    std::size_t i = 0;
    for (; i + sizeof(__m128i) <= texto.size(); i += sizeof(__m128i)) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(texto.data() + i));
        const auto marcas = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, procurado)));
        if (marcas != 0) return i + static_cast<std::size_t>(std::countr_zero(marcas));
    }
    while (i < texto.size() && texto[i] != byte)
        ++i;
    return i;
}

std::string_view TomarAte(std::string_view& resto, char separador) {
    const std::string_view tomado = resto.substr(0, AcharByte(resto, separador));
    resto.remove_prefix(std::min(tomado.size() + 1, resto.size()));
    return tomado;
}

}  // namespace zu::launcher

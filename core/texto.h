// Text helpers that need nothing of Windows. Narrow text is UTF-8 throughout the program.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace zu::launcher {

// Lower-case hexadecimal, two digits a byte, high nibble first.
std::string ParaHex(std::span<const std::uint8_t> bytes);

// Lower-cases the ASCII letters; the bytes of multi-byte UTF-8 sequences stay as they are.
std::string MinusculasAscii(std::string texto);

// Reads an unsigned number that fills the whole text: digits of the base, no sign, no prefix, no blank. False, and
// `valor` untouched, for anything else and for a value outside the type.
template <class Inteiro>
bool LerNumeroInteiro(std::string_view texto, Inteiro& valor, int base = 10) {
    static_assert(std::is_unsigned_v<Inteiro>);
    Inteiro lido = 0;
    const char* fim = texto.data() + texto.size();
    const auto [ate, erro] = std::from_chars(texto.data(), fim, lido, base);
    if (erro != std::errc{} || ate != fim) return false;
    valor = lido;
    return true;
}

// The place of the first byte that is `byte`; the text's size when there is none.
std::size_t AcharByte(std::string_view texto, char byte);

// Takes the text up to `separador` off the front of `resto`, the separator with it; the whole of `resto` when there is
// no separator left.
std::string_view TomarAte(std::string_view& resto, char separador);

}  // namespace zu::launcher

// CRC-32 of IEEE 802.3: reflected polynomial 0xEDB88320, initial value and final XOR 0xFFFFFFFF.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zu::launcher {

using Crc32 = std::uint32_t;

constexpr Crc32 kCrc32Inicial = 0xFFFFFFFF;

// Carries the running value over `tamanho` bytes. The running value starts at `kCrc32Inicial`; the CRC of what has been
// fed is its complement, `~corrente`.
Crc32 Crc32Update(Crc32 corrente, const void* dados, std::size_t tamanho);

namespace detalhe {

// The two ways to the same value, apart so that tests compare them. `Crc32PorTabela` takes any length;
// `Crc32PorDobra` folds with carry-less multiplication and needs a length of at least 64 that is a multiple of 16,
// and a processor for which `TemDobra` is true.
Crc32 Crc32PorTabela(Crc32 corrente, const std::uint8_t* dados, std::size_t tamanho);
Crc32 Crc32PorDobra(Crc32 corrente, const std::uint8_t* dados, std::size_t tamanho);
bool TemDobra();

}  // namespace detalhe
}  // namespace zu::launcher

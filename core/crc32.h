// CRC-32 of IEEE 802.3: reflected polynomial 0xEDB88320, initial value and final XOR 0xFFFFFFFF.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zu::launcher {

constexpr std::uint32_t kCrc32Inicial = 0xFFFFFFFF;

// Carries the running value over `tamanho` bytes. The running value starts at `kCrc32Inicial`; the CRC of what has been
// fed is its complement, `~corrente`.
std::uint32_t Crc32Update(std::uint32_t corrente, const void* dados, std::size_t tamanho);

namespace detalhe {

// The two ways to the same value, apart so that tests compare them. `Crc32PorTabela` takes any length;
// `Crc32PorDobra` folds with carry-less multiplication and needs a length of at least 64 that is a multiple of 16,
// and a processor for which `TemDobra` is true.
std::uint32_t Crc32PorTabela(std::uint32_t corrente, const std::uint8_t* dados, std::size_t tamanho);
std::uint32_t Crc32PorDobra(std::uint32_t corrente, const std::uint8_t* dados, std::size_t tamanho);
bool TemDobra();

}  // namespace detalhe
}  // namespace zu::launcher

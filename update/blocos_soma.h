// The sum by which a block is found again at any place of another file: Karp and Rabin's polynomial in the block's
// bytes, modulo 2^64. It rolls: from the sum of one window follows that of the next, one byte further on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zu::launcher::update {

using Soma = std::uint64_t;

// Odd, with no pattern in its bits. Part of the published format.
constexpr Soma kBaseDaSoma = 0x9E6C63D0876A9A47;

constexpr Soma PotenciaDaBase(std::size_t expoente) {
    Soma potencia = 1;
    for (Soma quadrado = kBaseDaSoma; expoente != 0; expoente >>= 1, quadrado *= quadrado)
        if ((expoente & 1) != 0) potencia *= quadrado;
    return potencia;
}

// x0·base^n + x1·base^(n-1) + … + x(n-1)·base, the bytes counting from 0 to 255. The upper bits depend on every byte,
// the lower ones do not.
Soma SomarBloco(const std::uint8_t* dados, std::size_t tamanho);

// Moves the sum of a window of `janela` bytes on by one byte.
class SomaRolante {
 public:
    explicit SomaRolante(std::size_t janela);
    [[nodiscard]] Soma Rolar(Soma soma, std::uint8_t sai, std::uint8_t entra) const {
        return (soma + entra) * kBaseDaSoma - queSai_[sai];
    }
    // The same by two bytes, which are read from the two places: the sum in between is not waited for.
    void RolarDois(Soma& soma, Soma& doMeio, const std::uint8_t* saem, const std::uint8_t* entram) const {
        const Soma um = entram[0] * kBaseDaSoma - queSai_[saem[0]];
        const Soma dois = entram[1] * kBaseDaSoma - queSai_[saem[1]];
        doMeio = soma * kBaseDaSoma + um;
        soma = soma * (kBaseDaSoma * kBaseDaSoma) + (um * kBaseDaSoma + dois);
    }

 private:
    std::array<Soma, 256> queSai_{};  // what a byte weighs when it leaves
};

}  // namespace zu::launcher::update

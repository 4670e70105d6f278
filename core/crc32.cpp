#include "core/crc32.h"

#include <immintrin.h>

#include <array>

namespace zu::launcher {
namespace {

constexpr std::uint32_t kPolinomio = 0xEDB88320;
constexpr std::size_t kBloco = 16;          // bytes in one register
constexpr std::size_t kPasso = 4 * kBloco;  // bytes folded at once

// One step of the division: multiplies the reflected remainder by x.
constexpr std::uint32_t VezesX(std::uint32_t resto) {
    return resto >> 1 ^ ((resto & 1) != 0 ? kPolinomio : 0);
}

constexpr auto kTabela = [] {
    std::array<std::uint32_t, 256> tabela{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        tabela[i] = i;
        for (int bit = 0; bit < 8; ++bit)
            tabela[i] = VezesX(tabela[i]);
    }
    return tabela;
}();

// x^n modulo the polynomial, reflected and shifted by one bit, since the carry-less product of two reflected numbers
// comes out one bit short.
constexpr std::int64_t Potencia(unsigned n) {
    std::uint32_t resto = 0x80000000;  // x^0: the highest power stands in the lowest bit
    for (unsigned i = 0; i < n; ++i)
        resto = VezesX(resto);
    return static_cast<std::int64_t>(resto) << 1;
}

}  // namespace

namespace detalhe {

Crc32 Crc32PorTabela(Crc32 corrente, const std::uint8_t* dados, std::size_t tamanho) {
    for (std::size_t i = 0; i < tamanho; ++i) {
        corrente = kTabela[(corrente ^ dados[i]) & 0xFF] ^ corrente >> 8;
    }
    return corrente;
}

bool TemDobra() {
    static const bool tem = __builtin_cpu_supports("pclmul") != 0 && __builtin_cpu_supports("sse4.1") != 0;
    return tem;
}

namespace {

__attribute__((target("pclmul,sse4.1"))) inline __m128i Ler(const std::uint8_t* dados) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(dados));
}

// Moves `x` forward over the distance that the two constants stand for and adds what lies there.
__attribute__((target("pclmul,sse4.1"))) inline __m128i Dobrar(__m128i x, __m128i constantes, __m128i dados) {
    const __m128i baixo = _mm_clmulepi64_si128(x, constantes, 0x00);
    const __m128i alto = _mm_clmulepi64_si128(x, constantes, 0x11);
    return _mm_xor_si128(_mm_xor_si128(baixo, alto), dados);
}

}  // namespace

// Folding after V. Gopal and others, "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction" (2009).
// The last 16 bytes that remain go through the table instead of a Barrett reduction: once a call, it costs nothing.
__attribute__((target("pclmul,sse4.1"))) Crc32 Crc32PorDobra(Crc32 corrente, const std::uint8_t* dados,
                                                             std::size_t tamanho) {
    constexpr unsigned kBits = 8 * kBloco;
    const __m128i quatro = _mm_set_epi64x(Potencia(4 * kBits - 32), Potencia(4 * kBits + 32));
    const __m128i um = _mm_set_epi64x(Potencia(kBits - 32), Potencia(kBits + 32));

    __m128i x0 = _mm_xor_si128(Ler(dados), _mm_cvtsi32_si128(static_cast<int>(corrente)));
    __m128i x1 = Ler(dados + kBloco);
    __m128i x2 = Ler(dados + 2 * kBloco);
    __m128i x3 = Ler(dados + 3 * kBloco);
    for (dados += kPasso, tamanho -= kPasso; tamanho >= kPasso; dados += kPasso, tamanho -= kPasso) {
        x0 = Dobrar(x0, quatro, Ler(dados));
        x1 = Dobrar(x1, quatro, Ler(dados + kBloco));
        x2 = Dobrar(x2, quatro, Ler(dados + 2 * kBloco));
        x3 = Dobrar(x3, quatro, Ler(dados + 3 * kBloco));
    }
    __m128i x = Dobrar(Dobrar(Dobrar(x0, um, x1), um, x2), um, x3);
    for (; tamanho >= kBloco; dados += kBloco, tamanho -= kBloco)
        x = Dobrar(x, um, Ler(dados));

    alignas(kBloco) std::array<std::uint8_t, kBloco> resto{};
    _mm_store_si128(reinterpret_cast<__m128i*>(resto.data()), x);
    return Crc32PorTabela(0, resto.data(), resto.size());
}

}  // namespace detalhe

Crc32 Crc32Update(Crc32 corrente, const void* dados, std::size_t tamanho) {
    const auto* bytes = static_cast<const std::uint8_t*>(dados);
    if (tamanho >= kPasso && detalhe::TemDobra()) {
        const std::size_t dobrados = tamanho / kBloco * kBloco;
        corrente = detalhe::Crc32PorDobra(corrente, bytes, dobrados);
        bytes += dobrados;
        tamanho -= dobrados;
    }
    return detalhe::Crc32PorTabela(corrente, bytes, tamanho);
}

}  // namespace zu::launcher

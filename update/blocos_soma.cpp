#include "update/blocos_soma.h"

namespace zu::launcher::update {

// Eight bytes a step, each with its own power, so that no multiplication waits for the one before.
Soma SomarBloco(const std::uint8_t* dados, std::size_t tamanho) {
    constexpr std::size_t kPasso = 8;
    constexpr auto kPesos = [] {
        std::array<Soma, kPasso> pesos{};
        for (std::size_t i = 0; i < kPasso; ++i)
            pesos[i] = PotenciaDaBase(kPasso - i);
        return pesos;
    }();
    constexpr Soma kAvanco = PotenciaDaBase(kPasso);
    Soma soma = 0;
    std::size_t i = 0;
    for (; i + kPasso <= tamanho; i += kPasso) {
        Soma grupo = 0;
        for (std::size_t j = 0; j < kPasso; ++j)
            grupo += dados[i + j] * kPesos[j];
        soma = soma * kAvanco + grupo;
    }
    for (; i < tamanho; ++i)
        soma = (soma + dados[i]) * kBaseDaSoma;
    return soma;
}

SomaRolante::SomaRolante(std::size_t janela) {
    const Soma peso = PotenciaDaBase(janela + 1);
    for (std::size_t i = 0; i < queSai_.size(); ++i)
        queSai_[i] = i * peso;
}

}  // namespace zu::launcher::update

#include "update/velocidade.h"

namespace zu::launcher {

double VelocidadeMedia::Amostrar(Instante agora, std::uint64_t bytes) {
    constexpr std::chrono::duration<double> kIntervalo{0.25};
    constexpr double kPesoDoNovo = 0.15;
    constexpr double kPesoDoVelho = 0.85;

    const std::chrono::duration<double> passado = agora - instante_;
    if (passado < kIntervalo) return media_;
    const double taxa = bytes < bytes_ ? 0 : static_cast<double>(bytes - bytes_) / passado.count();
    media_ = temAmostra_ ? kPesoDoNovo * taxa + kPesoDoVelho * media_ : taxa;
    temAmostra_ = true;
    instante_ = agora;
    bytes_ = bytes;
    return media_;
}

}  // namespace zu::launcher

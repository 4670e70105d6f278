// The download speed that is shown: sampled now and then, smoothed.
#pragma once

#include <chrono>
#include <cstdint>

namespace zu::launcher {

class VelocidadeMedia {
 public:
    using Instante = std::chrono::steady_clock::time_point;

    VelocidadeMedia(Instante inicio, std::uint64_t bytes) : instante_(inicio), bytes_(bytes) {}

    // Takes a sample when at least 0.25 s have passed since the last one. Returns the speed in bytes a second; 0 before
    // the first sample. A counter that went backwards counts as no speed.
    double Amostrar(Instante agora, std::uint64_t bytes);

 private:
    Instante instante_;
    std::uint64_t bytes_;
    double media_ = 0;
    bool temAmostra_ = false;
};

}  // namespace zu::launcher

// Time that a test need not wait for. For the whole program that relogio.cpp is linked into.
#pragma once

#include <chrono>

namespace zu::launcher::teste {

// While it lives nobody waits long: a pause, or a wait that nothing ends at once, moves the clocks of its own thread
// forward instead, by at least `menorPasso`. The clocks of other threads stay, so what a thread sees of time follows
// from what it does. One at a time.
class Relogio {
 public:
    explicit Relogio(std::chrono::milliseconds menorPasso = std::chrono::milliseconds(0));
    Relogio(const Relogio&) = delete;
    Relogio& operator=(const Relogio&) = delete;
    ~Relogio();
};

}  // namespace zu::launcher::teste

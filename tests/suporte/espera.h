// The one way to wait for something.
#pragma once

#include <chrono>
#include <thread>

namespace zu::launcher::teste {

// Until it is so; false when `limite` has passed first.
template <class Condicao>
bool Esperar(std::chrono::milliseconds limite, Condicao condicao) {
    const auto fim = std::chrono::steady_clock::now() + limite;
    while (!condicao()) {
        if (std::chrono::steady_clock::now() >= fim) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}  // namespace zu::launcher::teste

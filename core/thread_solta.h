// Threads that nobody waits for.
#pragma once

#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zu::launcher {

// Runs a function on a thread of its own, with copies of its arguments. Throws std::system_error when there is none to
// be had. The thread is kept for as long as the program runs: detaching one that ends at once may, with the runtime
// that this is built with, make the next thread never run.
template <class... Argumentos>
void SoltarThread(Argumentos&&... argumentos) {
    static std::mutex trava;
    static auto* const soltas = new std::vector<std::thread>;  // never destroyed: some outlive the front end
    const std::lock_guard guarda(trava);
    soltas->emplace_back(std::forward<Argumentos>(argumentos)...);
}

}  // namespace zu::launcher

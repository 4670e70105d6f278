// The last steps of files whose bytes have come. Each waits for the disk and none needs the connection, which meanwhile
// fetches the next file.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

#include "core/trava.h"

namespace zu::launcher {

// One item's turn at a connection.
struct Vez {
    std::size_t indice = 0;
    int feitas = 0;  // attempts that have failed already
};

// Does what it is given on threads of its own, which it makes as they are needed, in no order. Any thread may call.
// Destroying it does first what it still has.
class Acabamento {
 public:
    // What is to be done for one file; the turn that its item must have once more, when it did not work.
    using Trabalho = std::function<std::optional<Vez>()>;

    Acabamento() = default;
    Acabamento(const Acabamento&) = delete;
    Acabamento& operator=(const Acabamento&) = delete;
    ~Acabamento();

    // Waits while as many files as may be open are under way.
    void Entregar(Trabalho trabalho);

    // A turn that came back; waits for one while something is under way. None: nothing is, and nothing came back.
    std::optional<Vez> Devolvida();

 private:
    void Trabalhar();
    void FazerUm(std::unique_lock<Trava>& guarda);

    Trava trava_;
    Aviso chegou_;  // work
    Aviso acabou_;  // some of it
    std::deque<Trabalho> fila_;
    std::deque<Vez> devolvidas_;
    std::size_t pendentes_ = 0;  // handed over, and not done yet
    bool fim_ = false;
    std::vector<std::jthread> threads_;
};

}  // namespace zu::launcher

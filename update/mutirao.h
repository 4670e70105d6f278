// Many files read by a few threads: opened ahead of the reading, since a file may be slow to open and quick to read.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

namespace zu::launcher {

// Does every task once, each in two steps: it is opened, and what that returned is called to read it. No more are read
// at once than there are cores, and eight at most; as many wait open, or are being opened. Large ones, the largest
// first, have half of the cores while small ones are not done, which come in order.
class Mutirao {
 public:
    struct Tarefa {
        std::uint64_t tamanho = 0;  // bytes
        bool porUltimo = false;     // begun only once all others are
    };
    using Leitura = std::function<void()>;  // its destruction closes the task; empty: there is nothing to read
    using Abertura = std::function<Leitura(std::size_t tarefa)>;

    static constexpr std::size_t kMaximo = 8;
    static constexpr std::uint64_t kGrande = 0x400000;  // bytes (4 MiB), from which a task is a large one

    // Starts as many threads as find something to do, and works on the calling one when none can be had. `abrir`, and
    // what it returns, are called from any of them, never under a lock.
    Mutirao(std::span<const Tarefa> tarefas, Abertura abrir, std::size_t nucleos = std::thread::hardware_concurrency());
    Mutirao(const Mutirao&) = delete;
    Mutirao& operator=(const Mutirao&) = delete;
    // Begins no more steps and waits for those in work.
    ~Mutirao();

    // Waits for a task, by its number; false when it is not done by then. What one of its steps threw is thrown here.
    // For one thread, which asks for them in order.
    bool Esperar(std::size_t tarefa, std::chrono::milliseconds limite);

 private:
    struct Fila {
        std::deque<std::size_t> grandes, pequenas;
    };
    struct Aberta {
        std::size_t tarefa = 0;
        Leitura leitura;
    };
    using Guarda = std::unique_lock<std::mutex>;

    void Trabalhar();
    // The next to be opened, taken off its queue. None while there are enough, or when none is left.
    std::optional<std::size_t> Proxima();
    void Abrir(Guarda& guarda, std::size_t tarefa);
    void Ler(Guarda& guarda);
    void Terminar(std::size_t tarefa, std::exception_ptr falha);
    [[nodiscard]] bool Grande(std::size_t tarefa) const { return tarefas_[tarefa].tamanho >= kGrande; }

    const std::span<const Tarefa> tarefas_;
    const Abertura abrir_;
    const std::size_t nucleos_;

    std::mutex trava_;  // of all that follows
    std::array<Fila, 2> filas_;
    std::size_t porComecar_;
    std::size_t grandesEmObra_ = 0;  // begun, and not done
    std::size_t pequenasEmObra_ = 0;
    std::size_t abrindo_ = 0;
    std::size_t lendo_ = 0;
    std::vector<Aberta> abertas_;
    std::vector<bool> prontas_;
    std::size_t esperada_ = 0;
    std::size_t tarefaDaFalha_;  // the first in order
    std::exception_ptr falha_;
    bool parar_ = false;
    std::condition_variable vaga_;    // there may be something to do
    std::condition_variable pronta_;  // the task that is waited for is done
    std::vector<std::jthread> threads_;
};

}  // namespace zu::launcher

#include "update/mutirao.h"

#include <algorithm>
#include <utility>

namespace zu::launcher {

Mutirao::Mutirao(std::span<const Tarefa> tarefas, Abertura abrir, std::size_t nucleos)
    : tarefas_(tarefas),
      abrir_(std::move(abrir)),
      nucleos_(std::clamp<std::size_t>(nucleos, 1, kMaximo)),
      porComecar_(tarefas.size()),
      prontas_(tarefas.size()),
      tarefaDaFalha_(tarefas.size()) {
    for (std::size_t i = 0; i < tarefas.size(); ++i) {
        Fila& fila = filas_[tarefas[i].porUltimo ? 1 : 0];
        (Grande(i) ? fila.grandes : fila.pequenas).push_back(i);
    }
    for (Fila& fila : filas_)
        std::ranges::stable_sort(fila.grandes, std::ranges::greater{},
                                 [&](std::size_t i) { return tarefas[i].tamanho; });
    // So that no thread that has opened one finds no memory to say so.
    abertas_.reserve(kMaximo);
    const std::size_t grandes = filas_[0].grandes.size() + filas_[1].grandes.size();
    const std::size_t uteis = tarefas.size() - grandes + std::min(grandes, nucleos_);
    try {
        threads_.reserve(kMaximo);
        while (threads_.size() < std::min(uteis, kMaximo))
            threads_.emplace_back([this] { Trabalhar(); });
    } catch (const std::exception&) {
        if (threads_.empty()) Trabalhar();
    }
}

Mutirao::~Mutirao() {
    {
        const std::lock_guard guarda(trava_);
        parar_ = true;
    }
    vaga_.notify_all();
    threads_.clear();
}

bool Mutirao::Esperar(std::size_t tarefa, std::chrono::milliseconds limite) {
    Guarda guarda(trava_);
    esperada_ = tarefa;
    if (!pronta_.wait_for(guarda, limite, [&] { return prontas_[tarefa]; })) return false;
    if (tarefa == tarefaDaFalha_) std::rethrow_exception(falha_);
    return true;
}

void Mutirao::Trabalhar() {
    Guarda guarda(trava_);
    while (!parar_) {
        if (!abertas_.empty() && lendo_ < nucleos_) {
            Ler(guarda);
        } else if (const std::optional<std::size_t> tarefa = Proxima()) {
            Abrir(guarda, *tarefa);
        } else if (porComecar_ == 0) {
            return;  // those that are read now go on with what is open
        } else {
            vaga_.wait(guarda);
        }
    }
}

std::optional<std::size_t> Mutirao::Proxima() {
    if (abrindo_ + abertas_.size() >= kMaximo) return {};
    for (Fila& fila : filas_) {
        // A small one that is open already must not wait for the end of large ones on every core.
        const bool soGrandes = fila.pequenas.empty() && pequenasEmObra_ == 0;
        const std::size_t limite = soGrandes ? nucleos_ : nucleos_ / 2;
        const bool grande = !fila.grandes.empty() && grandesEmObra_ < limite;
        std::deque<std::size_t>& de = grande ? fila.grandes : fila.pequenas;
        if (!de.empty()) {
            const std::size_t tarefa = de.front();
            de.pop_front();
            ++(grande ? grandesEmObra_ : pequenasEmObra_);
            if (--porComecar_ == 0) vaga_.notify_all();
            return tarefa;
        }
        if (!fila.grandes.empty()) return {};
    }
    return {};
}

void Mutirao::Abrir(Guarda& guarda, std::size_t tarefa) {
    Leitura leitura;
    std::exception_ptr falha;
    ++abrindo_;
    guarda.unlock();
    try {
        leitura = abrir_(tarefa);
    } catch (...) {
        falha = std::current_exception();
    }
    guarda.lock();
    --abrindo_;
    if (leitura) {
        abertas_.push_back({tarefa, std::move(leitura)});
    } else {
        Terminar(tarefa, std::move(falha));
    }
}

void Mutirao::Ler(Guarda& guarda) {
    Aberta aberta = std::move(abertas_.front());
    abertas_.erase(abertas_.begin());
    // Not for each: a thread that is woken finds several places.
    if (abertas_.size() <= kMaximo / 2) vaga_.notify_one();
    std::exception_ptr falha;
    ++lendo_;
    guarda.unlock();
    try {
        aberta.leitura();
    } catch (...) {
        falha = std::current_exception();
    }
    aberta.leitura = nullptr;
    guarda.lock();
    --lendo_;
    Terminar(aberta.tarefa, std::move(falha));
}

void Mutirao::Terminar(std::size_t tarefa, std::exception_ptr falha) {
    if (Grande(tarefa)) {
        --grandesEmObra_;
        vaga_.notify_one();
    } else if (--pequenasEmObra_ == 0) {
        vaga_.notify_all();
    }
    if (falha && tarefa < tarefaDaFalha_) {
        tarefaDaFalha_ = tarefa;
        falha_ = std::move(falha);
    }
    prontas_[tarefa] = true;
    if (tarefa == esperada_) pronta_.notify_one();
}

}  // namespace zu::launcher

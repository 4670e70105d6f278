#include "update/acabamento.h"

#include <exception>
#include <utility>

namespace zu::launcher {
namespace {

// Enough to keep up with a connection where a flush takes twenty times as long as a small file. Each is made when more
// files wait than there are threads: where a flush takes no time few do better than many.
constexpr std::size_t kMaximoDeThreads = 32;
constexpr std::size_t kMaximoPendente = 64;  // files, each of which may be open

}  // namespace

Acabamento::~Acabamento() {
    {
        const std::lock_guard guarda(trava_);
        fim_ = true;
    }
    chegou_.AcordarTodos();
}

void Acabamento::Entregar(Trabalho trabalho) {
    std::unique_lock guarda(trava_);
    acabou_.Esperar(guarda, [this] { return pendentes_ < kMaximoPendente; });
    fila_.push_back(std::move(trabalho));
    ++pendentes_;
    chegou_.AcordarUm();
    if (fila_.size() <= threads_.size() || threads_.size() == kMaximoDeThreads) return;
    try {
        threads_.emplace_back([this] { Trabalhar(); });
    } catch (const std::exception&) {
        // No memory or no thread: those that there are do it, or this one.
        if (threads_.empty()) FazerUm(guarda);
    }
}

std::optional<Vez> Acabamento::Devolvida() {
    std::unique_lock guarda(trava_);
    acabou_.Esperar(guarda, [this] { return pendentes_ == 0 || !devolvidas_.empty(); });
    if (devolvidas_.empty()) return std::nullopt;
    const Vez vez = devolvidas_.front();
    devolvidas_.pop_front();
    return vez;
}

void Acabamento::Trabalhar() {
    std::unique_lock guarda(trava_);
    while (true) {
        chegou_.Esperar(guarda, [this] { return fim_ || !fila_.empty(); });
        if (fila_.empty()) return;
        FazerUm(guarda);
    }
}

void Acabamento::FazerUm(std::unique_lock<Trava>& guarda) {
    Trabalho trabalho = std::move(fila_.front());
    fila_.pop_front();
    guarda.unlock();
    const std::optional<Vez> vez = trabalho();
    trabalho = {};  // and what it held open
    guarda.lock();
    if (vez) devolvidas_.push_back(*vez);
    --pendentes_;
    acabou_.AcordarTodos();
}

}  // namespace zu::launcher

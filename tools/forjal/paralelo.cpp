#include "tools/forjal/paralelo.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <numeric>
#include <thread>
#include <vector>

#include "core/formato.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::chrono::milliseconds kEntreAvisos{200};

std::vector<std::size_t> DoMaiorAoMenor(std::span<const std::uint64_t> tamanhos) {
    std::vector<std::size_t> ordem(tamanhos.size());
    std::iota(ordem.begin(), ordem.end(), std::size_t{0});
    std::ranges::stable_sort(ordem, std::ranges::greater{}, [&](std::size_t i) { return tamanhos[i]; });
    return ordem;
}

}  // namespace

void EmParalelo(std::span<const std::uint64_t> tamanhos, const std::function<void(std::size_t)>& trabalho,
                const std::function<void()>& aviso, std::size_t threads) {
    const std::vector<std::size_t> ordem = DoMaiorAoMenor(tamanhos);
    std::atomic<std::size_t> proximo = 0;
    std::mutex mutex;
    std::condition_variable fim;
    const std::size_t pedidas = threads > 0 ? threads : std::thread::hardware_concurrency();
    std::size_t trabalhando = std::clamp<std::size_t>(pedidas, 1, ordem.size() + 1);
    const auto trabalhar = [&] {
        for (std::size_t n = proximo++; n < ordem.size(); n = proximo++)
            trabalho(ordem[n]);
        const std::lock_guard tranca(mutex);
        if (--trabalhando == 0) fim.notify_one();
    };
    std::vector<std::jthread> trabalhadores;
    for (std::size_t restam = trabalhando; restam > 0; --restam)
        trabalhadores.emplace_back(trabalhar);
    std::unique_lock tranca(mutex);
    while (!fim.wait_for(tranca, kEntreAvisos, [&] { return trabalhando == 0; }))
        aviso();
    tranca.unlock();
    aviso();
}

void EmFatias(std::size_t quantos, const std::function<void(std::size_t)>& trabalho,
              const std::function<void()>& aviso) {
    constexpr std::size_t kFatia = 1000;
    const std::vector<std::uint64_t> fatias(quantos / kFatia + 1);
    EmParalelo(
        fatias,
        [&](std::size_t fatia) {
            for (std::size_t i = fatia * kFatia; i < std::min(quantos, (fatia + 1) * kFatia); ++i)
                trabalho(i);
        },
        aviso);
}

void Andamento::Mostrar(Saida& saida, std::string_view verbo) const {
    const std::uint64_t feitos = std::min(bytes.load(), totalDeBytes);
    // In floating point: a hundred times the bytes may not fit. Only empty files: their number tells.
    const double parte = totalDeBytes > 0 ? static_cast<double>(feitos) / static_cast<double>(totalDeBytes)
                                          : static_cast<double>(arquivos.load()) /
                                                static_cast<double>(std::max<std::size_t>(totalDeArquivos, 1));
    const auto porCento = static_cast<unsigned>(parte * 100);
    const std::string mib = totalDeBytes > 0 ? Formatar(" {} de {} MiB,", feitos / kMiB, totalDeBytes / kMiB) : "";
    saida.Progresso(porCento,
                    Formatar("{}: {}%,{} {} de {} arquivo(s)", verbo, porCento, mib, arquivos.load(), totalDeArquivos));
}

}  // namespace zu::launcher::forjal

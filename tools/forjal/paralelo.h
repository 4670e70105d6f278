// Work on all cores, and how far it has come.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "tools/forjal/saida.h"

namespace zu::launcher::forjal {

// Calls `trabalho` once for every index of `tamanhos`, from that many threads (0: one a core) and the
// biggest first, so that no big one is left for the end. Meanwhile calls `aviso` from this thread, some times
// a second and once when all is done. Returns when every call has.
void EmParalelo(std::span<const std::uint64_t> tamanhos, const std::function<void(std::size_t)>& trabalho,
                const std::function<void()>& aviso, std::size_t threads = 0);

// The same for many small pieces of work, which are handed out by the thousand.
void EmFatias(std::size_t quantos, const std::function<void(std::size_t)>& trabalho,
              const std::function<void()>& aviso);

// The workers add, the main thread shows.
struct Andamento {
    std::uint64_t totalDeBytes = 0;
    std::size_t totalDeArquivos = 0;
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<std::size_t> arquivos = 0;

    // "{verbo}: 40% ...", without bytes where none are to be counted.
    void Mostrar(Saida& saida, std::string_view verbo) const;
};

constexpr std::uint64_t kMiB = 1ULL << 20;

}  // namespace zu::launcher::forjal

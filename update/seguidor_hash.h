// The digests of a file that is still being written: read right behind the writer, so that they are ready soon after
// the last byte instead of one whole reading later.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <thread>
#include <utility>

#include "update/hash_arquivo.h"

namespace zu::launcher {

// Reads on a thread of its own. The writer must share its file for reading, must only append, and must say how far it
// has come after each block is written. Destroying it abandons the reading and closes the file.
class SeguidorDeHash {
 public:
    explicit SeguidorDeHash(std::filesystem::path caminho) : caminho_(std::move(caminho)) {}
    SeguidorDeHash(const SeguidorDeHash&) = delete;
    SeguidorDeHash& operator=(const SeguidorDeHash&) = delete;
    ~SeguidorDeHash();

    // The first `bytes` bytes of the file are final. The first call starts the reading.
    void Avancar(std::uint64_t bytes);

    // The file is complete: waits for the rest. Not ok when it was never started, or could not be read.
    ResultadoHash Terminar();

 private:
    void Ler();
    ResultadoHash LerTudo();
    // The bytes that may be read beyond `lidos`; waits for some. 0 when the file is complete or the reading abandoned.
    std::uint64_t Esperar(std::uint64_t lidos);

    std::filesystem::path caminho_;
    std::mutex trava_;
    std::condition_variable aviso_;
    std::uint64_t disponiveis_ = 0;
    bool completo_ = false;
    bool abandonado_ = false;
    bool desistiu_ = false;  // of the writer's thread alone
    ResultadoHash resultado_;
    std::thread leitor_;
};

}  // namespace zu::launcher

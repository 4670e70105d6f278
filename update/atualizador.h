// One update run: from the signed list on the server to a game folder that matches it.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "core/handle.h"
#include "update/andamento.h"
#include "update/cache.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::update {
struct ItemLista;
}

namespace zu::launcher {

class ReusoDeBlocos;

// A file that has come and is proved. Its bytes may not be on the disk yet.
struct ItemBaixado {
    std::string sha256;        // its digest in text
    HandleArquivo arquivo;     // open for writing, when it has not been closed since it was written
    std::uint32_t partes = 0;  // those that it was joined from, which are to be deleted once it is on the disk
};

// Owned by one front-end thread, which calls the first group of operations; the run's own threads call the second.
// What to update and from where is in `ObterConfig()`.
class Atualizador {
 public:
    Atualizador();
    Atualizador(const Atualizador&) = delete;
    Atualizador& operator=(const Atualizador&) = delete;
    ~Atualizador();  // cancels and waits for the run

    // Starts a run on a thread of its own; does nothing while one is in progress. With `reparar` every file is read,
    // whatever the cache says.
    void Iniciar(bool reparar);
    // The run ends at the next block or item.
    void Cancelar();
    [[nodiscard]] bool EmCurso() const { return emCurso_.load(); }
    // Saves what is known of the files, also while a run goes on; for the way out of the process. Returns soon.
    void GuardarCache() { cache_.Gravar(std::chrono::milliseconds(100)); }
    // Waits for the run in progress; false when it has not ended by then.
    bool Aguardar(std::chrono::milliseconds limite);

    [[nodiscard]] EstadoAtualizacao Estado() const { return andamento_.Copia(); }
    // The swaps that the last run left for the helper program; empty again once a new run starts.
    [[nodiscard]] std::vector<TrocaPendente> Trocas() const { return andamento_.Trocas(); }
    // Ends in status 7 with a sentence, from outside a run.
    void Falhar(std::string_view texto) { andamento_.Definir(StatusUpdate::kErro, texto); }

    // The whole run, on the calling thread. Ends in one status and one sentence.
    void Rodar(bool reparar);

    // Fetches one item into `destino`, put together from what the file on the disk shares with it, or whole, or joined
    // from its parts, and proves it: true only when `destino` holds exactly the bytes that the list promises; bringing
    // them down to the disk is left to the caller. Otherwise one message in `erro`. Received bytes are added to
    // `bytesBaixados`. `vazio`: nothing stands at `destino` yet, and it need not be looked for.
    bool BaixarItem(const update::ItemLista& item, const std::filesystem::path& destino,
                    std::atomic<std::uint64_t>& bytesBaixados, ItemBaixado& baixado, std::string& erro,
                    bool vazio = false);

    // Brings what has come down to the disk and closes it; the parts that it was joined from are then of no more use.
    // False with one message in `erro`.
    bool DescarregarItem(const std::filesystem::path& destino, ItemBaixado& baixado, std::string& erro) const;

    // The proof alone, of a file that is complete; `hash`, when it is ok, are its digests, otherwise it is closed and
    // read. A file that is something else is deleted, unless the run was cancelled meanwhile.
    bool ConferirItem(const update::ItemLista& item, const std::filesystem::path& arquivo, ItemBaixado& baixado,
                      std::string& erro, ResultadoHash hash = {});

    [[nodiscard]] const std::atomic<bool>& Cancelamento() const { return cancelar_; }
    [[nodiscard]] bool Cancelado() const { return cancelar_.load(); }
    // Pauses; true at once when the run is cancelled meanwhile.
    bool EsperarOuCancelar(std::chrono::milliseconds pausa);
    Andamento& ObterAndamento() { return andamento_; }
    CacheDeArquivos& Cache() { return cache_; }
    ReusoDeBlocos& Blocos() { return *blocos_; }

 private:
    void RodarProtegido(bool reparar) noexcept;

    Andamento andamento_;
    CacheDeArquivos cache_;
    const std::unique_ptr<ReusoDeBlocos> blocos_;
    std::atomic<bool> emCurso_ = false;
    std::atomic<bool> cancelar_ = false;
    std::mutex travaAviso_;
    std::condition_variable aviso_;  // the run was cancelled, or it ended
    std::thread trabalhador_;
};

}  // namespace zu::launcher

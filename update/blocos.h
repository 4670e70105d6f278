// Reuse of what the file on the disk shares with the one that the list names: only what is new comes from the server.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <semaphore>
#include <set>
#include <string>

#include "core/handle.h"
#include "update/andamento.h"
#include "update/hash_arquivo.h"
#include "update/lista.h"
#include "update/transferencia.h"

namespace zu::launcher {

enum class FimDoReuso {
    kMontado,       // the destination is complete; it is still to be proved
    kInterrompido,  // cancelled, or the connection broke: as a plain download that was interrupted
    kNaoServe,      // the plain download is to be made, from what stands on the disk
};

struct Reuso {
    FimDoReuso fim = FimDoReuso::kNaoServe;
    ResultadoHash hash;         // of a large file that was put together, as it was written
    HandleArquivo arquivo;      // that file, open for writing: its bytes may not be on the disk yet
    std::uint64_t doDisco = 0;  // bytes that did not come from the server
};

// One for all runs of an updater; any thread may ask. At every moment the destination holds first bytes of the new
// file, so that whatever ends it, either way of downloading goes on from there. Nothing here believes that blocks
// match.
class ReusoDeBlocos {
 public:
    // A run begins: whatever did not serve in an earlier one may be tried again.
    void Esquecer();
    // The list whose indexes count from here on.
    void Usar(const update::UpdateList& lista);

    // Puts the item together from the file on the disk and from ranges, when the list names an index for it and it
    // pays. `erro` has one message when it was interrupted. Reused bytes are counted in `andamento`.
    Reuso Baixar(const Transferencia& t, Andamento& andamento, std::string& erro);

    // No further try for this item in this run.
    void Desistir(const update::ItemLista& item, const std::string& motivo);

 private:
    class Montagem;

    [[nodiscard]] std::optional<update::IndiceListado> Achar(const update::ItemLista& item);
    // Whether its index has come in this run, and was worth it.
    [[nodiscard]] bool Planejado(const update::ItemLista& item);
    // Now it has. True for the first time.
    bool Anotar(const update::ItemLista& item);

    std::mutex trava_;
    // By `ChaveDoCaminho`.
    std::map<std::string, update::IndiceListado> listados_;
    std::set<std::string> recusados_;
    std::set<std::string> planejados_;
    std::counting_semaphore<2> buscas_{2};  // a search holds tables of tens of bytes a block
};

}  // namespace zu::launcher

// Third operation of a run: the missing and different files, over several connections at once.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "update/acabamento.h"
#include "update/atualizador.h"

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// An item that did not come.
struct Falha {
    std::size_t indice = 0;
    std::string erro;  // of the last attempt
};

// What the workers of one download share.
struct ContextoDownload {
    Atualizador& atualizador;
    const update::UpdateList& lista;
    std::filesystem::path executavel;  // the launcher's own, which is never replaced in place
    std::atomic<std::uint64_t> bytesBaixados = 0;
    std::mutex travaFalhas;
    std::map<std::string, Falha> falhas;  // by path
    Paciencia paciencia;                  // with who holds a target
    std::mutex travaPastas;
    // Those that were made sure of, and whether this download made them: then nothing of an item that has not been
    // tried yet can stand there.
    std::map<std::filesystem::path, bool> pastas;
    Acabamento acabamento;  // last: what it does needs the others

    ContextoDownload(Atualizador& dono, const update::UpdateList& daLista);
};

// Fetches the items and puts each in place, then tries the ones that did not come again, one at a time. True when all
// came; false, with the status set, when cancelled or when some did not. Saves the file cache now and then and at the
// end. `recomecar`, which may be absent, is asked once when some did not come; when it answers true, the status is left
// as it is.
bool BaixarTodos(Atualizador& atualizador, const update::UpdateList& lista, std::span<const std::size_t> indices,
                 const std::function<bool()>& recomecar = {});

// Runs one worker a connection, never more than there are items, and returns when all have ended and nothing of what
// they fetched waits for the disk. Publishes bytes and speed meanwhile. Throws std::system_error when a thread cannot
// be made, once those already made have ended.
void RodarTrabalhadores(ContextoDownload& contexto, std::span<const std::size_t> indices, int conexoes, int tentativas);

// How many connections to use: the number asked for, or when none was, 8 for a base address that contains "github" and
// otherwise 1.
int NumeroDeConexoes(int pedidas, std::string_view urlBase);

}  // namespace zu::launcher

// The file cache while a run uses it: what was found in each file when it was last read, shared by the run's threads.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

#include "core/arquivo.h"
#include "update/registros.h"

namespace zu::launcher {

// Keys are those of `update::ChaveDoCaminho`. Any thread may call; the class has locks of its own, and none is held
// while the file is written that others would wait for.
class CacheDeArquivos {
 public:
    // `intervalo`: how long what was learnt may stay unsaved while a run goes on.
    explicit CacheDeArquivos(std::chrono::milliseconds intervalo = std::chrono::seconds(30)) : intervalo_(intervalo) {}

    // Forgets everything and reads the file anew.
    void Carregar();

    // The entry of an unchanged file: same size and same time of last writing.
    bool Achar(std::string_view chave, const InfoArquivo& info, EntradaCache& entrada) const;
    void Registrar(std::string chave, EntradaCache entrada);
    void Esquecer(std::string_view chave);

    // Writes the file when it would differ from what is on the disk. Waits for somebody who holds the file, or writes
    // it already, for `limite` at most. A failure is kept silent: it costs only time.
    void Gravar(std::chrono::milliseconds limite = Paciencia::kPorArquivo);
    // The same when the interval has passed since it was written last.
    void GravarDeVezEmQuando();

 private:
    using Relogio = std::chrono::steady_clock;

    mutable std::mutex trava_;
    MapaCache mapa_;
    mutable MapaCache::const_iterator palpite_ = mapa_.end();  // behind the entry found last: lists are in order, too
    bool mudou_ = false;
    std::chrono::milliseconds intervalo_;
    Relogio::time_point gravada_ = Relogio::now();
    std::timed_mutex travaDoArquivo_;
};

}  // namespace zu::launcher

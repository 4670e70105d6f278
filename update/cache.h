// The file cache while a run uses it: what was found in each file when it was last read, shared by the run's threads.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "core/arquivo.h"
#include "update/registros.h"

namespace zu::launcher {

// Keys are those of `update::ChaveDoCaminho`. Any thread may call; the class has a lock of its own.
class CacheDeArquivos {
 public:
    // Forgets everything and reads the file anew.
    void Carregar();

    // The entry of an unchanged file: same size and same time of last writing.
    bool Achar(std::string_view chave, const InfoArquivo& info, EntradaCache& entrada) const;
    void Registrar(std::string chave, EntradaCache entrada);
    void Esquecer(std::string_view chave);

    // Writes the file when it would differ from what is on the disk. A failure is kept silent: it costs only time.
    void Gravar();

 private:
    mutable std::mutex trava_;
    MapaCache mapa_;
    bool mudou_ = false;
};

}  // namespace zu::launcher

// What an update run shows of itself: the run's threads write it, the front end copies it out whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "update/status.h"

namespace zu::launcher {

// A file that the check found wanting: the path and "faltando" or "diferente".
struct LinhaResultado {
    std::string caminho;
    std::string palavra;
};

// One swap that the helper program makes once the launcher has closed.
struct TrocaPendente {
    std::filesystem::path origem;  // the parked file; empty: `destino` is to be deleted
    std::filesystem::path destino;
};

// Any thread may call. Nothing is called or logged while the lock is held.
class Andamento {
 public:
    void Zerar(bool reparar);
    // The run begins anew with another list: what it found and parked so far no longer counts.
    void Recomecar();

    // Sets code and sentence and writes the sentence to the log behind "[update] ".
    void Definir(StatusUpdate status, std::string_view texto);
    void DefinirVersao(std::string_view versao);

    // The same, and starts counting from 0 against new totals.
    void Comecar(StatusUpdate status, std::string_view texto, std::uint64_t arquivos, std::uint64_t bytes);
    void DefinirArquivo(std::string_view caminho);
    void SomarArquivos(std::size_t quantos);
    void DefinirBytes(std::uint64_t feitos);  // never shown beyond the total
    // Bytes that need not come, or all the same must: done beside those of `DefinirBytes`, which count the network.
    void SomarReaproveitados(std::int64_t bytes);
    void DefinirVelocidade(double bytesPorSegundo);

    void Anotar(LinhaResultado linha);
    void Estacionar(TrocaPendente troca);

    [[nodiscard]] EstadoAtualizacao Copia() const;
    [[nodiscard]] std::vector<LinhaResultado> Resultados() const;
    [[nodiscard]] std::vector<TrocaPendente> Trocas() const;

 private:
    void Escrever(StatusUpdate status, std::string_view texto);  // under the lock

    mutable std::mutex trava_;
    EstadoAtualizacao estado_;
    std::int64_t reaproveitados_ = 0;
    std::vector<LinhaResultado> resultados_;
    std::vector<TrocaPendente> trocas_;
};

}  // namespace zu::launcher

// The published folder as Forjal keeps it: which files in it are Forjal's own, what they were made from, and under
// which letter case they stand.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/hash.h"
#include "tools/forjal/fileira.h"

namespace zu::launcher::forjal {

// A file of the client as it was when it was last read.
struct Leitura {
    std::string caminho;           // in the list
    std::uint64_t tamanho = 0;     // bytes
    std::uint64_t modificado = 0;  // FILETIME
    std::uint32_t crc = 0;
    std::uint32_t partes = 0;  // in which it was published
    Sha256Digest sha256{};
    bool atual = false;  // the new list names it
};

// What Forjal has put into a published folder and not taken away again. Kept there as "Forjal.publicados";
// docs/forjal.md has the format. The folder may hold other files, which are never in it.
class Publicados {
 public:
    // No file yet is an empty record. False with the reason in `erro` when there is one that cannot be read.
    bool Ler(const std::filesystem::path& pasta, std::string& erro);
    std::string Texto();

    // A file that the new list names. Nothing else of its line is kept.
    void Anotar(const std::string& caminho, std::uint32_t crc, std::uint64_t tamanho);
    // A file that the new list names too and that stays as it is.
    void Manter(const std::string& caminho);
    // One that the list before names: whoever is downloading by it may still ask for it.
    void Conservar(const std::string& caminho);

    // What was read of the client file that the list before names. Null: nothing is known of it. The pointer is good
    // until the next reading is noted.
    const Leitura* Lida(const std::string& caminho);
    // For a file that the new list names; `atual` is set here.
    void AnotarLeitura(Leitura leitura);
    // The recorded size of a published file; false when it is not in the record.
    bool Tamanho(const std::string& caminho, std::uint64_t& tamanho);

    struct Antigos {
        std::size_t livres = 0;       // named neither by the new list nor by the one before
        std::size_t conservados = 0;  // by that one alone
    };
    [[nodiscard]] Antigos ContarAntigos() const;

    // Deletes the free ones from the folder, and the folders that this leaves empty. A file that no longer
    // holds what was published is somebody else's by now: it stays, and the record forgets it. One that
    // cannot be deleted stays in the record. Each of both is named in `avisos`. Returns how many were
    // deleted.
    std::size_t ApagarAntigos(const std::filesystem::path& pasta, std::set<std::string>& avisos);

 private:
    enum class Uso : std::uint8_t { kNenhum, kAnterior, kAtual };
    struct Entrada {
        std::string caminho;
        std::uint64_t tamanho = 0;
        std::uint32_t crc = 0;
        Uso uso = Uso::kNenhum;
    };
    Fileira<Entrada> entradas_;
    Fileira<Leitura> leituras_;
    // Not in the rows yet.
    std::vector<Entrada> novas_;
    std::vector<Leitura> novasLeituras_;
};

// The name under which the file or folder stands on the disk; empty when there is none.
std::wstring NomeNoDisco(const std::filesystem::path& caminho);

// A file or folder whose name on the disk differs from the wanted one in letter case alone.
struct NomeTrocado {
    std::string caminho;  // as wanted, relative to the published folder
    std::wstring noDisco;
};

// Looks for one at `caminho` and at the folders above it. `certas` remembers the folders that are right. A
// web server may tell letter cases apart where this file system does not.
bool AcharNomeTrocado(const std::filesystem::path& pasta, const std::string& caminho, std::set<std::string>& certas,
                      NomeTrocado& trocado);

}  // namespace zu::launcher::forjal

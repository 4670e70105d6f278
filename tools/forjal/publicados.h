// The published folder as Forjal keeps it: which files in it are Forjal's own, and under which letter case
// they stand.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zu::launcher::forjal {

// What Forjal has put into a published folder and not taken away again. Kept there as "Forjal.publicados":
// UTF-8, one file a line, CRC-32 in hexadecimal TAB size in bytes TAB path. The folder may hold other files,
// which are never in it.
class Publicados {
 public:
    // No file yet is an empty record. False with the reason in `erro` when there is one that cannot be read.
    bool Ler(const std::filesystem::path& pasta, std::string& erro);
    [[nodiscard]] bool Gravar(const std::filesystem::path& pasta) const;

    void Anotar(const std::string& caminho, std::uint32_t crc, std::uint64_t tamanho);

    // How many recorded files have none of these keys (`ChaveDoNome`).
    [[nodiscard]] std::size_t Antigos(const std::set<std::wstring>& chaves) const;

    // Deletes those files from the folder, and the folders that this leaves empty. A file that no longer
    // holds what was published is somebody else's by now: it stays, and the record forgets it. One that
    // cannot be deleted stays in the record. Each of both is named in `avisos`. Returns how many were
    // deleted.
    std::size_t ApagarAntigos(const std::filesystem::path& pasta, const std::set<std::wstring>& chaves,
                              std::set<std::string>& avisos);

 private:
    struct Entrada {
        std::string caminho;
        std::uint64_t tamanho = 0;
        std::uint32_t crc = 0;
    };
    std::map<std::wstring, Entrada> entradas_;  // by `ChaveDoNome`
};

// A file or folder whose name on the disk differs from the wanted one in letter case alone.
struct NomeTrocado {
    std::string caminho;  // as wanted, relative to the published folder
    std::wstring noDisco;
};

// Looks for one at `caminho` and at the folders above it. `certas` remembers the folders that are right. A
// web server may tell letter cases apart where this file system does not.
bool AcharNomeTrocado(const std::filesystem::path& pasta, const std::string& caminho, std::set<std::string>& certas,
                      NomeTrocado& trocado);

// Renames whatever `AcharNomeTrocado` finds on this path. False with the reason in `erro`.
bool AcertarCaixa(const std::filesystem::path& pasta, const std::string& caminho, std::set<std::string>& certas,
                  std::string& erro);

}  // namespace zu::launcher::forjal

// Whole-file input and output, and what the file system knows of a path. Nothing here throws for input or output
// trouble: a failure is `false` with the reason in GetLastError(), and the caller reports it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zu::launcher {

template <class Tracos>
class Handle;
struct TracosArquivo;

// How long operations wait, all together, for who holds a file only for a moment: a scanner, an indexer, a backup. Any
// thread may use it.
class Paciencia {
 public:
    static constexpr std::chrono::milliseconds kPorArquivo{1000};

    // A set `cancelar`, which may be absent, ends the waiting.
    explicit Paciencia(std::chrono::milliseconds total = kPorArquivo, const std::atomic<bool>* cancelar = nullptr)
        : resta_(total), cancelar_(cancelar) {}

    // Waits that long at the cost of what is left; false at once when nothing is.
    bool Gastar(std::chrono::milliseconds passo);
    // Waits that long at no cost. False at once when cancelled.
    [[nodiscard]] bool Esperar(std::chrono::milliseconds passo) const;

 private:
    std::atomic<std::chrono::milliseconds> resta_;
    const std::atomic<bool>* cancelar_;
};

constexpr std::uint64_t kLimiteArquivoInteiro = 536'870'912;  // 512 MiB

// What CreateFileW answers for a normal file that is to be written, once more without the read-only mark where that has
// refused it.
Handle<TracosArquivo> AbrirParaEscrever(const std::filesystem::path& caminho, std::uint32_t acesso,
                                        std::uint32_t partilha, std::uint32_t disposicao);

// Writes the file so that a reader sees the old content or the new one, never a part: into `caminho` + ".tmp", flushed,
// then moved over the target. After a failure the target is as it was and the ".tmp" file is gone. The folder must
// exist; content of 4 GiB or more is refused.
bool GravarArquivoAtomico(const std::filesystem::path& caminho, std::string_view bytes);
bool GravarArquivoAtomico(const std::filesystem::path& caminho, std::string_view bytes, Paciencia& paciencia);

// Reads a whole file of at most `kLimiteArquivoInteiro` bytes. After a failure `bytes` has no meaning.
bool LerArquivoInteiro(const std::filesystem::path& caminho, std::string& bytes);

struct InfoArquivo {
    std::uint64_t tamanho = 0;     // bytes
    std::uint64_t modificado = 0;  // FILETIME: 100 ns units since 1601-01-01 UTC
    std::uint32_t atributos = 0;   // FILE_ATTRIBUTE_ bits

    [[nodiscard]] bool Pasta() const;
    [[nodiscard]] bool SomenteLeitura() const;
};

// False when nothing stands at the path, or when it cannot be looked at.
bool LerInfoArquivo(const std::filesystem::path& caminho, InfoArquivo& info);
bool LerInfoArquivo(const wchar_t* caminho, InfoArquivo& info);

// 0 when there is no such file.
std::uint64_t TamanhoDoArquivo(const std::filesystem::path& caminho);

// Returns once the file's content is on the disk.
bool DescarregarArquivo(const std::filesystem::path& caminho);

// Cuts the file off behind its first `tamanho` bytes.
bool EncurtarArquivo(const std::filesystem::path& caminho, std::uint64_t tamanho);

// The path with a suffix on its last name.
std::filesystem::path ComSufixo(std::filesystem::path caminho, const wchar_t* sufixo);

// Makes the folder and every missing one above it. True when the folder exists afterwards; `nova`, which may be absent,
// is then whether it did not before.
bool CriarPastas(const std::filesystem::path& pasta, bool* nova = nullptr);

// Whether a refused operation may work in a moment: `erro` is what the system answers while somebody holds a file.
bool PodePassar(std::uint32_t erro);

// Moves a file over `destino`, replacing it, and returns once the move is on the disk. One try; a target that has the
// read-only mark loses it, and has it again when the move failed all the same.
bool MoverUmaVez(const std::filesystem::path& origem, const std::filesystem::path& destino);

// The same for a file or a target that somebody may hold for a moment: tried again in short steps, for
// `Paciencia::kPorArquivo` at most. Waiting for the target is at the cost of `paciencia`; waiting for the file itself,
// which nobody could move elsewhere either, is not.
bool MoverSobre(const std::filesystem::path& origem, const std::filesystem::path& destino);
bool MoverSobre(const std::filesystem::path& origem, const std::filesystem::path& destino, Paciencia& paciencia);

// Deletes a file, a read-only one too; one try. A file that stays keeps its mark.
bool ApagarArquivo(const std::filesystem::path& caminho);

// Whether somebody holds the file against being written: it is open, or it is a running program. False too when it
// cannot be written for another reason.
bool EmUso(const std::filesystem::path& caminho);

// Whether both paths lead to one file, by the file's identity and not by its name. False when either is missing.
bool MesmoArquivo(const std::filesystem::path& a, const std::filesystem::path& b);

// The path in its final form: absolute, links resolved, in the letter case that the folders have on disk. What does
// not exist is kept as written behind the part that does.
std::filesystem::path CaminhoCanonico(const std::filesystem::path& caminho);

// The running executable (paths of 260 characters and more are cut by the system) and its folder.
std::filesystem::path CaminhoDoPrograma();
std::filesystem::path PastaDoPrograma();

}  // namespace zu::launcher

// Whole-file input and output, and what the file system knows of a path. Nothing here throws for input or output
// trouble: a failure is `false` with the reason in GetLastError(), and the caller reports it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zu::launcher {

constexpr std::uint64_t kLimiteArquivoInteiro = 536'870'912;  // 512 MiB

// Writes the file so that a reader sees the old content or the new one, never a part: into `caminho` + ".tmp", flushed,
// then moved over the target. After a failure the target is as it was and the ".tmp" file is gone. The folder must
// exist; content of 4 GiB or more is refused.
bool GravarArquivoAtomico(const std::filesystem::path& caminho, std::string_view bytes);

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

// 0 when there is no such file.
std::uint64_t TamanhoDoArquivo(const std::filesystem::path& caminho);

// Takes the read-only mark off a file that has it. False when that failed, or when it has none.
bool PermitirEscrita(const std::filesystem::path& caminho);

// Returns once the file's content is on the disk.
bool DescarregarArquivo(const std::filesystem::path& caminho);

// The path with a suffix on its last name.
std::filesystem::path ComSufixo(std::filesystem::path caminho, const wchar_t* sufixo);

// Makes the folder and every missing one above it. True when the folder exists afterwards.
bool CriarPastas(const std::filesystem::path& pasta);

// Moves a file over `destino`, replacing it, and returns once the move is on the disk.
bool MoverSobre(const std::filesystem::path& origem, const std::filesystem::path& destino);

// Whether both paths lead to one file, by the file's identity and not by its name. False when either is missing.
bool MesmoArquivo(const std::filesystem::path& a, const std::filesystem::path& b);

// The path in its final form: absolute, links resolved, in the letter case that the folders have on disk. What does
// not exist is kept as written behind the part that does.
std::filesystem::path CaminhoCanonico(const std::filesystem::path& caminho);

// The running executable (paths of 260 characters and more are cut by the system) and its folder.
std::filesystem::path CaminhoDoPrograma();
std::filesystem::path PastaDoPrograma();

}  // namespace zu::launcher

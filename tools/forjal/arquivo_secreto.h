// Files with key material: read at their exact size, created but never overwritten, wiped from memory after
// use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace zu::launcher::forjal {

// Bytes that are wiped when their owner ends.
class BytesSecretos {
 public:
    BytesSecretos() = default;
    explicit BytesSecretos(std::size_t tamanho) : bytes_(tamanho, '\0') {}
    ~BytesSecretos();
    BytesSecretos(const BytesSecretos&) = delete;
    BytesSecretos& operator=(const BytesSecretos&) = delete;

    // Reads a file that must hold exactly `tamanho` bytes. False with the reason in `erro`.
    bool Ler(const std::filesystem::path& caminho, std::size_t tamanho, std::string& erro);

    [[nodiscard]] std::span<std::uint8_t> Bytes();

 private:
    std::string bytes_;
};

// A file to be created, and what goes into it.
struct ArquivoNovo {
    std::filesystem::path caminho;
    std::span<const std::uint8_t> bytes;
    bool secreto = true;  // this user alone may open it
};

// Creates all the files or none. False, with the file named in `erro`, when one of them exists already or
// cannot be written; the folder must exist.
bool CriarArquivos(std::span<const ArquivoNovo> arquivos, std::string& erro);

}  // namespace zu::launcher::forjal

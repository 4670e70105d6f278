// What stands in the folders of the published folder that a publication uses.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <unordered_map>

namespace zu::launcher::forjal {

class NaSaida {
 public:
    struct Entrada {
        std::string nome;  // as on the disk
        std::uint64_t tamanho = 0;
        bool pasta = false;
    };

    // Lists these folders, given by their paths in the published folder; "" is itself. False, with the reason in
    // `erro`, when one of them is there and cannot be listed.
    bool Ler(const std::filesystem::path& saida, const std::set<std::string>& pastas, std::string& erro);

    // In any letter case; null: nothing stands there.
    [[nodiscard]] const Entrada* Achar(const std::string& caminho) const;

    // Whether the file or folder at this path stands there under another letter case.
    [[nodiscard]] bool OutraCaixa(const std::string& caminho) const;

 private:
    std::unordered_map<std::string, Entrada> entradas_;  // by `ChaveDoNome`
};

}  // namespace zu::launcher::forjal

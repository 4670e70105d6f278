// What stands in the folders of the published folder that a publication uses.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tools/forjal/fileira.h"

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
    const Entrada* Achar(std::string_view caminho);

    // Whether the file or folder at this path stands there under another letter case.
    bool OutraCaixa(std::string_view caminho);

 private:
    using Pasta = Fileira<Entrada, &Entrada::nome>;
    std::unordered_map<std::string, Pasta> pastas_;  // by `ChaveDoNome`
    std::string daUltima_;                           // the folder that was asked for last
    Pasta* ultima_ = nullptr;                        // null: it is not there
};

}  // namespace zu::launcher::forjal

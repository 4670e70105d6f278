// What lies in a client folder and is not the client.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher::forjal {

// Patterns by list path, in which "*" stands for any letters, "/" too, and "?" for one; letter case does not count. A
// pattern with a "/" inside is compared with the whole path, any other with the last name of every file and folder. One
// that ends in "/" means folders only. A folder goes with all below it.
class Exclusoes {
 public:
    void Acrescentar(std::string_view padrao);
    // What version control, file managers and compilers leave: kept as patterns like the others.
    void AcrescentarAsDeSempre();

    // Any thread may ask.
    [[nodiscard]] bool Exclui(const std::string& caminho, bool pasta) const;

    // The patterns, in a row.
    [[nodiscard]] std::string Texto() const;

 private:
    struct Padrao {
        std::string escrito;
        std::wstring chave;  // as `ChaveDoNome`, without a "/" at its end
        bool soPastas = false;
        bool caminhoInteiro = false;
    };
    std::vector<Padrao> padroes_;
};

}  // namespace zu::launcher::forjal

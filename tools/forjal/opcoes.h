// The options of a command: "--nome" and "--nome=valor", matched exactly and case-sensitively.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zu::launcher::forjal {

enum class Valor { kNenhum, kTexto, kNaoVazio };  // kTexto may be empty
enum class Vezes { kAteUma, kUma, kVarias };      // kUma: must be given; kVarias: any number, none included

struct RegraDeOpcao {
    std::wstring_view nome;  // with its dashes, without "="
    Valor valor;
    Vezes vezes;
};

struct Sintaxe {
    std::span<const RegraDeOpcao> opcoes;
    std::string_view arquivo = {};  // what the one argument without dashes is called; empty: the command takes none
};

class Opcoes {
 public:
    // False, with the fault in `erro`, at the first argument that the syntax does not allow and for a missing
    // one.
    bool Ler(std::span<const std::wstring> argumentos, const Sintaxe& sintaxe, std::string& erro);

    [[nodiscard]] bool Tem(std::wstring_view nome) const;
    // Empty when the option was not given.
    [[nodiscard]] std::wstring Texto(std::wstring_view nome) const;
    [[nodiscard]] std::vector<std::wstring> Textos(std::wstring_view nome) const;
    [[nodiscard]] const std::wstring& Arquivo() const { return arquivo_; }

    // Reads a decimal number. True, and `numero` untouched, when the option was not given; false, with the
    // option and its limits in `erro`, for anything but a number from `menor` to `maior`.
    bool LerNumero(std::wstring_view nome, std::uint64_t menor, std::uint64_t maior, std::uint64_t& numero,
                   std::string& erro) const;

 private:
    bool LerOpcao(const std::wstring& argumento, const Sintaxe& sintaxe, std::string& erro);

    std::vector<std::pair<std::wstring, std::wstring>> dadas_;
    std::wstring arquivo_;
};

}  // namespace zu::launcher::forjal

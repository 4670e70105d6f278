// Messages with "{}" placeholders, checked when they are compiled: the number of placeholders must equal the number of
// arguments. Understood inside the braces are {}, {:0N} (decimal, padded with zeros to N digits), {:0NX} and {:0Nx}
// (hexadecimal) and {:.Nf} (fixed point); N is one digit. Braces have no other use in a message.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace zu::launcher {

// One value on its way into a message. Text is UTF-8 and must outlive the call.
class ArgumentoDeFormato {
 public:
    template <std::convertible_to<std::string_view> Texto>
    explicit ArgumentoDeFormato(const Texto& texto) : tipo_(Tipo::kTexto), texto_(texto) {}
    template <std::integral Inteiro>
    explicit ArgumentoDeFormato(Inteiro valor)
        : tipo_(std::is_signed_v<Inteiro> ? Tipo::kComSinal : Tipo::kSemSinal),
          inteiro_(static_cast<std::uint64_t>(valor)) {}
    explicit ArgumentoDeFormato(double valor) : tipo_(Tipo::kReal), real_(valor) {}

    // Appends the value as the placeholder's inner text (for instance ":08X") asks.
    void Escrever(std::string_view marca, std::string& saida) const;

 private:
    enum class Tipo { kTexto, kComSinal, kSemSinal, kReal };

    Tipo tipo_;
    std::uint64_t inteiro_ = 0;
    double real_ = 0;
    std::string_view texto_;
};

template <class... Argumentos>
class FormatoDe {
 public:
    template <std::convertible_to<std::string_view> Texto>
    consteval FormatoDe(const Texto& texto) : texto_(texto) {  // NOLINT(google-explicit-constructor)
        std::size_t marcas = 0;
        for (const char c : texto_)
            marcas += c == '{' ? 1 : 0;
        // Not a constant expression, so the compiler stops here and shows this line.
        if (marcas != sizeof...(Argumentos)) throw "placeholders and arguments differ in number";
    }
    [[nodiscard]] std::string_view Texto() const { return texto_; }

 private:
    std::string_view texto_;
};

std::string FormatarCom(std::string_view formato, std::span<const ArgumentoDeFormato> argumentos);

template <class... Argumentos>
std::string Formatar(FormatoDe<std::type_identity_t<Argumentos>...> formato, const Argumentos&... argumentos) {
    if constexpr (sizeof...(Argumentos) == 0) {
        return std::string(formato.Texto());
    } else {
        const ArgumentoDeFormato lista[] = {ArgumentoDeFormato(argumentos)...};
        return FormatarCom(formato.Texto(), lista);
    }
}

}  // namespace zu::launcher

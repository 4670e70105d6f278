// Puts a function of the test program's own between the program and Windows: an object that defines the pointer through
// which an import is called takes the import library's place, for everything that is linked with it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <string_view>

namespace zu::launcher::teste {

// A function's name as a template argument.
template <std::size_t kTamanho>
struct Rotulo {
    constexpr Rotulo(const char (&texto)[kTamanho]) { std::copy_n(texto, kTamanho, letras.begin()); }
    [[nodiscard]] constexpr std::string_view Texto() const { return {letras.data(), kTamanho - 1}; }
    std::array<char, kTamanho> letras{};
};

// The system's own function. Without a guarded static: the runtime calls here before its locks stand.
template <Rotulo kNome, class Funcao>
Funcao* Verdadeira() {
    static constinit std::atomic<Funcao*> funcao = nullptr;
    if (funcao == nullptr) {
        HMODULE const modulo = LoadLibraryA(kNome.Texto().starts_with("WinHttp") ? "winhttp.dll" : "kernel32.dll");
        funcao = reinterpret_cast<Funcao*>(reinterpret_cast<void*>(GetProcAddress(modulo, kNome.letras.data())));
    }
    return funcao;
}

}  // namespace zu::launcher::teste

#define ZU_VERDADEIRA(nome) zu::launcher::teste::Verdadeira<#nome, decltype(nome)>()

// At file scope: `nossa` is called for `nome` from now on.
#define ZU_DESVIAR(nome, nossa)                     \
    extern "C" {                                    \
    constinit decltype(&nome) __imp_##nome = nossa; \
    }                                               \
    static_assert(true)

// The same for a function whose header does not say that it is imported: the callers know its plain name alone.
#define ZU_DESVIAR_NOME(nome, nossa) \
    ZU_DESVIAR(nome, nossa);         \
    asm(".globl " #nome "\n" #nome ": jmp *__imp_" #nome "(%rip)")

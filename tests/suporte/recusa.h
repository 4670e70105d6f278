// Calls that a test sees before the system does, and may refuse. The pointer through which a program calls an import is
// defined in the test program, in place of the import library's.
#pragma once

#include <windows.h>

#include <atomic>
#include <bit>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <string_view>

namespace zu::launcher::teste {

struct Chamada {
    std::string_view nome;          // "MoveFileExW"
    std::filesystem::path caminho;  // of the file, when its first argument names or holds one
    std::filesystem::path destino;  // of a move
    bool escreve = false;           // a file is opened to be written
};

struct Recusa {
    std::string_view chamada;  // the one call that is refused; empty: none
    DWORD erro = 0;            // with that error; with 0 memory has run out in it
    int vezes = 0;             // so far
    // Instead of that: asked about every call of any name. 0 lets it through; anything else is its error.
    const std::function<DWORD(const Chamada&)>* porta = nullptr;
};
inline constinit Recusa recusa;

// What there is to say of a call, by the form of its arguments.
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, LPCWSTR destino, Resto...) {
    return {nome, caminho, destino};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, DWORD acesso, DWORD, Resto...) {
    return {nome, caminho, {}, (acesso & (GENERIC_WRITE | FILE_APPEND_DATA)) != 0};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, LPCWSTR caminho, Resto...) {
    return {nome, caminho};
}
template <class... Resto>
Chamada Descrever(std::string_view nome, HANDLE arquivo, Resto...) {
    std::wstring caminho(MAX_PATH, L'\0');
    caminho.resize(GetFinalPathNameByHandleW(arquivo, caminho.data(), MAX_PATH, 0));
    return {nome, caminho.substr(caminho.starts_with(L"\\\\?\\") ? 4 : 0)};
}

// Whether the system is not to be asked; the error is then in GetLastError().
template <class... Argumentos>
bool Recusada(std::string_view nome, Argumentos... argumentos) {
    const DWORD antes = GetLastError();
    DWORD erro = 0;
    if (recusa.porta != nullptr) {
        erro = (*recusa.porta)(Descrever(nome, argumentos...));
    } else if (recusa.chamada == nome) {
        ++std::atomic_ref<int>(recusa.vezes);
        if (recusa.erro == 0) throw std::bad_alloc();
        erro = recusa.erro;
    }
    SetLastError(erro != 0 ? erro : antes);
    return erro != 0;
}

}  // namespace zu::launcher::teste

// The system's own function.
#define ZU_VERDADEIRA(dll, funcao) std::bit_cast<decltype(&funcao)>(GetProcAddress(GetModuleHandleW(dll), #funcao))

// At file scope, in one file of the program: `nossa` is called for `funcao` from now on, also by those who know its
// plain name alone.
#define ZU_DESVIAR(funcao, nossa)                       \
    extern "C" {                                        \
    constinit decltype(&funcao) __imp_##funcao = nossa; \
    }                                                   \
    asm(".globl " #funcao "\n" #funcao ": jmp *__imp_" #funcao "(%rip)")

// The same, for a test to refuse the call, which then returns `recusado`.
#define ZU_RECUSAVEL(dll, funcao, recusado)                                \
    ZU_DESVIAR(funcao, [](auto... a) -> decltype(funcao(a...)) {           \
        if (zu::launcher::teste::Recusada(#funcao, a...)) return recusado; \
        return ZU_VERDADEIRA(dll, funcao)(a...);                           \
    })

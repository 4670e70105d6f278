// Calls that the system refuses while a test wants it to. The pointer through which a program calls an import is
// defined in the test program, in place of the import library's.
#pragma once

#include <windows.h>

#include <atomic>
#include <bit>
#include <new>
#include <string_view>

namespace zu::launcher::teste {

struct Recusa {
    std::string_view chamada;  // the one call that is refused; empty: none
    DWORD erro = 0;            // with that error; with 0 memory has run out in it
    int vezes = 0;             // so far
    int antes = 0;             // calls that pass before the first that is refused
    void (*ver)() = nullptr;   // instead of refusing: called before every call
};
inline constinit Recusa recusa;

}  // namespace zu::launcher::teste

// At file scope, in one file of the program. `recusado` is what the call returns when it is refused.
#define ZU_RECUSAVEL(dll, funcao, recusado)                                                            \
    extern "C" {                                                                                       \
    constinit decltype(&funcao) __imp_##funcao = [](auto... a) -> decltype(funcao(a...)) {             \
        zu::launcher::teste::Recusa& r = zu::launcher::teste::recusa;                                  \
        if (r.chamada == #funcao) {                                                                    \
            const int vez = std::atomic_ref<int>(r.vezes)++;                                           \
            if (r.ver != nullptr) {                                                                    \
                r.ver();                                                                               \
            } else if (vez >= r.antes) {                                                               \
                if (r.erro == 0) throw std::bad_alloc();                                               \
                SetLastError(r.erro);                                                                  \
                return recusado;                                                                       \
            }                                                                                          \
        }                                                                                              \
        return std::bit_cast<decltype(&funcao)>(GetProcAddress(GetModuleHandleW(dll), #funcao))(a...); \
    };                                                                                                 \
    }                                                                                                  \
    static_assert(true)

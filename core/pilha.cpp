// What the compiler's stack protection calls for: a value that nobody can guess, put on the stack above a function's
// arrays and looked at before the function returns. The compiler's own library for it asks a provider of cryptography
// for the value before the program's first line, which loads DLLs that the program's folder could replace.
#include <windows.h>

#include <x86intrin.h>

#include <cstdint>
#include <initializer_list>

// NOLINTBEGIN: the names are the compiler's
extern "C" {
extern std::uintptr_t __stack_chk_guard;
std::uintptr_t __stack_chk_guard = 0;

// The stack is not to be trusted any more, so nothing of the program runs after this: no handler, no destructor, no
// log.
[[noreturn]] void __stack_chk_fail() {
    asm volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
    __builtin_unreachable();
}
}
// NOLINTEND

namespace {

// Before every other initialiser, while no function runs yet that has stored the value.
[[gnu::constructor(101), gnu::optimize("no-stack-protector")]] void Sortear() {
    FILETIME agora;
    LARGE_INTEGER contador;
    GetSystemTimeAsFileTime(&agora);
    QueryPerformanceCounter(&contador);
    std::uint64_t valor = reinterpret_cast<std::uintptr_t>(&contador) ^ __rdtsc();
    for (const std::uint64_t parte : {static_cast<std::uint64_t>(contador.QuadPart),
                                      std::uint64_t{agora.dwHighDateTime} << 32 | agora.dwLowDateTime,
                                      std::uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId()}) {
        valor = (valor ^ parte) * 0x9E37'79B9'7F4A'7C15U;
        valor ^= valor >> 29;
    }
    // A zero byte first: a text that runs over its end cannot write it and go on.
    __stack_chk_guard = valor & ~std::uintptr_t{0xFF};
}

}  // namespace

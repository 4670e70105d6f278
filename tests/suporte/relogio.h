// Time that a test need not wait for. For the whole program that has this in one of its files.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "tests/suporte/recusa.h"

namespace zu::launcher::teste {

constexpr std::int64_t kParado = -1;
inline constinit std::atomic<std::int64_t> menorPasso = kParado;  // ms
inline thread_local constinit std::int64_t adiantado = 0;         // ms

// While it lives nobody waits long: a pause, or a wait that nothing ends at once, moves the clocks of its own thread
// forward instead, by at least `passo`. The clocks of other threads stay, so what a thread sees of time follows from
// what it does. One at a time.
class Relogio {
 public:
    explicit Relogio(std::chrono::milliseconds passo = std::chrono::milliseconds(0)) { menorPasso = passo.count(); }
    Relogio(const Relogio&) = delete;
    Relogio& operator=(const Relogio&) = delete;
    ~Relogio() { menorPasso = kParado; }
};

// Whether the wait is to be cut short: only a pause that has an end is.
inline bool Encurtar(DWORD ms) {
    return menorPasso != kParado && ms != 0 && ms != INFINITE;
}

inline void Adiantar(DWORD ms) {
    adiantado += std::max<std::int64_t>(ms, menorPasso);
}

inline void WINAPI Dormir(DWORD ms) {
    if (!Encurtar(ms)) return ZU_VERDADEIRA(L"kernel32", Sleep)(ms);
    Adiantar(ms);
}

inline DWORD WINAPI EsperarVarios(DWORD quantos, const HANDLE* objetos, BOOL todos, DWORD ms) {
    constexpr DWORD kEspera = 5;  // ms: lets the other threads get on
    const DWORD resposta =
        ZU_VERDADEIRA(L"kernel32", WaitForMultipleObjects)(quantos, objetos, todos, Encurtar(ms) ? kEspera : ms);
    if (resposta == WAIT_TIMEOUT && Encurtar(ms)) Adiantar(ms);
    return resposta;
}

inline DWORD WINAPI EsperarUm(HANDLE objeto, DWORD ms) {
    return EsperarVarios(1, &objeto, FALSE, ms);
}

inline BOOL WINAPI LerContador(LARGE_INTEGER* contador) {
    LARGE_INTEGER frequencia{};
    QueryPerformanceFrequency(&frequencia);
    const BOOL lido = ZU_VERDADEIRA(L"kernel32", QueryPerformanceCounter)(contador);
    contador->QuadPart += adiantado * frequencia.QuadPart / 1000;
    return lido;
}

inline ULONGLONG WINAPI LerTiques() {
    return ZU_VERDADEIRA(L"kernel32", GetTickCount64)() + static_cast<ULONGLONG>(adiantado);
}

}  // namespace zu::launcher::teste

ZU_DESVIAR(GetTickCount64, &zu::launcher::teste::LerTiques);
ZU_DESVIAR(QueryPerformanceCounter, &zu::launcher::teste::LerContador);
ZU_DESVIAR(Sleep, &zu::launcher::teste::Dormir);
ZU_DESVIAR(WaitForMultipleObjects, &zu::launcher::teste::EsperarVarios);
ZU_DESVIAR(WaitForSingleObject, &zu::launcher::teste::EsperarUm);

// Time that a test need not wait for. For the whole program that has this in one of its files.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tests/suporte/recusa.h"

namespace zu::launcher::teste {

// Unless it stands still nobody waits long: a pause, or a wait that nothing ends at once, moves the clocks of its own
// thread forward instead, by at least this many milliseconds. The clocks of other threads stay, so what a thread sees
// of time follows from what it does.
constexpr std::int64_t kParado = -1;
inline constinit std::atomic<std::int64_t> menorPasso = kParado;
inline thread_local constinit std::int64_t adiantado = 0;  // ms

// Whether the wait is to be cut short: only a pause that has an end is.
inline bool Encurtar(DWORD ms) {
    return menorPasso != kParado && ms != 0 && ms != INFINITE;
}

inline void WINAPI Dormir(DWORD ms) {
    if (!Encurtar(ms)) return ZU_VERDADEIRA(L"kernel32", Sleep)(ms);
    adiantado += std::max<std::int64_t>(ms, menorPasso);
}

inline DWORD WINAPI EsperarVarios(DWORD quantos, const HANDLE* objetos, BOOL todos, DWORD ms) {
    constexpr DWORD kEspera = 5;  // ms: lets the other threads get on
    const DWORD resposta =
        ZU_VERDADEIRA(L"kernel32", WaitForMultipleObjects)(quantos, objetos, todos, Encurtar(ms) ? kEspera : ms);
    if (resposta == WAIT_TIMEOUT && Encurtar(ms)) adiantado += std::max<std::int64_t>(ms, menorPasso);
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

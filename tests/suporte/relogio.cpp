#include "tests/suporte/relogio.h"

#include <windows.h>

#include <cstdint>

#include "tests/suporte/recusa.h"

namespace zu::launcher::teste {
namespace {

constexpr std::int64_t kParado = -1;
constexpr DWORD kEspera = 5;  // ms

constinit std::atomic<std::int64_t> menor = kParado;  // ms
thread_local constinit std::int64_t adiantado = 0;    // ms

// Whether the wait is to be cut short: only a pause that has an end is.
bool Encurtar(DWORD ms) {
    return menor != kParado && ms != 0 && ms != INFINITE;
}

void Adiantar(DWORD ms) {
    adiantado += std::max<std::int64_t>(ms, menor);
}

void WINAPI Dormir(DWORD ms) {
    if (!Encurtar(ms)) return ZU_VERDADEIRA(L"kernel32", Sleep)(ms);
    Adiantar(ms);
}

// A wait as long as this lets the other threads get on.
DWORD WINAPI EsperarUm(HANDLE objeto, DWORD ms) {
    const DWORD resposta = ZU_VERDADEIRA(L"kernel32", WaitForSingleObject)(objeto, Encurtar(ms) ? kEspera : ms);
    if (resposta == WAIT_TIMEOUT && Encurtar(ms)) Adiantar(ms);
    return resposta;
}

DWORD WINAPI EsperarVarios(DWORD quantos, const HANDLE* objetos, BOOL todos, DWORD ms) {
    const DWORD resposta =
        ZU_VERDADEIRA(L"kernel32", WaitForMultipleObjects)(quantos, objetos, todos, Encurtar(ms) ? kEspera : ms);
    if (resposta == WAIT_TIMEOUT && Encurtar(ms)) Adiantar(ms);
    return resposta;
}

BOOL WINAPI LerContador(LARGE_INTEGER* contador) {
    constexpr std::int64_t kMsPorSegundo = 1000;
    LARGE_INTEGER frequencia{};
    QueryPerformanceFrequency(&frequencia);
    const BOOL lido = ZU_VERDADEIRA(L"kernel32", QueryPerformanceCounter)(contador);
    contador->QuadPart += adiantado * frequencia.QuadPart / kMsPorSegundo;
    return lido;
}

ULONGLONG WINAPI LerTiques() {
    return ZU_VERDADEIRA(L"kernel32", GetTickCount64)() + static_cast<ULONGLONG>(adiantado);
}

}  // namespace

Relogio::Relogio(std::chrono::milliseconds menorPasso) {
    menor = menorPasso.count();
}

Relogio::~Relogio() {
    menor = kParado;
}

}  // namespace zu::launcher::teste

ZU_DESVIAR(GetTickCount64, &zu::launcher::teste::LerTiques);
ZU_DESVIAR(QueryPerformanceCounter, &zu::launcher::teste::LerContador);
ZU_DESVIAR(Sleep, &zu::launcher::teste::Dormir);
ZU_DESVIAR(WaitForMultipleObjects, &zu::launcher::teste::EsperarVarios);
ZU_DESVIAR(WaitForSingleObject, &zu::launcher::teste::EsperarUm);

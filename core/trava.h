// Locks for what many threads want at once, for std::lock_guard and std::unique_lock. Where threads meet, those of the
// standard library make and wait for kernel objects.
#pragma once

#include <windows.h>

#include <mutex>

namespace zu::launcher {

class Trava {
 public:
    Trava() = default;
    Trava(const Trava&) = delete;
    Trava& operator=(const Trava&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&trava_); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&trava_); }

 private:
    friend class Aviso;
    SRWLOCK trava_ = SRWLOCK_INIT;
};

// Its owner may lock it again.
class TravaRecursiva {
 public:
    TravaRecursiva() { InitializeCriticalSection(&secao_); }
    TravaRecursiva(const TravaRecursiva&) = delete;
    TravaRecursiva& operator=(const TravaRecursiva&) = delete;
    ~TravaRecursiva() { DeleteCriticalSection(&secao_); }

    void lock() noexcept { EnterCriticalSection(&secao_); }
    void unlock() noexcept { LeaveCriticalSection(&secao_); }

 private:
    CRITICAL_SECTION secao_{};
};

// What threads wait for under a `Trava`.
class Aviso {
 public:
    template <class Condicao>
    void Esperar(std::unique_lock<Trava>& guarda, Condicao condicao) {
        while (!condicao())
            SleepConditionVariableSRW(&aviso_, &guarda.mutex()->trava_, INFINITE, 0);
    }
    void AcordarUm() noexcept { WakeConditionVariable(&aviso_); }
    void AcordarTodos() noexcept { WakeAllConditionVariable(&aviso_); }

 private:
    CONDITION_VARIABLE aviso_ = CONDITION_VARIABLE_INIT;
};

}  // namespace zu::launcher

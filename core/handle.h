// Ownership of system handles. `Handle` is move-only, closes what it holds exactly once and keeps the thread's last
// error while it does, so that a failing function may return through its owners before the error is read.
#pragma once

#include <windows.h>

#include <utility>

namespace zu::launcher {

// `Tracos` names the handle type (`Tipo`), the value that stands for "none" (`Nulo()`) and the closing call (`Fechar`).
template <class Tracos>
class Handle {
 public:
    using Tipo = typename Tracos::Tipo;

    Handle() noexcept = default;
    explicit Handle(Tipo valor) noexcept : valor_(valor) {}
    Handle(Handle&& outro) noexcept : valor_(outro.Soltar()) {}
    Handle& operator=(Handle&& outro) noexcept {
        if (this != &outro) Trocar(outro.Soltar());
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Trocar(Tracos::Nulo()); }

    [[nodiscard]] Tipo Valor() const noexcept { return valor_; }
    explicit operator bool() const noexcept { return valor_ != Tracos::Nulo(); }

    // Closes what is held and holds `novo` instead.
    void Trocar(Tipo novo) noexcept {
        const Tipo antigo = std::exchange(valor_, novo);
        if (antigo == Tracos::Nulo()) return;
        const DWORD erro = GetLastError();
        Tracos::Fechar(antigo);
        SetLastError(erro);
    }
    void Fechar() noexcept { Trocar(Tracos::Nulo()); }
    [[nodiscard]] Tipo Soltar() noexcept { return std::exchange(valor_, Tracos::Nulo()); }

    // The place for a call that hands the handle out through a pointer.
    [[nodiscard]] Tipo* Receber() noexcept {
        Fechar();
        return &valor_;
    }

 private:
    Tipo valor_ = Tracos::Nulo();
};

// Processes, threads, mutexes, events, mappings: none is null.
struct TracosKernel {
    using Tipo = HANDLE;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { CloseHandle(h); }
};
using HandleKernel = Handle<TracosKernel>;

// What CreateFileW and the tool-help snapshots return: none is INVALID_HANDLE_VALUE.
struct TracosArquivo {
    using Tipo = HANDLE;
    static Tipo Nulo() noexcept { return INVALID_HANDLE_VALUE; }  // NOLINT(performance-no-int-to-ptr)
    static void Fechar(Tipo h) noexcept { CloseHandle(h); }
};
using HandleArquivo = Handle<TracosArquivo>;

}  // namespace zu::launcher

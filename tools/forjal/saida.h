// Where Forjal's words go. Every text is UTF-8, without a line end.
#pragma once

#include <windows.h>

#include <string_view>

namespace zu::launcher::forjal {

// What every command ends with.
enum Codigo : int { kFeito = 0, kRecusado = 1, kUsoErrado = 2 };

// Used from one thread.
class Saida {
 public:
    virtual ~Saida() = default;
    virtual void Linha(std::string_view texto) = 0;
    virtual void Erro(std::string_view texto) = 0;
    // How far a long job has come, 0 to 100. May be called as often as one likes.
    virtual void Progresso(unsigned porCento, std::string_view texto) = 0;
};

// Lines to the standard output, errors to the standard error. On a console the progress is one line refreshed
// in place; elsewhere a line at every tenth of the way.
class SaidaDoConsole final : public Saida {
 public:
    SaidaDoConsole();
    ~SaidaDoConsole() override;
    SaidaDoConsole(const SaidaDoConsole&) = delete;
    SaidaDoConsole& operator=(const SaidaDoConsole&) = delete;

    void Linha(std::string_view texto) override;
    void Erro(std::string_view texto) override;
    void Progresso(unsigned porCento, std::string_view texto) override;

 private:
    void ApagarProgresso();

    HANDLE saida_;  // the process's own: never closed
    HANDLE erro_;
    bool console_;  // whether the standard output is one
    UINT paginaAnterior_;
    std::size_t letrasDoProgresso_ = 0;
    unsigned proximoPorCento_ = 0;
};

}  // namespace zu::launcher::forjal

#include "tools/forjal/saida.h"

#include <algorithm>
#include <string>

#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher::forjal {
namespace {

constexpr unsigned kPassoForaDoConsole = 10;  // percent

bool EConsole(HANDLE saida) {
    DWORD modo = 0;
    return GetConsoleMode(saida, &modo) != 0;
}

// A console gets UTF-16, which no code page can spoil; files and pipes get the bytes.
void Escrever(HANDLE saida, std::string_view texto) {
    DWORD escritos = 0;
    if (EConsole(saida)) {
        const std::wstring largo = DeUtf8(texto);
        WriteConsoleW(saida, largo.data(), static_cast<DWORD>(largo.size()), &escritos, nullptr);
    } else {
        WriteFile(saida, texto.data(), static_cast<DWORD>(texto.size()), &escritos, nullptr);
    }
}

}  // namespace

// The code page is for those who read a pipe as the console's text, PowerShell for one.
SaidaDoConsole::SaidaDoConsole()
    : saida_(GetStdHandle(STD_OUTPUT_HANDLE)),
      erro_(GetStdHandle(STD_ERROR_HANDLE)),
      console_(EConsole(saida_)),
      paginaAnterior_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
}

SaidaDoConsole::~SaidaDoConsole() {
    ApagarProgresso();
    if (paginaAnterior_ != 0) SetConsoleOutputCP(paginaAnterior_);
}

void SaidaDoConsole::Linha(std::string_view texto) {
    ApagarProgresso();
    Escrever(saida_, Formatar("{}\n", texto));
}

void SaidaDoConsole::Erro(std::string_view texto) {
    ApagarProgresso();
    Escrever(erro_, Formatar("{}\n", texto));
}

void SaidaDoConsole::Progresso(unsigned porCento, std::string_view texto) {
    if (console_) {
        // Blanks cover what a longer line before this one left.
        std::string linha = Formatar("\r{}", texto);
        if (letrasDoProgresso_ > texto.size()) linha.append(letrasDoProgresso_ - texto.size(), ' ');
        Escrever(saida_, linha);
        letrasDoProgresso_ = std::max(letrasDoProgresso_, texto.size());
    } else if (porCento >= proximoPorCento_) {
        Escrever(saida_, Formatar("{}\n", texto));
        proximoPorCento_ = (porCento / kPassoForaDoConsole + 1) * kPassoForaDoConsole;
    }
}

void SaidaDoConsole::ApagarProgresso() {
    if (letrasDoProgresso_ == 0) return;
    Escrever(saida_, Formatar("\r{}\r", std::string(letrasDoProgresso_, ' ')));
    letrasDoProgresso_ = 0;
}

}  // namespace zu::launcher::forjal

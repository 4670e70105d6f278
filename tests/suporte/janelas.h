// Windows for tests: a plain one, the message pump, and counts of what the process holds.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include "tests/suporte/publicacao.h"

namespace zu::launcher::teste {

using Espiao = std::function<void(UINT, WPARAM, LPARAM)>;

// A visible popup of 500 x 300 that shows its messages to `espiao`. Destroyed with DestroyWindow.
HWND CriarJanela(Espiao espiao);

// Runs on the thread of a window whose loop handles messages, and returns when it has run.
void NaThreadDe(HWND janela, const std::function<void()>& trabalho);

// A click as the window sees it; the window may be another process's.
void Clicar(HWND controle);

// Presses the real pointer's left button at a point of the window and moves on, or lets it go.
void PuxarPelaTela(HWND janela, POINT ponto);
void SoltarNaTela();

// One launcher with its window, on a thread of its own as in the program.
class Interface {
 public:
    Interface();
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;
    ~Interface() { Fechar(); }

    [[nodiscard]] HWND Janela() const { return janela_; }
    [[nodiscard]] HWND Botao(int id) const { return GetDlgItem(janela_, id); }
    [[nodiscard]] bool Habilitado(int id) const { return IsWindowEnabled(Botao(id)) != FALSE; }
    void Clicar(int id) const { teste::Clicar(Botao(id)); }
    [[nodiscard]] std::pair<int, int> Barras() const;
    [[nodiscard]] bool Terminou() const { return fim_; }
    // The run's code, once it has ended by itself; -1 when it does not.
    int EsperarFim(std::chrono::milliseconds limite);
    int Fechar();

 private:
    HWND janela_ = nullptr;
    int codigo_ = -1;
    std::atomic<bool> fim_ = false;
    std::thread thread_;
};

// A game folder and the server that it is kept up to date from.
class ComServidor : public testing::Test {
 protected:
    ComServidor();

    void Publicar(std::map<std::string, std::string> arquivos);
    // The stand-in as the game, which plays `roteiro`.
    void PorJogo(const std::string& roteiro, bool fecharAoJogar) const;
    // How many lines of the log begin so.
    [[nodiscard]] std::ptrdiff_t QuantasLinhas(const std::string& inicio) const;
    static HWND CaixaDeMensagem() { return FindWindowW(L"#32770", L"Zu Launcher"); }

    PastaTemporaria pasta_;
    Servidor servidor_;
    Publicacao publicacao_;
};

// Handles messages for so long, or until `pronto`.
void Bombear(std::chrono::milliseconds tempo);
bool Bombear(std::chrono::milliseconds limite, const std::function<bool()>& pronto);

// GDI objects and windows or menus of this process.
struct Posses {
    int gdi = 0;
    int user = 0;
};
Posses ContarPosses();

}  // namespace zu::launcher::teste

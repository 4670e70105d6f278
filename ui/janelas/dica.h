// A tool tip: a small window with a few lines of text, under the pointer for as long as it rests. UI thread only.
#pragma once

#include <windows.h>

#include <string>

namespace zu::launcher {

class Dica {
 public:
    Dica() = default;
    Dica(const Dica&) = delete;
    Dica& operator=(const Dica&) = delete;
    ~Dica() { Esconder(); }

    // Shows it, within the monitor's work area and without taking the keyboard. `ponto` is on the screen.
    void Mostrar(HWND dona, POINT ponto, const std::wstring& texto);
    // Another text in its place, while it is shown.
    void Mudar(const std::wstring& texto);
    void Esconder();
    [[nodiscard]] bool Visivel() const { return janela_ != nullptr; }

 private:
    static LRESULT CALLBACK Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam);
    void Ajustar();
    void Pintar(HDC dc) const;

    HWND janela_ = nullptr;
    POINT ponto_{};
    std::wstring texto_;
};

}  // namespace zu::launcher

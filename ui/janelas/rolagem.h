// How a scroll bar moves what it belongs to: by the wheel, by keys and by its thumb. UI thread only.
#pragma once

#include <windows.h>

namespace zu::launcher {

// All in pixels of the window.
struct MedidasDaRolagem {
    RECT trilho{};   // the track, as high as what is seen at once
    int limite = 0;  // how far it can be scrolled; 0: all is seen
};

// The thumb on the track.
RECT PolegarDaRolagem(const MedidasDaRolagem& medidas, int posicao);

class Rolagem {
 public:
    explicit Rolagem(const MedidasDaRolagem& medidas) : medidas_(medidas) {}

    // Pixels that are above the upper edge.
    [[nodiscard]] int Posicao() const { return posicao_; }

    // Sees every message of the window that it is in. True: done with; the position may be another then.
    bool Tratar(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam);

 private:
    void Girar(int giro);
    bool Teclar(WPARAM tecla);
    bool Pressionar(HWND janela, POINT ponto);
    void Arrastar(int y);
    void Ir(int posicao);

    MedidasDaRolagem medidas_;
    int posicao_ = 0;
    int resto_ = 0;            // of the wheel's turn, less than a pixel
    bool arrastando_ = false;  // the thumb follows the pointer
    int pegada_ = 0;           // where the pointer holds the thumb, from its top
};

}  // namespace zu::launcher

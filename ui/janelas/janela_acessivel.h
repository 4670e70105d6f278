// What a window tells the programs that read the screen aloud: its own parts, then the boxes of its title strip; its
// controls in the order of Tab. UI thread only.
#pragma once

#include "ui/acessibilidade/acessivel.h"
#include "ui/janelas/janela.h"

namespace zu::launcher {

class JanelaAcessivel final : public Acessivel {
 public:
    explicit JanelaAcessivel(HWND janela) : janela_(janela) {}

    [[nodiscard]] HWND Handle() const override;
    [[nodiscard]] Elemento Inteiro() const override;
    [[nodiscard]] int Partes() const override;
    [[nodiscard]] Elemento Parte(int i) const override;
    [[nodiscard]] std::vector<HWND> Filhos() const override;

 private:
    HWND janela_;
};

}  // namespace zu::launcher

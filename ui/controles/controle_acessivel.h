// What a control tells the programs that read the screen aloud. The items of a list are its parts. UI thread only.
#pragma once

#include "ui/acessibilidade/acessivel.h"

namespace zu::launcher {

class ControleAcessivel final : public Acessivel {
 public:
    explicit ControleAcessivel(HWND controle) : controle_(controle) {}

    [[nodiscard]] HWND Handle() const override;
    [[nodiscard]] Elemento Inteiro() const override;
    [[nodiscard]] int Partes() const override;
    [[nodiscard]] Elemento Parte(int i) const override;
    [[nodiscard]] std::vector<HWND> Filhos() const override { return {}; }

 private:
    HWND controle_;
};

}  // namespace zu::launcher

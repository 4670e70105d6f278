// What the main window looks like.
#pragma once

#include <windows.h>

#include <string>

#include "ui/desenho/fontes.h"
#include "ui/desenho/logo.h"
#include "ui/desenho/moldura.h"

namespace zu::launcher {

constexpr int kLarguraPrincipal = 454;
constexpr int kAlturaPrincipal = 516;

// The middle of the window, where the site is shown.
constexpr RECT kCentro{9, 49, 445, 382};
// What changes with the two bars.
constexpr RECT kAreaDoProgresso{152, 409, 386, 443};

enum class CentroDaPrincipal {
    kSite,         // the site covers it, or will once it has loaded: the dark ground alone
    kLogo,         // no site is shown
    kFalhaDoSite,  // a site was to be shown
};

struct AparenciaPrincipal {
    std::wstring titulo;
    bool ativa = false;
    CaixaDaTira sobre = CaixaDaTira::kNenhuma;
    CentroDaPrincipal centro = CentroDaPrincipal::kLogo;
    int superior = 0;  // 0 to 100
    int inferior = 0;
};

// The fonts that only this window uses.
struct FontesDaPrincipal {
    HandleGdi letreiro = CriarFonte(L"Georgia", 22, FW_BOLD);
    HandleGdi marca = CriarFonte(L"Arial", 11, FW_NORMAL);
    HandleGdi percentual = CriarFonte(L"Arial", 10, FW_BOLD);
};

// `LogoCentral` in the centre's size. Stretched once: every repaint copies it.
class LogoEncaixado {
 public:
    LogoEncaixado() = default;
    explicit LogoEncaixado(const LogoCentral& logo);

    [[nodiscard]] bool Vazio() const { return !bitmap_; }
    [[nodiscard]] HGDIOBJ Bitmap() const { return bitmap_.Valor(); }
    [[nodiscard]] Tamanho Medida() const { return medida_; }

 private:
    Tamanho medida_;
    HandleGdi bitmap_;
};

void PintarPrincipal(HDC dc, const AparenciaPrincipal& aparencia, const LogoEncaixado& logo, const Fontes& fontes,
                     const FontesDaPrincipal& proprias);

}  // namespace zu::launcher

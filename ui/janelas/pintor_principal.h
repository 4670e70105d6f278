// What the main window looks like.
#pragma once

#include <windows.h>

#include <array>
#include <string>

#include "ui/desenho/fontes.h"
#include "ui/desenho/logo.h"
#include "ui/desenho/moldura.h"
#include "ui/janelas/medidas_principal.h"

namespace zu::launcher {

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
    std::array<int, 2> barras{};  // the upper and the lower one, 0 to 100
    std::wstring situacao;        // the status sentence, which is not drawn but told
    bool terminou = false;        // and it is how a run has ended
};

constexpr wchar_t kTextoDaFalhaDoSite[] = L"Não foi possível abrir o site.";

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

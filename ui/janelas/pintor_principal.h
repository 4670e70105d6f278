// What the main window looks like.
#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

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

// The window's picture without its controls, from what stays and what a run moves: the bars.
class PinturaDaPrincipal {
 public:
    explicit PinturaDaPrincipal(LogoEncaixado logo) : logo_(std::move(logo)) {}

    // Keeps what stays for the next time.
    void Pintar(HDC dc, const AparenciaPrincipal& aparencia, const Fontes& fontes);
    // The same, all of it drawn.
    void PintarTudo(HDC dc, const AparenciaPrincipal& aparencia, const Fontes& fontes) const;

 private:
    void PintarFundo(HDC dc, const AparenciaPrincipal& a, const Fontes& fontes) const;
    void PintarBarras(HDC dc, const AparenciaPrincipal& a) const;

    LogoEncaixado logo_;
    FontesDaPrincipal proprias_;
    Retrato fundo_;
    // What `fundo_` shows.
    std::optional<std::tuple<std::wstring, bool, CaixaDaTira, CentroDaPrincipal, unsigned>> mostrado_;
};

}  // namespace zu::launcher

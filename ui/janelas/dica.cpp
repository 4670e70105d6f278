#include "ui/janelas/dica.h"

#include <algorithm>
#include <utility>

#include "ui/desenho/fontes.h"
#include "ui/janelas/molde.h"
#include "ui/janelas/pintor_modal.h"

namespace zu::launcher {
namespace {

constexpr wchar_t kClasse[] = L"ZuLauncherDica";
constexpr int kMargem = 6;
constexpr int kSobOPonteiro = 20;
constexpr int kMaiorLargura = 420;
constexpr COLORREF kFundo = RGB(248, 248, 240);
constexpr COLORREF kContorno = RGB(96, 96, 96);
constexpr UINT kFormato = DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;

SIZE TamanhoDoTexto(const std::wstring& texto) {
    const HandleDc dc(CreateCompatibleDC(nullptr));
    const Selecao selecao(dc.Valor(), FontesDaInterface().normal.Valor());
    RECT r{0, 0, kMaiorLargura, 0};
    DrawTextW(dc.Valor(), texto.c_str(), static_cast<int>(texto.size()), &r, kFormato | DT_CALCRECT);
    return {r.right, r.bottom};
}

}  // namespace

void Dica::Mostrar(HWND dona, POINT ponto, const std::wstring& texto) {
    Esconder();
    const HINSTANCE modulo = GetModuleHandleW(nullptr);
    RegistrarClasse(modulo, kClasse, Procedimento);
    janela_ = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_TRANSPARENT, kClasse, L"", WS_POPUP, 0, 0, 0,
                              0, dona, nullptr, modulo, nullptr);
    if (janela_ == nullptr) return;
    SetWindowLongPtrW(janela_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ponto_ = ponto;
    texto_ = texto;
    Ajustar();
}

void Dica::Mudar(const std::wstring& texto) {
    if (janela_ == nullptr || std::exchange(texto_, texto) == texto) return;
    Ajustar();
    InvalidateRect(janela_, nullptr, FALSE);
}

void Dica::Esconder() {
    if (janela_ != nullptr) DestroyWindow(std::exchange(janela_, nullptr));
}

void Dica::Ajustar() {
    const SIZE texto = TamanhoDoTexto(texto_);
    const SIZE tamanho{texto.cx + 2 * kMargem, texto.cy + 2 * kMargem};
    MONITORINFO monitor{.cbSize = sizeof monitor};
    GetMonitorInfoW(MonitorFromPoint(ponto_, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& area = monitor.rcWork;
    const LONG x = std::max(area.left, std::min(ponto_.x, area.right - tamanho.cx));
    // Above the pointer where there is no room below it.
    const LONG abaixo = ponto_.y + kSobOPonteiro;
    const LONG y = abaixo + tamanho.cy <= area.bottom ? abaixo : ponto_.y - kMargem - tamanho.cy;
    SetWindowPos(janela_, HWND_TOPMOST, x, y, tamanho.cx, tamanho.cy, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    SetWindowTextW(janela_, texto_.c_str());
}

void Dica::Pintar(HDC dc) const {
    RECT r{};
    GetClientRect(janela_, &r);
    PreencherRetangulo(dc, r, kFundo);
    ContornarRetangulo(dc, r, kContorno);
    InflateRect(&r, -kMargem, -kMargem);
    Escrever(dc, texto_, r, Fontes::De(FontesDaInterface().normal), kCorDoTexto, kFormato);
}

LRESULT CALLBACK Dica::Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    const auto* const dica = reinterpret_cast<Dica*>(GetWindowLongPtrW(janela, GWLP_USERDATA));
    switch (mensagem) {
        case WM_PAINT:
            PintarJanela(janela, [dica](HDC dc) { dica->Pintar(dc); });
            return 0;
        case WM_PRINTCLIENT:
            dica->Pintar(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        // What is under it gets the pointer.
        case WM_NCHITTEST:
            return HTTRANSPARENT;
        default:
            return DefWindowProcW(janela, mensagem, wParam, lParam);
    }
}

}  // namespace zu::launcher

#include "ui/janelas/rolagem.h"

#include <algorithm>

#include "ui/janelas/molde.h"

namespace zu::launcher {
namespace {

constexpr int kPassoDaRoda = 75;  // a notch
constexpr int kPassoDaTecla = 25;
constexpr int kMenorPolegar = 24;

int Altura(const RECT& r) {
    return static_cast<int>(r.bottom - r.top);
}

}  // namespace

RECT PolegarDaRolagem(const MedidasDaRolagem& medidas, int posicao) {
    RECT r = medidas.trilho;
    const int visivel = Altura(r);
    const int polegar = std::max(kMenorPolegar, visivel * visivel / std::max(1, visivel + medidas.limite));
    r.top += medidas.limite == 0 ? 0 : (visivel - polegar) * posicao / medidas.limite;
    r.bottom = r.top + polegar;
    return r;
}

bool Rolagem::Tratar(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    switch (mensagem) {
        case WM_MOUSEWHEEL:
            Girar(GET_WHEEL_DELTA_WPARAM(wParam));
            return true;
        case WM_KEYDOWN:
            return Teclar(wParam);
        case WM_LBUTTONDOWN:
            return Pressionar(janela, PontoDe(lParam));
        case WM_MOUSEMOVE:
            if (arrastando_) Arrastar(PontoDe(lParam).y);
            return arrastando_;
        case WM_LBUTTONUP:
            if (!arrastando_) return false;
            ReleaseCapture();
            return true;
        case WM_CAPTURECHANGED:
            arrastando_ = false;
            return true;
        default:
            return false;
    }
}

// A touchpad turns the wheel by fractions of a notch.
void Rolagem::Girar(int giro) {
    const int pixels = giro * kPassoDaRoda + resto_;
    resto_ = pixels % WHEEL_DELTA;
    Ir(posicao_ - pixels / WHEEL_DELTA);
}

bool Rolagem::Teclar(WPARAM tecla) {
    const int pagina = Altura(medidas_.trilho) - kPassoDaTecla;
    switch (tecla) {
        case VK_UP:
            Ir(posicao_ - kPassoDaTecla);
            return true;
        case VK_DOWN:
            Ir(posicao_ + kPassoDaTecla);
            return true;
        case VK_PRIOR:
            Ir(posicao_ - pagina);
            return true;
        case VK_NEXT:
            Ir(posicao_ + pagina);
            return true;
        case VK_HOME:
            Ir(0);
            return true;
        case VK_END:
            Ir(medidas_.limite);
            return true;
        default:
            return false;
    }
}

// On the track beside the thumb, the thumb comes under the pointer.
bool Rolagem::Pressionar(HWND janela, POINT ponto) {
    if (medidas_.limite == 0 || !PtInRect(&medidas_.trilho, ponto)) return false;
    const RECT polegar = PolegarDaRolagem(medidas_, posicao_);
    pegada_ = PtInRect(&polegar, ponto) ? static_cast<int>(ponto.y - polegar.top) : Altura(polegar) / 2;
    arrastando_ = true;
    SetCapture(janela);
    Arrastar(ponto.y);
    return true;
}

void Rolagem::Arrastar(int y) {
    const int curso = Altura(medidas_.trilho) - Altura(PolegarDaRolagem(medidas_, posicao_));
    if (curso > 0) Ir((y - pegada_ - static_cast<int>(medidas_.trilho.top)) * medidas_.limite / curso);
}

void Rolagem::Ir(int posicao) {
    posicao_ = std::clamp(posicao, 0, medidas_.limite);
}

}  // namespace zu::launcher

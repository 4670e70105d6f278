#include "ui/janelas/molde.h"

#include <windowsx.h>

namespace zu::launcher {

namespace {

constexpr int kCantos = 15;

}  // namespace

void RegistrarClasse(HINSTANCE modulo, const wchar_t* nome, WNDPROC procedimento, HICON icone) {
    WNDCLASSEXW classe{};
    classe.cbSize = sizeof classe;
    classe.lpfnWndProc = procedimento;
    classe.hInstance = modulo;
    classe.hIcon = icone;
    classe.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    classe.lpszClassName = nome;
    RegisterClassExW(&classe);
}

void ArredondarJanela(HWND janela, SIZE tamanho) {
    SetWindowRgn(janela, CreateRoundRectRgn(0, 0, tamanho.cx + 1, tamanho.cy + 1, kCantos, kCantos), FALSE);
}

POINT PontoDe(LPARAM lParam) {
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

CaixaDaTira CaixaNoPonto(POINT ponto, int largura, bool comMinimizar) {
    const RECT fechar = CaixaFechar(largura);
    if (PtInRect(&fechar, ponto)) return CaixaDaTira::kFechar;
    if (comMinimizar && PtInRect(&kCaixaMinimizar, ponto)) return CaixaDaTira::kMinimizar;
    return CaixaDaTira::kNenhuma;
}

void PedirSaidaDoMouse(HWND janela) {
    TRACKMOUSEEVENT pedido{sizeof pedido, TME_LEAVE, janela, 0};
    TrackMouseEvent(&pedido);
}

void RepintarTira(HWND janela, int largura) {
    const RECT tira{0, 0, largura, kAlturaDaTira};
    InvalidateRect(janela, &tira, FALSE);
}

LRESULT MoldeJanela(HWND janela, UINT mensagem, LPARAM lParam, int largura, bool comMinimizar, CaixaDaTira& sobre,
                    bool& tratada) {
    tratada = false;
    switch (mensagem) {
        case WM_NCHITTEST: {
            POINT ponto = PontoDe(lParam);
            ScreenToClient(janela, &ponto);
            tratada = ponto.y < kAlturaDaTira && CaixaNoPonto(ponto, largura, comMinimizar) == CaixaDaTira::kNenhuma;
            return HTCAPTION;
        }
        case WM_MOUSEMOVE:
        case WM_MOUSELEAVE: {
            tratada = true;
            const CaixaDaTira agora = mensagem == WM_MOUSELEAVE ? CaixaDaTira::kNenhuma
                                                                : CaixaNoPonto(PontoDe(lParam), largura, comMinimizar);
            if (agora == sobre && mensagem == WM_MOUSEMOVE) return 0;
            sobre = agora;
            RepintarTira(janela, largura);
            if (mensagem == WM_MOUSEMOVE) PedirSaidaDoMouse(janela);
            return 0;
        }
        default:
            return 0;
    }
}

}  // namespace zu::launcher

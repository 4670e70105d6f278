#include "ui/janelas/janela.h"

#include "ui/controles/controle.h"
#include "ui/janelas/molde.h"

namespace zu::launcher {

void Janela::Registrar(HINSTANCE modulo, const wchar_t* classe, HICON icone) {
    RegistrarClasse(modulo, classe, Procedimento, icone);
}

HWND Janela::Criar(std::unique_ptr<Janela> registro, const Nascimento& n) {
    const SIZE tamanho = registro->tamanho_;
    const HWND janela = CreateWindowExW(n.estendido, n.classe, n.titulo, n.estilo, n.lugar.x, n.lugar.y, tamanho.cx,
                                        tamanho.cy, n.dona, nullptr, GetModuleHandleW(nullptr), &registro);
    if (janela == nullptr) return nullptr;
    if (!De(janela)->Montar()) {
        const DWORD erro = GetLastError();
        DestroyWindow(janela);
        SetLastError(erro);
        return nullptr;
    }
    ArredondarJanela(janela, tamanho);
    return janela;
}

Janela* Janela::De(HWND janela) {
    const bool nossa = GetClassLongPtrW(janela, GCLP_WNDPROC) == reinterpret_cast<ULONG_PTR>(&Procedimento);
    return nossa ? reinterpret_cast<Janela*>(GetWindowLongPtrW(janela, GWLP_USERDATA)) : nullptr;
}

bool Janela::TomarTecla(const MSG& mensagem) {
    if (mensagem.message != WM_KEYDOWN || (mensagem.wParam != VK_RETURN && mensagem.wParam != VK_ESCAPE)) return false;
    Janela* const janela = De(EhControle(mensagem.hwnd) ? GetParent(mensagem.hwnd) : mensagem.hwnd);
    if (janela == nullptr || !IsWindowEnabled(janela->janela_)) return false;
    // A key that is held down acts once: its repetitions are not meant for the window that it brings to the front.
    if ((HIWORD(mensagem.lParam) & KF_REPEAT) != 0) return true;
    mensagem.wParam == VK_RETURN ? janela->AoConfirmar() : janela->AoFechar();
    return true;
}

void Janela::Nascer(HWND janela) {
    janela_ = janela;
    ObterInterface().*propria_ = janela;
    SetWindowLongPtrW(janela, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

// The record comes with the window's creation, in a `unique_ptr` that is emptied once the window owns it.
LRESULT CALLBACK Janela::Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    if (mensagem == WM_NCCREATE) {
        const auto* criacao = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        static_cast<std::unique_ptr<Janela>*>(criacao->lpCreateParams)->release()->Nascer(janela);
    }
    Janela* const registro = De(janela);
    if (registro == nullptr) return DefWindowProcW(janela, mensagem, wParam, lParam);
    if (mensagem != WM_NCDESTROY) return registro->Responder(mensagem, wParam, lParam);
    SetWindowLongPtrW(janela, GWLP_USERDATA, 0);
    ObterInterface().*registro->propria_ = nullptr;
    const std::unique_ptr<Janela> fim(registro);
    return DefWindowProcW(janela, mensagem, wParam, lParam);
}

LRESULT Janela::Responder(UINT mensagem, WPARAM wParam, LPARAM lParam) {
    if (Tratar(mensagem, wParam, lParam)) return 0;
    bool tratada = false;
    const LRESULT resultado = MoldeJanela(janela_, mensagem, lParam, tamanho_.cx, comMinimizar_, sobre_, tratada);
    if (tratada) return resultado;
    switch (mensagem) {
        case WM_PAINT:
            PintarJanela(janela_, [this](HDC dc) { Pintar(dc); });
            return 0;
        case WM_PRINTCLIENT:
            Pintar(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            RepintarTira(janela_, tamanho_.cx);
            break;
        case WM_LBUTTONUP:
            AoClicarNaTira(PontoDe(lParam));
            return 0;
        case WM_CLOSE:
            AoFechar();
            return 0;
        case WM_TIMER:
            AoRelogio(wParam);
            return 0;
        case WM_COMMAND:
            AoComando(LOWORD(wParam));
            return 0;
        default:
            break;
    }
    return DefWindowProcW(janela_, mensagem, wParam, lParam);
}

void Janela::AoClicarNaTira(POINT ponto) {
    switch (CaixaNoPonto(ponto, tamanho_.cx, comMinimizar_)) {
        case CaixaDaTira::kFechar:
            AoFechar();
            break;
        case CaixaDaTira::kMinimizar:
            ShowWindow(janela_, SW_MINIMIZE);
            break;
        case CaixaDaTira::kNenhuma:
            break;
    }
}

}  // namespace zu::launcher

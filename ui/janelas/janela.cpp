#include "ui/janelas/janela.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "ui/controles/controle.h"
#include "ui/desenho/contraste.h"
#include "ui/janelas/janela_acessivel.h"
#include "ui/janelas/molde.h"

namespace zu::launcher {
namespace {

bool PodeTerFoco(HWND controle) {
    if (!EhControle(controle) || !IsWindowEnabled(controle)) return false;
    // Of the choice tiles the chosen one stands for all.
    return EstadoDo(controle).kind != TipoControle::Opcao || EstadoDo(controle).checked;
}

std::vector<HWND> ControlesEmOrdem(HWND janela) {
    std::vector<HWND> controles = FilhosEmOrdem(janela);
    std::erase_if(controles, [](HWND filho) { return !PodeTerFoco(filho); });
    return controles;
}

}  // namespace

std::vector<HWND> FilhosEmOrdem(HWND janela) {
    std::vector<HWND> filhos;
    for (HWND filho = GetWindow(janela, GW_CHILD); filho != nullptr; filho = GetWindow(filho, GW_HWNDNEXT)) {
        if (IsWindowVisible(filho)) filhos.push_back(filho);
    }
    std::ranges::sort(filhos, {}, [](HWND filho) {
        RECT r{};
        GetWindowRect(filho, &r);
        return std::pair(r.top, r.left);
    });
    return filhos;
}

void Janela::Registrar(HINSTANCE modulo, const wchar_t* classe, HICON icone) {
    RegistrarClasse(modulo, classe, Procedimento, icone);
}

HWND Janela::Criar(std::unique_ptr<Janela> registro, const Nascimento& n) {
    const SIZE tamanho = registro->tamanho_;
    const HWND janela = CreateWindowExW(n.estendido, n.classe, n.titulo, n.estilo, n.lugar.x, n.lugar.y, tamanho.cx,
                                        tamanho.cy, n.dona, nullptr, GetModuleHandleW(nullptr), &registro);
    if (janela == nullptr) return nullptr;
    ArredondarJanela(janela, tamanho);
    if (!De(janela)->Montar()) {
        const DWORD erro = GetLastError();
        DestroyWindow(janela);
        SetLastError(erro);
        return nullptr;
    }
    return janela;
}

Janela* Janela::De(HWND janela) {
    const bool nossa = GetClassLongPtrW(janela, GCLP_WNDPROC) == reinterpret_cast<ULONG_PTR>(&Procedimento);
    return nossa ? reinterpret_cast<Janela*>(GetWindowLongPtrW(janela, GWLP_USERDATA)) : nullptr;
}

bool Janela::TomarTecla(const MSG& mensagem) {
    if (mensagem.message == WM_LBUTTONDOWN || mensagem.message == WM_NCLBUTTONDOWN) MostrarMarcaDeFoco(false);
    if (mensagem.message != WM_KEYDOWN && mensagem.message != WM_SYSKEYDOWN) return false;
    Janela* const janela = De(EhControle(mensagem.hwnd) ? GetParent(mensagem.hwnd) : mensagem.hwnd);
    return janela != nullptr && IsWindowEnabled(janela->janela_) && janela->AoTeclar(mensagem);
}

bool Janela::AoTeclar(const MSG& mensagem) {
    // A key that is held down acts once: its repetitions are not meant for the window that it brings to the front.
    const bool repetida = (HIWORD(mensagem.lParam) & KF_REPEAT) != 0;
    const bool comAlt = mensagem.message == WM_SYSKEYDOWN;
    if (!comAlt && mensagem.wParam == VK_TAB) {
        MoverFoco(GetKeyState(VK_SHIFT) < 0);
    } else if (!comAlt && mensagem.wParam == VK_RETURN) {
        if (!repetida) AoConfirmar();
    } else if (mensagem.wParam == (comAlt ? VK_F4 : VK_ESCAPE)) {
        if (!repetida) AoFechar();
    } else {
        return false;
    }
    return true;
}

void Janela::MoverFoco(bool paraTras) {
    const std::vector<HWND> controles = ControlesEmOrdem(janela_);
    if (controles.empty()) return;
    MostrarMarcaDeFoco(true);
    const auto atual = std::ranges::find(controles, GetFocus());
    const auto lugar = static_cast<std::size_t>(atual - controles.begin());
    const std::size_t n = controles.size();
    if (atual == controles.end())
        SetFocus(paraTras ? controles.back() : controles.front());
    else
        SetFocus(controles[(lugar + (paraTras ? n - 1 : 1)) % n]);
}

void Janela::Focar() {
    const std::vector<HWND> controles = ControlesEmOrdem(janela_);
    if (!controles.empty()) SetFocus(controles.front());
}

void Janela::GuardarFoco() {
    if (const HWND foco = GetFocus(); IsChild(janela_, foco) && EhControle(foco)) foco_ = foco;
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
            PintarJanela(janela_, [this](HDC dc) { PintarNaTela(dc); });
            return 0;
        case WM_PRINTCLIENT:
            Pintar(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            RepintarTira(janela_, tamanho_.cx);
            if (LOWORD(wParam) == WA_INACTIVE) GuardarFoco();
            break;
        case WM_SETFOCUS:
            if (IsChild(janela_, foco_) && IsWindowEnabled(foco_)) SetFocus(foco_);
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_SETTINGCHANGE:
            LerContraste();
            RedrawWindow(janela_, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
            break;
        case WM_LBUTTONUP:
            AoClicarNaTira(CaixaNoPonto(PontoDe(lParam), tamanho_.cx, comMinimizar_));
            return 0;
        case WM_GETOBJECT:
            if (const LRESULT objeto = ResponderAcessivel(wParam, lParam, std::make_unique<JanelaAcessivel>(janela_))) {
                return objeto;
            }
            break;
        case MSG_ACAO_PADRAO:
            AoAcaoPadrao(wParam);
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

// What a program that reads the screen aloud has asked for: of what a window draws, the boxes alone act.
void Janela::AoAcaoPadrao(WPARAM parte) {
    if (!IsWindowEnabled(janela_)) return;
    const auto caixa = static_cast<int>(parte) - Partes();
    if (caixa == 1) AoClicarNaTira(CaixaDaTira::kFechar);
    if (caixa == 2 && comMinimizar_) AoClicarNaTira(CaixaDaTira::kMinimizar);
}

std::wstring Janela::Titulo() const {
    return LegendaDo(janela_);
}

void Janela::AoClicarNaTira(CaixaDaTira caixa) {
    switch (caixa) {
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

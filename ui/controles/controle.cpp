#include "ui/controles/controle.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "core/handle.h"
#include "ui/acessibilidade/acessivel.h"
#include "ui/controles/controle_acessivel.h"
#include "ui/controles/face_guardada.h"
#include "ui/controles/lista.h"
#include "ui/janelas/molde.h"

namespace zu::launcher {
namespace {

constexpr UINT_PTR kAnimacao = 1;
constexpr UINT kPassoRapido = 15;  // ms, while something moves
constexpr UINT kPassoLento = 30;   // ms, the primary button's steady pulse

constexpr float kSubida = 0.12F;
constexpr float kDescida = 0.08F;
constexpr float kPassoDoClarao = 0.035F;
constexpr float kPassoDaFase = 0.09F;
constexpr float kVolta = 6.2832F;

constexpr Lugar kLista{160, 0, 266, 22};
constexpr COLORREF kCorDaLista = RGB(212, 212, 212);

bool marcaDeFoco = false;

bool TemClarao(TipoControle kind) {
    return kind == TipoControle::Botao || kind == TipoControle::BotaoPrincipal;
}
bool Anima(TipoControle kind) {
    return TemClarao(kind) || kind == TipoControle::Opcao;
}

bool Dentro(HWND controle, LPARAM lParam) {
    RECT r{};
    GetClientRect(controle, &r);
    return PtInRect(&r, PontoDe(lParam)) != FALSE;
}

void MudarHover(HWND controle, EstadoControle& estado, bool hover) {
    estado.hover = hover;
    if (hover) {
        PedirSaidaDoMouse(controle);
        if (TemClarao(estado.kind)) estado.flash = 0;
    }
    if (Anima(estado.kind)) SetTimer(controle, kAnimacao, kPassoRapido, nullptr);
    Repintar(controle);
}

// A pressed control holds the mouse, so moves come from outside it too.
void AoMover(HWND controle, EstadoControle& estado, LPARAM lParam) {
    const bool hover = !estado.pressed || Dentro(controle, lParam);
    if (hover != estado.hover) MudarHover(controle, estado, hover);
}

void AoPressionar(HWND controle, EstadoControle& estado) {
    MostrarMarcaDeFoco(false);
    SetFocus(controle);
    estado.pressed = true;
    if (estado.kind == TipoControle::Lista) {
        AbrirLista(controle, estado);
        return;
    }
    SetCapture(controle);
    Repintar(controle);
}

void AoSoltar(HWND controle, EstadoControle& estado, LPARAM lParam) {
    if (!estado.pressed) return;
    estado.pressed = false;
    ReleaseCapture();
    Repintar(controle);
    if (!Dentro(controle, lParam)) {
        if (estado.hover) MudarHover(controle, estado, false);
        return;
    }
    Acionar(controle);
}

// The choice tiles of a window are one choice.
HWND OutraOpcao(HWND controle) {
    for (HWND irmao = GetWindow(controle, GW_HWNDFIRST); irmao != nullptr; irmao = GetWindow(irmao, GW_HWNDNEXT)) {
        if (irmao != controle && EhControle(irmao) && EstadoDo(irmao).kind == TipoControle::Opcao) return irmao;
    }
    return nullptr;
}

void AoTeclar(HWND controle, EstadoControle& estado, UINT mensagem, WPARAM tecla, LPARAM lParam) {
    const bool seta = tecla == VK_LEFT || tecla == VK_RIGHT || tecla == VK_UP || tecla == VK_DOWN;
    MostrarMarcaDeFoco(true);
    if (tecla == VK_SPACE && estado.kind != TipoControle::Lista) {
        if ((HIWORD(lParam) & KF_REPEAT) == 0) Acionar(controle);
    } else if (estado.kind == TipoControle::Lista && TeclarNaLista(controle, estado, tecla)) {
        return;
    } else if (const HWND outra = estado.kind == TipoControle::Opcao && seta ? OutraOpcao(controle) : nullptr) {
        SetFocus(outra);
        Acionar(outra);
    } else {
        SendMessageW(GetParent(controle), mensagem, tecla, lParam);
    }
}

// Another window took the mouse while the button was held: no click comes of it.
void AoPerderCaptura(HWND controle, EstadoControle& estado) {
    if (!estado.pressed || estado.kind == TipoControle::Lista) return;
    estado.pressed = false;
    MudarHover(controle, estado, false);
}

// A disabled window gets no word of the pointer leaving it.
void AoHabilitar(HWND controle, EstadoControle& estado, bool habilitado) {
    // Left with it, or with nobody once the system has taken it away, the keyboard would not reach the window.
    const bool semTeclado = GetFocus() == controle || GetFocus() == nullptr;
    if (!habilitado && semTeclado && GetActiveWindow() == GetParent(controle)) SetFocus(GetParent(controle));
    if (!habilitado && estado.hover) MudarHover(controle, estado, false);
    Repintar(controle);
    Avisar(EVENT_OBJECT_STATECHANGE, controle);
}

// What a program that reads the screen aloud has asked for. By now the control may be disabled, and the list another.
void AoAcaoPadrao(HWND controle, EstadoControle& estado, WPARAM parte) {
    if (!PodeAgir(controle)) return;
    if (estado.kind != TipoControle::Lista)
        Acionar(controle);
    else if (parte == CHILDID_SELF)
        AbrirLista(controle, estado);
    else if (parte <= estado.items.size())
        EscolherNaLista(controle, estado, static_cast<std::int32_t>(parte - 1));
}

// `pintar` gets the control's area and how it looks.
template <class Pintar>
void ComAparencia(HWND controle, const EstadoControle& estado, const Pintar& pintar) {
    const std::wstring legenda = LegendaDo(controle);
    RECT r{};
    GetClientRect(controle, &r);
    const bool foco = MarcaDeFoco() && GetFocus() == controle;
    pintar(r, AparenciaControle{estado, legenda, IsWindowEnabled(controle) != FALSE, foco});
}

void Pintar(HWND controle, const EstadoControle& estado, HDC dc) {
    ComAparencia(controle, estado,
                 [&](const RECT& r, const AparenciaControle& a) { PintarControle(dc, r, a, FontesDaInterface()); });
}

void MostrarFace(HWND controle, EstadoControle& estado, HDC dc) {
    if (!estado.face) estado.face = std::make_shared<FaceGuardada>();
    ComAparencia(controle, estado, [&](const RECT& r, const AparenciaControle& a) {
        estado.face->Mostrar(dc, r, a, FontesDaInterface());
    });
}

void AoPintar(HWND controle, EstadoControle& estado) {
    if (estado.kind == TipoControle::DoDono) {
        PintarJanela(controle, [&](HDC dc) { Pintar(controle, estado, dc); });
        return;
    }
    MostrarFace(controle, estado, Pintura(controle).Dc());
}

void AvancarAnimacao(HWND controle, EstadoControle& estado) {
    const float alvo = estado.hover ? 1.0F : 0.0F;
    if (estado.hover_level < alvo) estado.hover_level = std::min(estado.hover_level + kSubida, alvo);
    if (estado.hover_level > alvo) estado.hover_level = std::max(estado.hover_level - kDescida, alvo);
    if (estado.flash >= 0) estado.flash += kPassoDoClarao;
    if (estado.flash > 1) estado.flash = -1;
    const bool move = estado.hover_level != alvo || estado.flash >= 0;
    if (estado.kind == TipoControle::BotaoPrincipal) {
        estado.phase += kPassoDaFase;
        if (estado.phase > kVolta) estado.phase -= kVolta;
        SetTimer(controle, kAnimacao, move ? kPassoRapido : kPassoLento, nullptr);
    } else if (!move) {
        KillTimer(controle, kAnimacao);
    }
    // Asked for and answered by WM_PAINT, a step would cost the system twice as much.
    const TelaDaJanela tela(controle);
    if (tela.SeVe()) MostrarFace(controle, estado, tela.Dc());
}

// The record comes with the window's creation, in a `unique_ptr` that is emptied once the window owns it.
void Adotar(HWND controle, LPARAM lParam) {
    const auto* criacao = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto& estado = *static_cast<std::unique_ptr<EstadoControle>*>(criacao->lpCreateParams);
    SetWindowLongPtrW(controle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(estado.release()));
}

void Abandonar(HWND controle) {
    const std::unique_ptr<EstadoControle> estado(&EstadoDo(controle));
    SetWindowLongPtrW(controle, GWLP_USERDATA, 0);
}

// True when the message is done with, answered with 0.
bool Tratar(HWND controle, EstadoControle& estado, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    switch (mensagem) {
        case WM_MOUSEMOVE:
            AoMover(controle, estado, lParam);
            return true;
        case WM_MOUSELEAVE:
            if (!estado.pressed) MudarHover(controle, estado, false);
            return true;
        case WM_LBUTTONDOWN:
            AoPressionar(controle, estado);
            return true;
        case WM_LBUTTONUP:
            AoSoltar(controle, estado, lParam);
            return true;
        case WM_KEYDOWN:
            AoTeclar(controle, estado, mensagem, wParam, lParam);
            return true;
        case WM_SYSKEYDOWN:
            if (estado.kind != TipoControle::Lista || wParam != VK_DOWN) return false;
            AbrirLista(controle, estado);
            return true;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            if (MarcaDeFoco()) Repintar(controle);
            return true;
        case WM_CAPTURECHANGED:
            AoPerderCaptura(controle, estado);
            return true;
        case WM_ENABLE:
            AoHabilitar(controle, estado, wParam != FALSE);
            return true;
        case MSG_ACAO_PADRAO:
            AoAcaoPadrao(controle, estado, wParam);
            return true;
        case WM_TIMER:
            if (wParam == kAnimacao) AvancarAnimacao(controle, estado);
            return true;
        case WM_PAINT:
            AoPintar(controle, estado);
            return true;
        case WM_PRINTCLIENT:
            Pintar(controle, estado, reinterpret_cast<HDC>(wParam));
            return true;
        default:
            return false;
    }
}

LRESULT Apresentar(HWND controle, WPARAM wParam, LPARAM lParam) {
    const LRESULT objeto = ResponderAcessivel(wParam, lParam, std::make_unique<ControleAcessivel>(controle));
    return objeto != 0 ? objeto : DefWindowProcW(controle, WM_GETOBJECT, wParam, lParam);
}

LRESULT CALLBACK ProcedimentoDoControle(HWND controle, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    if (mensagem == WM_NCCREATE) Adotar(controle, lParam);
    if (GetWindowLongPtrW(controle, GWLP_USERDATA) == 0) return DefWindowProcW(controle, mensagem, wParam, lParam);
    if (mensagem == WM_ERASEBKGND) return 1;
    if (mensagem == WM_GETOBJECT) return Apresentar(controle, wParam, lParam);
    if (mensagem == WM_NCDESTROY)
        Abandonar(controle);
    else if (Tratar(controle, EstadoDo(controle), mensagem, wParam, lParam))
        return 0;
    const LRESULT resultado = DefWindowProcW(controle, mensagem, wParam, lParam);
    if (mensagem == WM_SETTEXT) {
        Repintar(controle);
        Avisar(EVENT_OBJECT_NAMECHANGE, controle);
    }
    return resultado;
}

}  // namespace

void RegistrarControle(HINSTANCE modulo) {
    RegistrarClasse(modulo, kClasseDoControle, ProcedimentoDoControle);
}

HWND CriarControle(HWND pai, TipoControle kind, int id, const wchar_t* texto, const Lugar& lugar) {
    auto estado = std::make_unique<EstadoControle>();
    estado->kind = kind;
    const HWND controle =
        CreateWindowExW(0, kClasseDoControle, texto, WS_CHILD | WS_VISIBLE, lugar.x, lugar.y, lugar.w, lugar.h, pai,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), &estado);
    if (controle != nullptr && kind == TipoControle::BotaoPrincipal) {
        SetTimer(controle, kAnimacao, kPassoLento, nullptr);
    }
    return controle;
}

HWND CriarLista(HWND pai, int id, int y, std::vector<std::wstring> items, std::int32_t selected) {
    const HWND lista = CriarControle(pai, TipoControle::Lista, id, L"", {kLista.x, y, kLista.w, kLista.h});
    if (lista == nullptr) return nullptr;
    EstadoControle& estado = EstadoDo(lista);
    const auto ultimo = static_cast<std::int32_t>(items.size()) - 1;
    estado.selected = std::max(0, std::min(selected, ultimo));
    estado.items = std::move(items);
    estado.fill = kCorDaLista;
    estado.fundo = kCorDaJanela;
    return lista;
}

void Acionar(HWND controle) {
    EstadoControle& estado = EstadoDo(controle);
    if (estado.kind == TipoControle::DoDono) return;
    if (estado.kind == TipoControle::Caixa) estado.checked = !estado.checked;
    if (estado.kind == TipoControle::Opcao) estado.checked = true;
    Repintar(controle);
    Avisar(EVENT_OBJECT_STATECHANGE, controle);
    // Last: the parent may destroy the control.
    Notificar(controle, kCodigoClique);
}

void Repintar(HWND controle) {
    InvalidateRect(controle, nullptr, FALSE);
}

void Notificar(HWND controle, WORD codigo) {
    const auto id = static_cast<WORD>(GetDlgCtrlID(controle));
    SendMessageW(GetParent(controle), WM_COMMAND, MAKEWPARAM(id, codigo), reinterpret_cast<LPARAM>(controle));
}

bool PodeAgir(HWND controle) {
    return IsWindowEnabled(controle) && IsWindowEnabled(GetParent(controle));
}

std::wstring LegendaDo(HWND controle) {
    std::wstring legenda(static_cast<std::size_t>(GetWindowTextLengthW(controle)), L'\0');
    GetWindowTextW(controle, legenda.data(), static_cast<int>(legenda.size()) + 1);
    return legenda;
}

bool MarcaDeFoco() {
    return marcaDeFoco;
}

void MostrarMarcaDeFoco(bool visivel) {
    if (std::exchange(marcaDeFoco, visivel) == visivel) return;
    if (const HWND controle = GetFocus(); controle != nullptr && EhControle(controle)) Repintar(controle);
}

bool EhControle(HWND janela) {
    wchar_t classe[64];
    const int tamanho = GetClassNameW(janela, classe, static_cast<int>(std::size(classe)));
    return std::wstring_view(classe, static_cast<std::size_t>(tamanho)) == kClasseDoControle;
}

EstadoControle& EstadoDo(HWND controle) {
    return *reinterpret_cast<EstadoControle*>(GetWindowLongPtrW(controle, GWLP_USERDATA));
}

void Marcar(HWND controle, bool checked) {
    if (std::exchange(EstadoDo(controle).checked, checked) == checked) return;
    Repintar(controle);
    Avisar(EVENT_OBJECT_STATECHANGE, controle);
}

void Habilitar(HWND controle, bool habilitado) {
    if ((IsWindowEnabled(controle) != FALSE) != habilitado) EnableWindow(controle, habilitado ? TRUE : FALSE);
}

void DefinirTexto(HWND controle, const std::wstring& text) {
    EstadoControle& estado = EstadoDo(controle);
    if (estado.text == text) return;
    estado.text = text;
    Repintar(controle);
    Avisar(EVENT_OBJECT_DESCRIPTIONCHANGE, controle);
}

}  // namespace zu::launcher

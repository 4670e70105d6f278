#include "ui/janelas/modal.h"

#include <algorithm>
#include <vector>

#include "core/log.h"
#include "ui/janelas/fim_da_interface.h"

namespace zu::launcher {
namespace {

constexpr int kFolgaDaLegenda = 22;  // of a button's width beyond its caption
constexpr int kEntreBotoes = 6;

// Inside the area where it fits; what does not begins at the area's start.
LONG Encaixar(LONG lugar, LONG tamanho, LONG inicio, LONG fim) {
    return std::max(std::min(lugar, fim - tamanho), inicio);
}

}  // namespace

void RegistrarModal(HINSTANCE modulo, const wchar_t* classe) {
    RegistrarClasse(modulo, classe, JanelaModal::Procedimento);
}

JanelaModal::JanelaModal(const MoldeModal& molde, SIZE tamanho) : molde_(molde), tamanho_(tamanho) {}

HWND JanelaModal::Abrir(std::unique_ptr<JanelaModal> registro, POINT lugar) {
    const MoldeModal molde = registro->molde_;
    const SIZE tamanho = registro->tamanho_;
    EstadoInterface& ui = ObterInterface();
    if (ui.*molde.janela != nullptr) return ui.*molde.janela;
    const HWND dona = ui.*molde.dona;
    const HWND janela = CreateWindowExW(molde.estendido | (ModoCaptura() ? WS_EX_NOACTIVATE : 0), molde.classe,
                                        molde.titulo, WS_POPUP | WS_CLIPCHILDREN, lugar.x, lugar.y, tamanho.cx,
                                        tamanho.cy, dona, nullptr, GetModuleHandleW(nullptr), &registro);
    if (janela == nullptr || !De(janela)->Montar()) {
        LogLinha("Interface: CreateWindow falhou ({})", GetLastError());
        DestroyWindow(janela);
        return nullptr;
    }
    ArredondarJanela(janela, tamanho);
    EnableWindow(dona, FALSE);
    MostrarJanela(janela);
    return janela;
}

bool JanelaModal::Tratar(UINT /*mensagem*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return false;
}

void JanelaModal::Fechar() {
    aberta_ = false;
    // A message that another program sent does not wake the loop by itself.
    PostMessageW(janela_, WM_NULL, 0, 0);
}

JanelaModal* JanelaModal::De(HWND janela) {
    return reinterpret_cast<JanelaModal*>(GetWindowLongPtrW(janela, GWLP_USERDATA));
}

// The record comes with the window's creation, in a `unique_ptr` that is emptied once the window owns it.
LRESULT CALLBACK JanelaModal::Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    if (mensagem == WM_NCCREATE) {
        const auto* criacao = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        JanelaModal* novo = static_cast<std::unique_ptr<JanelaModal>*>(criacao->lpCreateParams)->release();
        novo->janela_ = janela;
        ObterInterface().*novo->molde_.janela = janela;
        SetWindowLongPtrW(janela, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(novo));
    }
    JanelaModal* const registro = De(janela);
    if (registro == nullptr) return DefWindowProcW(janela, mensagem, wParam, lParam);
    if (mensagem != WM_NCDESTROY) return registro->Responder(mensagem, wParam, lParam);
    SetWindowLongPtrW(janela, GWLP_USERDATA, 0);
    const std::unique_ptr<JanelaModal> fim(registro);
    ObterInterface().*registro->molde_.janela = nullptr;
    return DefWindowProcW(janela, mensagem, wParam, lParam);
}

LRESULT JanelaModal::Responder(UINT mensagem, WPARAM wParam, LPARAM lParam) {
    if (Tratar(mensagem, wParam, lParam)) return 0;
    bool tratada = false;
    const LRESULT resultado = MoldeJanela(janela_, mensagem, lParam, tamanho_.cx, false, sobre_, tratada);
    if (tratada) return resultado;
    switch (mensagem) {
        case WM_PAINT:
            PintarJanela(janela_, [&](HDC dc) { PintarTudo(dc); });
            return 0;
        case WM_PRINTCLIENT:
            PintarTudo(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            RepintarTira(janela_, tamanho_.cx);
            break;
        case WM_LBUTTONUP:
            if (CaixaNoPonto(PontoDe(lParam), tamanho_.cx, false) == CaixaDaTira::kFechar) Fechar();
            return 0;
        case WM_CLOSE:
            // Under another window it is not the player's to close.
            if (IsWindowEnabled(janela_)) Fechar();
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

void JanelaModal::PintarTudo(HDC dc) const {
    const bool ativa = GetActiveWindow() == janela_;
    Pintar(dc, {tamanho_.cx, tamanho_.cy, molde_.titulo, ativa, false, sobre_});
    PintarBorda(dc, tamanho_.cx, tamanho_.cy);
}

// A key that is held down acts once: its repetitions are not meant for the window that is under this one.
bool JanelaModal::TomarTecla(const MSG& mensagem) {
    if (mensagem.message != WM_KEYDOWN) return false;
    if (mensagem.hwnd != janela_ && !IsChild(janela_, mensagem.hwnd)) return false;
    if (mensagem.wParam != VK_ESCAPE && mensagem.wParam != VK_RETURN) return false;
    if ((HIWORD(mensagem.lParam) & KF_REPEAT) != 0) return true;
    const HWND botao = molde_.principal == 0 ? nullptr : Filho(molde_.principal);
    if (mensagem.wParam == VK_ESCAPE)
        Fechar();
    else if (botao != nullptr && IsWindowEnabled(botao))
        AoComando(molde_.principal);
    return true;
}

void RodarModal(HWND janela) {
    EstadoInterface& ui = ObterInterface();
    MSG mensagem{};
    // The record is asked for anew each time: the window may be gone.
    for (JanelaModal* registro = JanelaModal::De(janela); registro != nullptr && registro->aberta_ && !ui.quit;
         registro = JanelaModal::De(janela)) {
        if (GetMessageW(&mensagem, nullptr, 0, 0) <= 0) {
            CancelarEPedirFim();
            break;
        }
        if (registro->TomarTecla(mensagem)) continue;
        TranslateMessage(&mensagem);
        DispatchMessageW(&mensagem);
    }
    FecharModal(janela);
}

void FecharModal(HWND janela) {
    const JanelaModal* registro = JanelaModal::De(janela);
    if (registro == nullptr) return;
    // Before the window is gone: the system gives the activation to an enabled window, another program's if need be.
    EnableWindow(ObterInterface().*registro->molde_.dona, TRUE);
    DestroyWindow(janela);
}

RECT LugarDaJanelaPrincipal() {
    RECT r{};
    GetWindowRect(ObterInterface().principal, &r);
    return r;
}

RECT AreaDeTrabalho() {
    MONITORINFO monitor{.cbSize = sizeof monitor};
    GetMonitorInfoW(MonitorFromWindow(ObterInterface().principal, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

POINT NaAreaDeTrabalho(POINT lugar, SIZE tamanho) {
    if (ModoCaptura()) return lugar;
    const RECT area = AreaDeTrabalho();
    return {Encaixar(lugar.x, tamanho.cx, area.left, area.right), Encaixar(lugar.y, tamanho.cy, area.top, area.bottom)};
}

std::optional<Trecho> JanelaModal::CriarFila(std::span<const BotaoDaFila> botoes) const {
    const HFONT fonte = Fontes::De(FontesDaInterface().negrito);
    std::vector<int> larguras;
    int total = -kEntreBotoes;
    for (const BotaoDaFila& b : botoes) {
        larguras.push_back(LarguraDoTexto(b.texto, fonte) + kFolgaDaLegenda);
        total += larguras.back() + kEntreBotoes;
    }
    const int inicio = (tamanho_.cx - total) / 2;
    int x = inicio;
    for (std::size_t i = 0; i < botoes.size(); ++i) {
        const Lugar lugar{x, tamanho_.cy - kBotoesDoFim, larguras[i], kAlturaDoBotao};
        if (CriarControle(janela_, botoes[i].kind, botoes[i].id, botoes[i].texto, lugar) == nullptr) return {};
        x += larguras[i] + kEntreBotoes;
    }
    return Trecho{inicio, inicio + total};
}

}  // namespace zu::launcher

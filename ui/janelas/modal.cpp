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

HWND JanelaModal::Abrir(std::unique_ptr<JanelaModal> registro, POINT lugar) {
    const MoldeModal molde = registro->molde_;
    EstadoInterface& ui = ObterInterface();
    if (ui.*molde.janela != nullptr) return ui.*molde.janela;
    const HWND dona = ui.*molde.dona;
    const HWND janela =
        Criar(std::move(registro), {.classe = molde.classe,
                                    .titulo = molde.titulo,
                                    .estilo = WS_POPUP | WS_CLIPCHILDREN,
                                    .estendido = molde.estendido | (ModoCaptura() ? WS_EX_NOACTIVATE : 0),
                                    .lugar = lugar,
                                    .dona = dona});
    if (janela == nullptr) {
        LogLinha("Interface: CreateWindow falhou ({})", GetLastError());
        return nullptr;
    }
    EnableWindow(dona, FALSE);
    MostrarJanela(janela);
    if (!ModoCaptura()) De(janela)->Focar();
    return janela;
}

bool JanelaModal::Tratar(UINT /*mensagem*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return false;
}

void JanelaModal::Fechar() {
    aberta_ = false;
    // A message that another program sent does not wake the loop by itself.
    PostMessageW(Handle(), WM_NULL, 0, 0);
}

void JanelaModal::Pintar(HDC dc) const {
    const SIZE tamanho = Medidas();
    PintarConteudo(dc, {tamanho.cx, tamanho.cy, molde_.titulo, Ativa(), false, Sobre()});
    PintarBorda(dc, tamanho.cx, tamanho.cy);
}

void JanelaModal::AoConfirmar() {
    const HWND botao = molde_.principal == 0 ? nullptr : Filho(molde_.principal);
    if (botao != nullptr && IsWindowEnabled(botao)) AoComando(molde_.principal);
}

// Under another window it is not the player's to close.
void JanelaModal::AoFechar() {
    if (IsWindowEnabled(Handle())) Fechar();
}

void RodarModal(HWND janela) {
    const EstadoInterface& ui = ObterInterface();
    MSG mensagem{};
    // The record is asked for anew each time: the window may be gone.
    const auto aberta = [janela] {
        const auto* const registro = static_cast<JanelaModal*>(Janela::De(janela));
        return registro != nullptr && registro->aberta_;
    };
    while (aberta() && !ui.quit) {
        if (GetMessageW(&mensagem, nullptr, 0, 0) <= 0) {
            CancelarEPedirFim();
            break;
        }
        if (Janela::TomarTecla(mensagem)) continue;
        TranslateMessage(&mensagem);
        DispatchMessageW(&mensagem);
    }
    FecharModal(janela);
}

void FecharModal(HWND janela) {
    const auto* const registro = static_cast<JanelaModal*>(Janela::De(janela));
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
    const int inicio = (Medidas().cx - total) / 2;
    int x = inicio;
    for (std::size_t i = 0; i < botoes.size(); ++i) {
        const Lugar lugar{x, Medidas().cy - kBotoesDoFim, larguras[i], kAlturaDoBotao};
        if (CriarControle(Handle(), botoes[i].kind, botoes[i].id, botoes[i].texto, lugar) == nullptr) return {};
        x += larguras[i] + kEntreBotoes;
    }
    return Trecho{inicio, inicio + total};
}

}  // namespace zu::launcher

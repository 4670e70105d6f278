#include "ui/janelas/principal.h"

#include <array>
#include <exception>
#include <string>
#include <utility>

#include "app/controlador.h"
#include "core/config.h"
#include "core/excecao.h"
#include "core/log.h"
#include "core/utf16.h"
#include "game/jogo.h"
#include "game/requisitos.h"
#include "game/veredito.h"
#include "ui/controles/controle.h"
#include "ui/janelas/estado_interface.h"
#include "ui/janelas/fim_da_interface.h"
#include "ui/janelas/modal.h"
#include "ui/janelas/opcoes.h"

namespace zu::launcher {
namespace {

constexpr UINT kIntervalo = 100;  // ms
constexpr int kIcone = 1;

constexpr int kForaDaTela = 654;  // left of everything visible, for captures

struct BotaoDaPrincipal {
    int id;
    const wchar_t* texto;
    TipoControle kind;
    Lugar lugar;
};
constexpr std::array<BotaoDaPrincipal, 4> kBotoes{{
    {kBotaoRegistrar, L"Registrar", TipoControle::Botao, {63, 412, 78, 28}},
    {kBotaoOpcoes, L"Opções", TipoControle::Botao, {104, 472, 72, 28}},
    {kBotaoConectar, L"Conectar", TipoControle::BotaoPrincipal, {191, 472, 76, 28}},
    {kBotaoFechar, L"Fechar", TipoControle::Botao, {282, 472, 68, 28}},
}};

HWND Botao(int id) {
    return GetDlgItem(ObterInterface().principal, id);
}

CentroDaPrincipal Centro() {
    const VisaoSite& site = ObterInterface().site;
    if (site.Presente()) return CentroDaPrincipal::kSite;
    return site.site_failed() ? CentroDaPrincipal::kFalhaDoSite : CentroDaPrincipal::kLogo;
}

AparenciaPrincipal Aparencia(HWND janela) {
    const EstadoInterface& ui = ObterInterface();
    return {TituloDoLauncher(), GetActiveWindow() == janela, ui.sobre, Centro(), ui.superior, ui.inferior};
}

void Pintar(HWND janela, HDC dc) {
    const EstadoInterface& ui = ObterInterface();
    PintarPrincipal(dc, Aparencia(janela), ui.logo, FontesDaInterface(), ui.fontesDaPrincipal);
}

void AoClicarNaTira(HWND janela, POINT ponto) {
    switch (CaixaNoPonto(ponto, kLarguraPrincipal, true)) {
        case CaixaDaTira::kFechar:
            FecharLauncher();
            break;
        case CaixaDaTira::kMinimizar:
            ShowWindow(janela, SW_MINIMIZE);
            break;
        case CaixaDaTira::kNenhuma:
            break;
    }
}

void AoComando(int id) {
    switch (id) {
        case kBotaoRegistrar:
            ObterControlador().Acao("registrar");
            break;
        case kBotaoOpcoes:
            RodarModal(AbrirOpcoes());
            break;
        case kBotaoConectar:
            JogarAgora();
            break;
        case kBotaoFechar:
            FecharLauncher();
            break;
        default:
            break;
    }
}

void AbrirEnderecosPedidos() {
    for (const std::string& endereco : std::exchange(ObterInterface().enderecosPorAbrir, {}))
        AbrirEndereco(endereco);
}

void Iniciar(HWND janela) {
    ObterControlador().Iniciar();
    SetTimer(janela, kRelogioDaPrincipal, kIntervalo, nullptr);
    AtualizarTela();
}

LRESULT CALLBACK ProcedimentoDaPrincipal(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    bool tratada = false;
    const LRESULT resultado =
        MoldeJanela(janela, mensagem, lParam, kLarguraPrincipal, true, ObterInterface().sobre, tratada);
    if (tratada) return resultado;
    switch (mensagem) {
        case WM_PAINT:
            PintarJanela(janela, [&](HDC dc) { Pintar(janela, dc); });
            return 0;
        case WM_PRINTCLIENT:
            Pintar(janela, reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            RepintarTira(janela, kLarguraPrincipal);
            break;
        case WM_LBUTTONUP:
            AoClicarNaTira(janela, PontoDe(lParam));
            return 0;
        case WM_CLOSE:
            FecharLauncher();
            return 0;
        case WM_TIMER:
            if (wParam == kRelogioDaPrincipal) AtualizarTela();
            return 0;
        case WM_SIZE:
            ObterInterface().site.DefinirVisivel(wParam != SIZE_MINIMIZED);
            break;
        case WM_SHOWWINDOW:
            ObterInterface().site.DefinirVisivel(wParam != FALSE && !IsIconic(janela));
            break;
        case WM_MOVE:
            ObterInterface().site.JanelaMoveu();
            break;
        case WM_COMMAND:
            AoComando(LOWORD(wParam));
            return 0;
        case MSG_INICIAR:
            Iniciar(janela);
            return 0;
        case MSG_TRAZER_FRENTE:
            AtenderOutraInstancia();
            return 0;
        case MSG_ABRIR_ENDERECOS:
            AbrirEnderecosPedidos();
            return 0;
        case WM_ENDSESSION:
            if (wParam != FALSE) EncerrarComASessao();
            return 0;
        case WM_DESTROY:
            RecolherInstancia(janela, ObterConfig().pastaJogo);
            PostQuitMessage(0);
            return 0;
        default:
            break;
    }
    return DefWindowProcW(janela, mensagem, wParam, lParam);
}

POINT LugarDaPrincipal() {
    if (ModoCaptura() && GetSystemMetrics(SM_REMOTESESSION) == 0) {
        return {GetSystemMetrics(SM_XVIRTUALSCREEN) - kForaDaTela, GetSystemMetrics(SM_YVIRTUALSCREEN)};
    }
    RECT area{};
    if (!SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0)) {
        area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    }
    return {(area.left + area.right - kLarguraPrincipal) / 2, (area.top + area.bottom - kAlturaPrincipal) / 2};
}

// Of `parte` in `todo`, 0 to 100.
int Porcento(std::uint64_t parte, std::uint64_t todo) {
    return todo == 0 ? 0 : static_cast<int>(parte * 100 / todo);
}

bool Transferindo(StatusUpdate status) {
    return status == StatusUpdate::kVerificando || status == StatusUpdate::kBaixando ||
           status == StatusUpdate::kAplicando;
}

// The upper and the lower bar.
std::pair<int, int> Progresso(const EstadoAtualizacao& estado, bool atualizando) {
    if (atualizando && Transferindo(estado.status)) {
        return {Porcento(estado.bytesFeitos, estado.bytesTotal), Porcento(estado.arquivosFeitos, estado.arquivosTotal)};
    }
    const bool fim =
        !atualizando && estado.status != StatusUpdate::kParado && estado.status != StatusUpdate::kJogoAberto;
    return fim ? std::pair{100, 100} : std::pair{0, 0};
}

void MostrarProgresso() {
    EstadoInterface& ui = ObterInterface();
    // In this order: a run that ends in between counts as ended.
    const EstadoAtualizacao estado = ObterControlador().Estado();
    const auto [superior, inferior] = Progresso(estado, ObterControlador().Atualizando());
    if (superior == ui.superior && inferior == ui.inferior) return;
    ui.superior = superior;
    ui.inferior = inferior;
    RECT area = kAreaDoProgresso;
    InflateRect(&area, 1, 2);
    InvalidateRect(ui.principal, &area, FALSE);
}

// Not over a launcher that is hidden or ends, nor over one that is about to start the game by itself.
bool PodeMostrarMensagem() {
    const EstadoInterface& ui = ObterInterface();
    return !ui.quit && IsWindowVisible(ui.principal) &&
           !(ObterControlador().InicioAutomaticoPorFazer() && ObterControlador().PodeJogarAgora());
}

// What the controller has to say about runs that have ended. What a box that is closed with the launcher leaves unsaid
// is asked for after the run that hid it.
void MostrarMensagensFinais() {
    while (PodeMostrarMensagem()) {
        const std::wstring mensagem = DeUtf8(ObterControlador().TomarMensagemFinal());
        if (mensagem.empty()) return;
        if (ModoCaptura()) continue;
        MessageBoxW(JanelaDaFrente(), mensagem.c_str(), TituloDoLauncher().c_str(), MB_OK | MB_ICONEXCLAMATION);
    }
}

// The graphics interface of the options gives way to the other one when only that runs here.
void TrocarApiQueNaoRoda() {
    OpcoesJogo& opcoes = ObterInterface().opcoesDoJogo;
    const std::string api = ApiQueRoda(opcoes.api, ObterRequisitos());
    if (api == opcoes.api) return;
    opcoes.api = api;
    GravarOpcoesJogo(opcoes);
}

}  // namespace

void RegistrarPrincipal(HINSTANCE modulo) {
    RegistrarClasse(modulo, kClasseDaJanela, ProcedimentoDaPrincipal, LoadIconW(modulo, MAKEINTRESOURCEW(kIcone)));
}

HWND CriarPrincipal(HINSTANCE modulo) {
    const POINT lugar = LugarDaPrincipal();
    const DWORD estendido = WS_EX_APPWINDOW | (ModoCaptura() ? WS_EX_NOACTIVATE : 0);
    const HWND janela = CreateWindowExW(estendido, kClasseDaJanela, TituloDoLauncher().c_str(),
                                        WS_POPUP | WS_CLIPCHILDREN | WS_SYSMENU | WS_MINIMIZEBOX, lugar.x, lugar.y,
                                        kLarguraPrincipal, kAlturaPrincipal, nullptr, nullptr, modulo, nullptr);
    if (janela == nullptr) return nullptr;
    ArredondarJanela(janela, {kLarguraPrincipal, kAlturaPrincipal});
    for (const BotaoDaPrincipal& b : kBotoes) {
        if (CriarControle(janela, b.kind, b.id, b.texto, b.lugar) != nullptr) continue;
        const DWORD erro = GetLastError();
        DestroyWindow(janela);
        SetLastError(erro);
        return nullptr;
    }
    // Nobody is helped by seeing the windows of a capture run.
    if (!ModoCaptura()) AnunciarInstancia(janela, ObterConfig().pastaJogo);
    return janela;
}

void AtualizarTela() {
    EstadoInterface& ui = ObterInterface();
    ControladorLauncher& controlador = ObterControlador();
    const auto terminando = [&] { return ui.quit || ui.principal == nullptr; };
    if (terminando()) return;
    controlador.Tick();
    ConcluirFechamento();
    if (terminando()) return;
    MostrarProgresso();
    const bool ocupado = controlador.Ocupado();
    Habilitar(Botao(kBotaoOpcoes), !ocupado);
    Habilitar(Botao(kBotaoConectar), controlador.PodeJogarAgora());
    // A run may begin and fail between two refreshes; it was under way all the same.
    if (controlador.TomarComeco() || ocupado) ui.running_before = true;
    if (ocupado || !ui.running_before || !PodeMostrarMensagem()) return;
    ui.running_before = false;
    MostrarMensagensFinais();
}

void JogarAgora() {
    EstadoInterface& ui = ObterInterface();
    if (ui.quit || !ObterControlador().PodeJogarAgora()) return;
    ui.opcoesDoJogo = LerOpcoesJogo();
    TrocarApiQueNaoRoda();
    try {
        ObterControlador().Jogar();
    } catch (const std::exception& falha) {
        LogLinha("Jogar: {}", TextoDaExcecao(falha));
    }
}

}  // namespace zu::launcher

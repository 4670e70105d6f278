#include "ui/janelas/principal.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <memory>
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
#include "ui/janelas/molde.h"
#include "ui/janelas/opcoes.h"
#include "ui/janelas/texto_do_andamento.h"

namespace zu::launcher {
namespace {

constexpr UINT kIntervalo = 100;  // ms
constexpr int kIcone = 1;

constexpr int kForaDaTela = 654;  // left of everything visible, for captures

// What the window draws and tells, by its place in the numbers of its parts: the bars first.
constexpr int kParteSituacao = static_cast<int>(kBarrasDaPrincipal.size());
constexpr int kParteCentro = kParteSituacao + 1;
constexpr int kPartes = kParteCentro + 1;

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
std::array<int, 2> Barras(const EstadoAtualizacao& estado, bool atualizando) {
    if (atualizando && Transferindo(estado.status)) {
        return {Porcento(estado.bytesFeitos, estado.bytesTotal), Porcento(estado.arquivosFeitos, estado.arquivosTotal)};
    }
    const bool fim =
        !atualizando && estado.status != StatusUpdate::kParado && estado.status != StatusUpdate::kJogoAberto;
    return fim ? std::array{100, 100} : std::array{0, 0};
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
    OpcoesJogo opcoes = LerOpcoesJogo();
    const std::string api = ApiQueRoda(opcoes.api, ObterSituacaoRequisitos());
    if (api == opcoes.api) return;
    opcoes.api = api;
    GravarOpcoesJogo(opcoes);
}

}  // namespace

JanelaPrincipal::JanelaPrincipal(LogoEncaixado logo)
    : Janela(&EstadoInterface::principal, {kLarguraPrincipal, kAlturaPrincipal}, true),
      pintura_(std::move(logo)),
      site_(AmbienteDoSite()) {}

AmbienteSite JanelaPrincipal::AmbienteDoSite() {
    const ConfigLauncher& config = ObterConfig();
    AmbienteSite ambiente;
    // Older shortcuts ask for a launcher without the site.
    const bool semSite = std::ranges::find(config.argumentos, L"--sem-cef") != config.argumentos.end();
    if (!semSite) ambiente.endereco = DeUtf8(config.urlSite);
    ambiente.seletor = config.seletor;
    ambiente.terminando = [] { return ObterInterface().quit; };
    ambiente.repintarCentro = [this] {
        AparenciaPrincipal nova = vista_;
        nova.centro = Centro();
        Mostrar(nova);
    };
    // Not at once: the shell may handle messages, and the view calls this from inside a callback of its own.
    ambiente.abrir = [this](const std::wstring& endereco) {
        enderecosPorAbrir_.push_back(ParaUtf8(endereco));
        PostMessageW(Handle(), MSG_ABRIR_ENDERECOS, 0, 0);
    };
    return ambiente;
}

bool JanelaPrincipal::Montar() {
    vista_.titulo = TituloDoLauncher();
    vista_.centro = Centro();
    for (const BotaoDaPrincipal& b : kBotoesDaPrincipal) {
        if (CriarControle(Handle(), b.kind, b.id, b.texto, b.lugar) == nullptr) return false;
    }
    // Nobody is helped by seeing the windows of a capture run.
    if (!ModoCaptura()) AnunciarInstancia(Handle(), ObterConfig().pastaJogo);
    return true;
}

CentroDaPrincipal JanelaPrincipal::Centro() const {
    if (site_.Presente()) return CentroDaPrincipal::kSite;
    return site_.site_failed() ? CentroDaPrincipal::kFalhaDoSite : CentroDaPrincipal::kLogo;
}

AparenciaPrincipal JanelaPrincipal::Agora() const {
    AparenciaPrincipal agora = vista_;
    agora.ativa = Ativa();
    agora.sobre = Sobre();
    return agora;
}

void JanelaPrincipal::Pintar(HDC dc) const {
    pintura_.PintarTudo(dc, Agora(), FontesDaInterface());
}

void JanelaPrincipal::PintarNaTela(HDC dc) {
    pintura_.Pintar(dc, Agora(), FontesDaInterface());
}

void JanelaPrincipal::Mostrar(const AparenciaPrincipal& nova) {
    const auto repintar = [this](RECT area, int dx, int dy) {
        InflateRect(&area, dx, dy);
        InvalidateRect(Handle(), &area, FALSE);
    };
    if (nova.centro != vista_.centro) repintar(kCentro, 1, 1);
    if (nova.barras != vista_.barras) repintar(kAreaDoProgresso, 1, 2);
    const AparenciaPrincipal antes = std::exchange(vista_, nova);
    AvisarMudancas(antes);
}

// To the programs that read the screen aloud.
void JanelaPrincipal::AvisarMudancas(const AparenciaPrincipal& antes) const {
    const auto avisar = [this](DWORD evento, int parte) { Avisar(evento, Handle(), parte + 1); };
    for (int i = 0; i < kParteSituacao; ++i) {
        const auto barra = static_cast<std::size_t>(i);
        if (vista_.barras.at(barra) != antes.barras.at(barra)) avisar(EVENT_OBJECT_VALUECHANGE, i);
    }
    if (vista_.centro != antes.centro) avisar(EVENT_OBJECT_NAMECHANGE, kParteCentro);
    if (vista_.situacao != antes.situacao) {
        avisar(EVENT_OBJECT_NAMECHANGE, kParteSituacao);
        Avisar(EVENT_OBJECT_DESCRIPTIONCHANGE, Handle());
    }
    // What fails after a run has ended is as much to be heard as its end.
    const bool novidade = !antes.terminou || vista_.situacao != antes.situacao;
    if (vista_.terminou && novidade) avisar(EVENT_SYSTEM_ALERT, kParteSituacao);
}

std::wstring JanelaPrincipal::Descricao() const {
    return TextoDaDica(ObterControlador().Estado(), ObterControlador().Atualizando());
}

int JanelaPrincipal::Partes() const {
    return kPartes;
}

Elemento JanelaPrincipal::Parte(int i) const {
    if (i < kParteSituacao) {
        const auto barra = static_cast<std::size_t>(i);
        const Lugar& l = kBarrasDaPrincipal.at(barra).lugar;
        return {.nome = kBarrasDaPrincipal.at(barra).nome,
                .papel = ROLE_SYSTEM_PROGRESSBAR,
                .estado = STATE_SYSTEM_READONLY,
                .lugar = {l.x, l.y, l.x + l.w, l.y + l.h},
                .valor = std::to_wstring(vista_.barras.at(barra)) + L"%"};
    }
    if (i == kParteSituacao) {
        return {.nome = vista_.situacao,
                .papel = vista_.terminou ? ROLE_SYSTEM_ALERT : ROLE_SYSTEM_STATICTEXT,
                .estado = STATE_SYSTEM_READONLY,
                .lugar = kAreaDoProgresso};
    }
    if (vista_.centro == CentroDaPrincipal::kFalhaDoSite) {
        return {.nome = kTextoDaFalhaDoSite, .papel = ROLE_SYSTEM_STATICTEXT, .lugar = kLinhaDaFalha};
    }
    const LONG estado = vista_.centro == CentroDaPrincipal::kSite ? STATE_SYSTEM_INVISIBLE : 0;
    return {.nome = vista_.titulo, .papel = ROLE_SYSTEM_GRAPHIC, .estado = estado, .lugar = kCentro};
}

void JanelaPrincipal::AoComando(int id) {
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
            AoFechar();
            break;
        default:
            break;
    }
}

void JanelaPrincipal::AoRelogio(UINT_PTR relogio) {
    if (relogio == kRelogioDaPrincipal) AtualizarTela();
}

void JanelaPrincipal::AoFechar() {
    FecharLauncher();
}

bool JanelaPrincipal::Tratar(UINT mensagem, WPARAM wParam, LPARAM lParam) {
    static const UINT botaoCriado = RegisterWindowMessageW(L"TaskbarButtonCreated");
    if (mensagem == botaoCriado) barra_.Esquecer();
    switch (mensagem) {
        case WM_MOUSEMOVE:
            AoMover(PontoDe(lParam));
            return false;
        case WM_MOUSELEAVE:
            dica_.Esconder();
            return false;
        case WM_MOUSEHOVER:
            AoPairar(PontoDe(lParam));
            return true;
        case WM_SIZE:
            site_.DefinirVisivel(wParam != SIZE_MINIMIZED);
            return false;
        case WM_SHOWWINDOW:
            if (wParam == FALSE) dica_.Esconder();
            site_.DefinirVisivel(wParam != FALSE && !IsIconic(Handle()));
            return false;
        case WM_MOVE:
            site_.JanelaMoveu();
            return false;
        case MSG_INICIAR:
            Iniciar();
            return true;
        case MSG_TRAZER_FRENTE:
            AtenderOutraInstancia();
            return true;
        case MSG_ABRIR_ENDERECOS:
            AbrirEnderecosPedidos();
            return true;
        case WM_ENDSESSION:
            if (wParam != FALSE) EncerrarComASessao();
            return true;
        case WM_DESTROY:
            RecolherInstancia(Handle(), ObterConfig().pastaJogo);
            PostQuitMessage(0);
            return true;
        default:
            return false;
    }
}

void JanelaPrincipal::Iniciar() {
    ObterControlador().Iniciar();
    SetTimer(Handle(), kRelogioDaPrincipal, kIntervalo, nullptr);
    AtualizarTela();
}

void JanelaPrincipal::AbrirEnderecosPedidos() {
    for (const std::string& endereco : std::exchange(enderecosPorAbrir_, {}))
        AbrirEndereco(endereco);
}

void JanelaPrincipal::AtualizarTela() {
    EstadoInterface& ui = ObterInterface();
    ControladorLauncher& controlador = ObterControlador();
    if (ui.quit) return;
    controlador.Tick();
    ConcluirFechamento();
    if (ui.quit) return;
    MostrarProgresso();
    const bool ocupado = controlador.Ocupado();
    Habilitar(Filho(kBotaoOpcoes), !ocupado);
    Habilitar(Filho(kBotaoConectar), controlador.PodeJogarAgora());
    // A run may begin and fail between two refreshes; it was under way all the same.
    if (controlador.TomarComeco() || ocupado) ui.running_before = true;
    if (ocupado || !ui.running_before || !PodeMostrarMensagem()) return;
    ui.running_before = false;
    MostrarMensagensFinais();
}

void JanelaPrincipal::MostrarProgresso() {
    // In this order: a run that ends in between counts as ended.
    const EstadoAtualizacao estado = ObterControlador().Estado();
    AparenciaPrincipal nova = vista_;
    const bool atualizando = ObterControlador().Atualizando();
    nova.barras = Barras(estado, atualizando);
    nova.situacao = DeUtf8(estado.texto);
    nova.terminou = !atualizando && estado.status != StatusUpdate::kParado;
    Mostrar(nova);
    if (ModoCaptura()) return;
    if (std::exchange(etapa_, estado.status) != estado.status) inicioDaEtapa_ = GetTickCount64();
    if (dica_.Visivel()) dica_.Mudar(TextoDaDica(estado, atualizando));
    barra_.Mostrar(Handle(), SinalDe(estado.status, atualizando, nova.barras.front()));
    barra_.Acompanhar(Handle(), atualizando);
}

std::wstring JanelaPrincipal::TextoDaDica(const EstadoAtualizacao& estado, bool atualizando) const {
    return DeUtf8(TextoDoAndamento(estado, atualizando, std::chrono::milliseconds(GetTickCount64() - inicioDaEtapa_)));
}

void JanelaPrincipal::AoMover(POINT ponto) {
    if (!PtInRect(&kAreaDoProgresso, ponto)) {
        dica_.Esconder();
        return;
    }
    TRACKMOUSEEVENT pedido{sizeof pedido, TME_HOVER | TME_LEAVE, Handle(), HOVER_DEFAULT};
    TrackMouseEvent(&pedido);
}

void JanelaPrincipal::AoPairar(POINT ponto) {
    if (!PtInRect(&kAreaDoProgresso, ponto)) return;
    const EstadoAtualizacao estado = ObterControlador().Estado();
    const std::wstring texto = TextoDaDica(estado, ObterControlador().Atualizando());
    if (texto.empty()) return;
    ClientToScreen(Handle(), &ponto);
    dica_.Mostrar(Handle(), ponto, texto);
}

void JanelaPrincipal::JogarAgora() {
    if (ObterInterface().quit || !ObterControlador().PodeJogarAgora()) return;
    TrocarApiQueNaoRoda();
    try {
        ObterControlador().Jogar();
    } catch (const std::exception& falha) {
        LogLinha("Jogar: {}", TextoDaExcecao(falha));
    }
}

void RegistrarPrincipal(HINSTANCE modulo) {
    Janela::Registrar(modulo, kClasseDaJanela, LoadIconW(modulo, MAKEINTRESOURCEW(kIcone)));
}

HWND CriarPrincipal(LogoEncaixado logo) {
    const DWORD estendido = WS_EX_APPWINDOW | (ModoCaptura() ? WS_EX_NOACTIVATE : 0);
    return Janela::Criar(std::make_unique<JanelaPrincipal>(std::move(logo)),
                         {.classe = kClasseDaJanela,
                          .titulo = TituloDoLauncher().c_str(),
                          .estilo = WS_POPUP | WS_CLIPCHILDREN | WS_SYSMENU | WS_MINIMIZEBOX,
                          .estendido = estendido,
                          .lugar = LugarDaPrincipal(),
                          .dona = nullptr});
}

JanelaPrincipal& Principal() {
    return *static_cast<JanelaPrincipal*>(Janela::De(ObterInterface().principal));
}

}  // namespace zu::launcher

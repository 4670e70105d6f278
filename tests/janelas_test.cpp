// Options, requirements and diagnostics in their own loops, driven by messages as the player sends them.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "game/opcoes.h"
#include "game/requisitos.h"
#include "tests/suporte/janelas.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/superficie.h"
#include "ui/controle.h"
#include "ui/estado_interface.h"
#include "ui/fim_da_interface.h"
#include "ui/janela_diagnostico.h"
#include "ui/janela_opcoes.h"
#include "ui/janela_principal.h"
#include "ui/janela_requisitos.h"
#include "ui/modal.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using teste::Bombear;
using teste::Clicar;

using Passos = std::vector<std::function<void()>>;

// What drives a window while its loop has the thread: one step a tick, also in the loops that a step enters.
Passos roteiro;
std::size_t proximoPasso = 0;
void CALLBACK DarPasso(HWND /*janela*/, UINT /*mensagem*/, UINT_PTR /*relogio*/, DWORD /*agora*/) {
    constexpr std::size_t kFolga = 200;
    const std::size_t passo = proximoPasso++;
    if (passo < roteiro.size()) {
        roteiro[passo]();
    } else if (passo == roteiro.size() + kFolga) {
        ADD_FAILURE() << "a janela não fechou";
        PedirFim();
    }
}

void Clicar(HWND janela, int id) {
    ASSERT_NE(GetDlgItem(janela, id), nullptr) << id;
    Clicar(GetDlgItem(janela, id));
}
// Through the list's menu, with the keyboard.
void EscolherItem(HWND janela, int id, int item) {
    const HWND lista = GetDlgItem(janela, id);
    for (int i = 0; i <= item; ++i)
        PostMessageW(lista, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(lista, WM_KEYDOWN, VK_RETURN, 0);
    Clicar(lista);
    EXPECT_EQ(EstadoDo(lista).selected, item) << id;
}
bool Habilitado(HWND janela, int id) {
    return IsWindowEnabled(GetDlgItem(janela, id)) != FALSE;
}
std::wstring Legenda(HWND controle) {
    wchar_t texto[64]{};
    GetWindowTextW(controle, texto, 64);
    return texto;
}
const std::wstring& Texto(HWND janela, int id) {
    return EstadoDo(GetDlgItem(janela, id)).text;
}
RECT Lugar(HWND janela) {
    RECT r{};
    GetWindowRect(janela, &r);
    return r;
}

class Janelas : public testing::Test {
 protected:
    Janelas() {
        teste::Configurar(pasta_.Caminho(), "");
        IniciarDesenho();
        AbrirEstadoDaInterface();
        const HINSTANCE modulo = GetModuleHandleW(nullptr);
        RegistrarControle(modulo);
        RegistrarPrincipal(modulo);
        for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico})
            RegistrarModal(modulo, classe);
        Ui().principal = CriarPrincipal(modulo);
        ShowWindow(Ui().principal, SW_SHOW);
        Bombear(20ms);
    }
    ~Janelas() override {
        for (const HWND janela : {Ui().diagnostico, Ui().requisitos, Ui().opcoes})
            FecharModal(janela);
        DestroyWindow(Ui().principal);
        Bombear(20ms);
        MSG fim{};
        PeekMessageW(&fim, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
        FecharEstadoDaInterface();
        EncerrarDesenho();
    }

    static void Rodar(HWND janela, Passos passos) {
        roteiro = std::move(passos);
        proximoPasso = 0;
        const UINT_PTR relogio = SetTimer(nullptr, 0, 15, DarPasso);
        RodarModal(janela);
        KillTimer(nullptr, relogio);
        EXPECT_GE(proximoPasso, roteiro.size()) << "a janela fechou antes da hora";
    }
    // The probe's answer to that report of the game; "" leaves the probe running until it is asked for another.
    void Diagnosticar(const std::string& relatorio) {
        if (!pasta_.Tem("Zu.exe")) std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
        pasta_.Escrever("jogo_falso.txt", "relatorio=" + (relatorio.empty() ? "travar" : relatorio));
        if (relatorio.empty())
            std::filesystem::remove(pasta_ / "siga");
        else
            pasta_.Escrever("siga", "");
        IniciarRequisitos();
        ASSERT_TRUE(Bombear(30s, [&] { return relatorio.empty() || ObterRequisitos().concluido; }));
    }

    static EstadoInterface& Ui() { return ObterInterface(); }

    teste::PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

TEST_F(Janelas, OpcoesVaoEVoltamPeloArquivo) {
    const std::string antes =
        "[Video]\r\nApi=d3d12\r\nDlss=3\r\nVSync=1\r\nFpsLimit=0\r\n[Window]\r\nWindowMode=1\r\nBorderless=0\r\n"
        "Resolution=4\r\n[Sound]\r\nSoundLevel=4\r\nMusicLevel=9\r\n[Launcher]\r\nFecharAoJogar=1\r\n";
    pasta_.Escrever("Config/Zu.ini", antes);
    const auto mudarTudo = [] {
        const HWND h = Ui().opcoes;
        Clicar(h, kOpcaoVulkan);
        for (const auto& [lista, item] :
             {std::pair(kListaResolucao, 7), {kListaLimiteFps, 6}, {kListaEfeitos, 0}, {kListaMusica, 8}})
            EscolherItem(h, lista, item);
        for (const int caixa : {kCaixaSemBorda, kCaixaVsync, kCaixaFecharAoJogar})
            Clicar(h, caixa);
        EscolherItem(h, kListaModo, 1);
    };
    const OpcoesJogo mudadas{"vulkan", 0, 1, 7, 0, 6, 0, 8, 0};
    // Every way out but "OK" and Enter changes nothing; "OK" without a change neither.
    const Passos saidas[] = {
        {mudarTudo, [] { Clicar(Ui().opcoes, kBotaoCancelar); }},
        {mudarTudo, [] { PostMessageW(GetDlgItem(Ui().opcoes, kBotaoOk), WM_KEYDOWN, VK_ESCAPE, 0); }},
        {mudarTudo, [] { PostMessageW(Ui().opcoes, WM_CLOSE, 0, 0); }},
        {mudarTudo, [] { SendMessageW(Ui().opcoes, WM_LBUTTONUP, 0, MAKELPARAM(425, 10)); }},
        {[] { Clicar(Ui().opcoes, kBotaoOk); }},
    };
    for (const Passos& passos : saidas) {
        Rodar(AbrirOpcoes(), passos);
        EXPECT_EQ(pasta_.Ler("Config/Zu.ini"), antes);
        EXPECT_NE(IsWindowEnabled(Ui().principal), FALSE);
    }
    // A key held down from before is not an answer.
    const LPARAM repetida = LPARAM{KF_REPEAT} << 16;
    const std::function<void()> aceites[] = {[] { PostMessageW(Ui().opcoes, WM_KEYDOWN, VK_RETURN, 0); },
                                             [] { Clicar(Ui().opcoes, kBotaoOk); }};
    for (const auto& aceitar : aceites) {
        pasta_.Escrever("Config/Zu.ini", antes);
        Rodar(AbrirOpcoes(), {[&] { PostMessageW(Ui().opcoes, WM_KEYDOWN, VK_RETURN, repetida); },
                              [&] { PostMessageW(Ui().opcoes, WM_KEYDOWN, VK_ESCAPE, repetida); }, mudarTudo, aceitar});
        EXPECT_EQ(LerOpcoesJogo(), mudadas);
        EXPECT_EQ(Ui().opcoesDoJogo, mudadas);
        EXPECT_EQ(teste::LinhasDoLog(pasta_).back(),
                  "Opções gravadas em Config\\Zu.ini (api vulkan, modo 0, resolução 7)");
        EXPECT_NE(pasta_.Ler("Config/Zu.ini").find("Dlss=3"), std::string::npos);
    }
    // What the file holds is what the window shows, whoever wrote it.
    pasta_.Escrever("Config/Zu.ini", "[Video]\r\nApi=Vulkan\r\n[Window]\r\nResolution=99\r\nWindowMode=0\r\n");
    const HWND h = AbrirOpcoes();
    EXPECT_TRUE(EstadoDo(GetDlgItem(h, kOpcaoD3d12)).checked);
    EXPECT_FALSE(EstadoDo(GetDlgItem(h, kOpcaoVulkan)).checked);
    EXPECT_EQ(EstadoDo(GetDlgItem(h, kListaResolucao)).selected, 7);
    EXPECT_EQ(EstadoDo(GetDlgItem(h, kListaModo)).selected, 1);
}

TEST_F(Janelas, OpcoesSeguemModoDiagnosticoELugar) {
    Diagnosticar("");
    const HWND h = AbrirOpcoes();
    EXPECT_EQ(AbrirOpcoes(), h);
    EXPECT_EQ(IsWindowEnabled(Ui().principal), FALSE);
    const RECT p = Lugar(Ui().principal);
    const RECT o = Lugar(h);
    EXPECT_EQ(std::pair(o.right - o.left, o.bottom - o.top), std::pair(LONG{440}, LONG{492}));
    EXPECT_EQ(std::pair(o.left, o.top), std::pair(p.left + 7, p.top + 12));
    // Where the two check boxes overlap, the right one is hit.
    POINT marca{170, 208};
    ClientToScreen(h, &marca);
    EXPECT_EQ(GetDlgCtrlID(WindowFromPoint(marca)), kCaixaVsync);

    EscolherItem(h, kListaModo, 1);
    EXPECT_FALSE(Habilitado(h, kListaResolucao) || Habilitado(h, kCaixaSemBorda));
    EscolherItem(h, kListaModo, 0);
    EXPECT_TRUE(Habilitado(h, kListaResolucao) && Habilitado(h, kCaixaSemBorda));

    const struct {
        const char* relatorio;
        const wchar_t* d3d12;
        const wchar_t* vulkan;
    } casos[] = {
        {"", L"Verificando o computador...", L"Verificando o computador..."},
        {"nenhum", L"Sem diagnóstico (Zu.exe não respondeu)", L"Sem diagnóstico (Zu.exe não respondeu)"},
        {"so_d3d12", L"Roda neste PC", L"vulkan-1.dll não encontrada"},
        {"copiar", L"Não roda neste PC", L"Roda neste PC"},
    };
    pasta_.Escrever("jogo_falso.json", R"({"d3d12": false})");
    for (const auto& [relatorio, d3d12, vulkan] : casos) {
        Diagnosticar(relatorio);
        EXPECT_TRUE(Bombear(5s, [&] { return Texto(h, kOpcaoD3d12) == d3d12 && Texto(h, kOpcaoVulkan) == vulkan; }))
            << relatorio;
    }
    FecharModal(h);

    // Over a main window at the edge, all of the window stays to be seen.
    SetWindowPos(Ui().principal, nullptr, -300, -200, 0, 0, SWP_NOSIZE);
    EXPECT_EQ(std::pair(Lugar(AbrirOpcoes()).left, Lugar(Ui().opcoes).top), std::pair(LONG{0}, LONG{0}));
}

// The report comes while the window is open: what "OK" writes is what runs here, unless the player has chosen
// otherwise.
TEST_F(Janelas, ApiCorrigidaComAJanelaAberta) {
    for (const bool escolheu : {false, true}) {
        OpcoesJogo gravadas;
        gravadas.api = escolheu ? "vulkan" : "d3d12";
        GravarOpcoesJogo(gravadas);
        Diagnosticar("");
        const HWND h = AbrirOpcoes();
        if (escolheu) Clicar(h, kOpcaoD3d12);
        Diagnosticar("so_vulkan");
        EXPECT_TRUE(Bombear(5s, [h] { return Texto(h, kOpcaoVulkan) == L"Roda neste PC"; }));
        EXPECT_EQ(EstadoDo(GetDlgItem(h, kOpcaoVulkan)).checked, !escolheu);
        Clicar(h, kBotaoOk);
        EXPECT_EQ(LerOpcoesJogo().api, escolheu ? "d3d12" : "vulkan");
        FecharModal(h);
    }
}

TEST_F(Janelas, RequisitosEDiagnosticoDeCadaRelatorio) {
    const struct {
        const char* relatorio;
        std::size_t linhas;
        const char* acao;  // the label; empty: none
    } casos[] = {
        {"nenhum", 0, ""}, {"avisos", 9, "Abrir site do driver"}, {"sessenta", 60, ""}, {"longos", 10, ""},
        {"vazio", 0, ""},
    };
    EXPECT_EQ(AbrirRequisitos(), nullptr);
    const RECT area = AreaDeTrabalho();
    for (const auto& caso : casos) {
        SCOPED_TRACE(caso.relatorio);
        Diagnosticar("");
        AbrirOpcoes();
        const HWND h = AbrirRequisitos();
        EXPECT_FALSE(Habilitado(h, kBotaoDiagnostico));
        Diagnosticar(caso.relatorio);
        EXPECT_TRUE(Bombear(1s, [h] { return Habilitado(h, kBotaoDiagnostico); }));
        const RECT p = Lugar(Ui().principal);
        EXPECT_EQ(std::pair(Lugar(h).left, Lugar(h).top), std::pair(p.left - 23, p.top + 108));

        const HWND d = AbrirDiagnostico();
        EXPECT_EQ(std::pair(Lugar(d).left, Lugar(d).right), std::pair(p.left - 163, p.left - 163 + 780));
        EXPECT_TRUE(Lugar(d).top >= area.top && Lugar(d).bottom <= area.bottom);
        EXPECT_EQ(Lugar(d).bottom - Lugar(d).top == area.bottom - area.top, caso.linhas == 60);
        EXPECT_EQ(ParaUtf8(Legenda(GetDlgItem(d, kBotaoAcao))), caso.acao);
        EXPECT_EQ(LinhasDoDiagnostico(ObterRequisitos()).size(), caso.linhas);
        EXPECT_EQ(Habilitado(d, kBotaoCopiar), !ObterRequisitos().relatorio.empty());
        for (const HWND janela : {d, h, Ui().opcoes})
            FecharModal(janela);
    }
}

TEST_F(Janelas, TabelaMaiorQueATelaRola) {
    Diagnosticar("sessenta");
    AbrirOpcoes();
    AbrirRequisitos();
    const HWND d = AbrirDiagnostico();
    const int altura = Lugar(d).bottom - Lugar(d).top;
    const auto tecla = [d](int codigo) { SendMessageW(d, WM_KEYDOWN, static_cast<WPARAM>(codigo), 0); };
    const auto mouse = [d](UINT mensagem, int y) { SendMessageW(d, mensagem, MK_LBUTTON, MAKELPARAM(760, y)); };
    const auto roda = [d](int entalhes) { SendMessageW(d, WM_MOUSEWHEEL, MAKEWPARAM(0, entalhes * WHEEL_DELTA), 0); };
    const auto vista = [&] {
        auto s = std::make_unique<teste::Superficie>(kLarguraDoDiagnostico, altura);
        SendMessageW(d, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(s->Dc()), PRF_CLIENT);
        return s;
    };
    const auto inicio = vista();
    tecla(VK_END);
    const auto fim = vista();
    EXPECT_GT(fim->Diferentes(*inicio), 1000);
    // Each way up and down; nothing goes past the ends.
    const std::pair<const teste::Superficie*, std::function<void()>> caminhos[] = {
        {inicio.get(), [&] { tecla(VK_HOME); }},
        {fim.get(), [&] { roda(-100); }},
        {inicio.get(), [&] { roda(100); }},
        {fim.get(), [&] { tecla(VK_NEXT), tecla(VK_NEXT), tecla(VK_NEXT); }},
        {inicio.get(), [&] { tecla(VK_PRIOR), tecla(VK_PRIOR), tecla(VK_PRIOR); }},
        {inicio.get(), [&] { tecla(VK_DOWN), roda(-1), roda(1), tecla(VK_UP); }},
        {fim.get(), [&] { mouse(WM_LBUTTONDOWN, 90), mouse(WM_MOUSEMOVE, altura), mouse(WM_LBUTTONUP, altura); }},
        {fim.get(), [&] { mouse(WM_MOUSEMOVE, 90); }},
        {inicio.get(), [&] { mouse(WM_LBUTTONDOWN, 78), mouse(WM_LBUTTONUP, 78); }},
    };
    int caminho = 0;
    for (const auto& [esperada, ir] : caminhos) {
        SCOPED_TRACE(caminho++);
        ir();
        EXPECT_EQ(vista()->Diferentes(*esperada), 0);
    }
    tecla(VK_DOWN);
    EXPECT_GT(vista()->Diferentes(*inicio), 1000);
}

TEST_F(Janelas, RequisitosEmPalavras) {
    ResultadoRequisitos r;
    EXPECT_EQ(DescreverRequisitos(r).titulo, L"Verificando os requisitos do computador...");
    r.concluido = true;
    EXPECT_TRUE(DescreverRequisitos(r).linhas.empty());
    EXPECT_FALSE(DescreverRequisitos(r).situacao.has_value());

    r.relatorioLido = true;
    r.sistema = "Windows 11";
    r.vulkan = false;
    r.d3d12Detalhe = "Recurso 12_1";
    r.titulo = "Seu computador não atende aos requisitos";
    r.geral = "falha";
    r.items = {{"Placa de vídeo", "", "", "", EstadoItem::kAviso}, {"DirectX 12", "", "", "", EstadoItem::kAviso}};
    r.oQueFazer = {"Um.", "Outro."};
    const AparenciaRequisitos a = DescreverRequisitos(r);
    EXPECT_EQ(a.titulo, L"Seu computador não atende aos requisitos");
    EXPECT_EQ(a.situacao, EstadoItem::kFalha);
    EXPECT_EQ(a.conselhos, L"Um.\nOutro.");
    EXPECT_EQ(a.pasta, pasta_.Caminho().native());
    std::wstring visto;
    for (const LinhaRequisito& l : a.linhas)
        visto += l.nome + L": " + l.valor +
                 (!l.situacao                         ? L"\n"
                  : *l.situacao == EstadoItem::kAviso ? L" !\n"
                                                      : L" X\n");
    EXPECT_EQ(visto,
              L"Sistema: Windows 11\nPlaca de vídeo: não informado !\nDirectX 12: Recurso 12_1 !\n"
              L"Vulkan 1.3: Não roda neste PC X\n");
}

TEST_F(Janelas, ConselhosNasLinhasDeQueFalam) {
    ResultadoRequisitos r;
    r.items = {{"Memória", "", "", "", EstadoItem::kAviso},
               {"Placa de vídeo", "", "", "", EstadoItem::kFalha},
               {"Driver de vídeo", "", "", "", EstadoItem::kFalha},
               {"DirectX 12", "", "", "", EstadoItem::kOk}};
    const auto conselhos = [&r](std::vector<std::string> textos) {
        r.oQueFazer = std::move(textos);
        std::vector<std::wstring> porLinha;
        for (const LinhaDiagnostico& linha : LinhasDoDiagnostico(r))
            porLinha.push_back(linha.conselho);
        return porLinha;
    };
    using Textos = std::vector<std::wstring>;
    EXPECT_EQ(conselhos({"Atualize o DRIVER da placa de vídeo."}),
              (Textos{L"", L"", L"Atualize o DRIVER da placa de vídeo.", L""}));
    // Words, not parts of them, and the longer of two names.
    r.items.insert(r.items.begin() + 1, {"Memória de vídeo", "", "", "", EstadoItem::kAviso});
    EXPECT_EQ(conselhos({"A memória de vídeo é pouca.", "Ponha mais memória.", "Sem placares."}),
              (Textos{L"Ponha mais memória.", L"A memória de vídeo é pouca.", L"Sem placares.", L"", L""}));
    r.items.erase(r.items.begin() + 1);
    EXPECT_EQ(conselhos({"Feche programas.", "Troque a placa.", "A placa aquece.", "Veja o DirectX.", "Sobra."}),
              (Textos{L"Feche programas.", L"Troque a placa.\nA placa aquece.", L"Veja o DirectX.", L"", L"Sobra."}));
}

TEST_F(Janelas, CopiaComCrLfEVoltaALegenda) {
    pasta_.Escrever("jogo_falso.json", "{\"relatorio\": \"um ção\\ndois\\r\\ntrês\\n\\n\"}");
    Diagnosticar("copiar");
    AbrirOpcoes();
    AbrirRequisitos();
    const HWND d = AbrirDiagnostico();
    const HWND botao = GetDlgItem(d, kBotaoCopiar);
    Clicar(botao);
    EXPECT_EQ(Legenda(botao), L"Copiado!");
    ASSERT_TRUE(OpenClipboard(d));
    const HANDLE bloco = GetClipboardData(CF_UNICODETEXT);
    EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(bloco)), L"um ção\r\ndois\r\ntrês\r\n\r\n");
    GlobalUnlock(bloco);
    CloseClipboard();
    Bombear(1500ms);
    EXPECT_EQ(Legenda(botao), L"Copiado!");
    EXPECT_TRUE(Bombear(1s, [botao] { return Legenda(botao) == L"Copiar relatório"; }));
}

TEST_F(Janelas, UmaSobreAOutraEFimPorDentro) {
    Diagnosticar("bom");
    const auto soAFrente = [] {
        const HWND pilha[] = {Ui().principal, Ui().opcoes, Ui().requisitos, Ui().diagnostico};
        for (const HWND janela : pilha) {
            EXPECT_EQ(janela != nullptr && IsWindowEnabled(janela), janela == JanelaDaFrente());
        }
    };
    const Passos entrar{
        [] { Clicar(Ui().opcoes, kBotaoRequisitos); }, [] { PostMessageW(Ui().requisitos, WM_KEYDOWN, VK_RETURN, 0); },
        [] { Clicar(Ui().requisitos, kBotaoDiagnostico); }, soAFrente,
        // A second launcher asks for the front; the windows underneath cannot be closed.
        [] { PostMessageW(Ui().principal, MSG_TRAZER_FRENTE, 0, 0); },
        [] { EXPECT_EQ(GetForegroundWindow(), Ui().diagnostico); }, [] { PostMessageW(Ui().opcoes, WM_CLOSE, 0, 0); }};
    Passos passos = entrar;
    for (int i = 0; i < 3; ++i) {
        passos.push_back(soAFrente);
        passos.push_back([] { PostMessageW(JanelaDaFrente(), WM_KEYDOWN, VK_ESCAPE, 0); });
    }
    Rodar(AbrirOpcoes(), passos);
    EXPECT_EQ(JanelaDaFrente(), Ui().principal);
    EXPECT_FALSE(Ui().quit);
    EXPECT_EQ(GetActiveWindow(), Ui().principal);

    passos = entrar;
    passos.push_back([] { PostQuitMessage(0); });
    Rodar(AbrirOpcoes(), passos);
    EXPECT_TRUE(Ui().quit);
    EXPECT_EQ(JanelaDaFrente(), Ui().principal);
}

TEST_F(Janelas, CapturaNaoAtivaNadaNemApareceNaTela) {
    ConfigLauncher config = ObterConfig();
    config.captura = pasta_.Caminho().native();
    DefinirConfig(config);
    SetWindowPos(Ui().principal, nullptr, -654, 0, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
    const HWND frente = GetForegroundWindow();
    for (const HWND janela : {AbrirOpcoes(), AbrirRequisitos(), AbrirDiagnostico()}) {
        EXPECT_LE(Lugar(janela).right, 0);
        EXPECT_NE(GetWindowLongPtrW(janela, GWL_EXSTYLE) & WS_EX_NOACTIVATE, 0);
        EXPECT_NE(IsWindowVisible(janela), FALSE);
        EXPECT_EQ(GetForegroundWindow(), frente);
    }
}

TEST_F(Janelas, AbrirEFecharNaoGuardaNada) {
    Diagnosticar("avisos");
    const auto ciclo = [] {
        AbrirOpcoes();
        AbrirRequisitos();
        AbrirDiagnostico();
        for (const HWND janela : {Ui().diagnostico, Ui().requisitos, Ui().opcoes, Ui().principal}) {
            RedrawWindow(janela, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            if (janela != Ui().principal) FecharModal(janela);
        }
        Bombear(1ms);
    };
    for (int i = 0; i < 3; ++i)
        ciclo();
    const teste::Posses antes = teste::ContarPosses();
    for (int i = 0; i < 40; ++i)
        ciclo();
    const teste::Posses depois = teste::ContarPosses();
    EXPECT_LE(depois.gdi, antes.gdi);
    EXPECT_LE(depois.user, antes.user);
}

}  // namespace
}  // namespace zu::launcher

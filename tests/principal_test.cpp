// The main window through the real interface run, driven by messages as the system and the player send them; and how a
// launcher ends, hides and is woken: the real program beside others, and a run inside the system's own loops.
#include "tests/suporte/janelas.h"
// after windows.h
#include <sddl.h>

#include "tests/suporte/ini.h"
#include "tests/suporte/recusa.h"
#include "update/jogo_aberto.h"

namespace {

bool contraste = false;

BOOL WINAPI Parametros(UINT acao, UINT n, PVOID valor, UINT fim) {
    if (acao != SPI_GETHIGHCONTRAST) return ZU_VERDADEIRA(L"user32", SystemParametersInfoW)(acao, n, valor, fim);
    static_cast<HIGHCONTRASTW*>(valor)->dwFlags = contraste ? HCF_HIGHCONTRASTON : 0;
    return TRUE;
}

ULONGLONG adiantado = 0;  // ms
ULONGLONG WINAPI Relogio() {
    return ZU_VERDADEIRA(L"kernel32", GetTickCount64)() + adiantado;
}

int piscadas = 0;
BOOL WINAPI Piscar(PFLASHWINFO pedido) {
    piscadas += pedido->dwFlags == (FLASHW_TRAY | FLASHW_TIMERNOFG) ? 1 : 0;
    return TRUE;
}

}  // namespace

// Wine has no high contrast and no taskbar.
ZU_DESVIAR(SystemParametersInfoW, Parametros);
ZU_DESVIAR(GetTickCount64, Relogio);
ZU_DESVIAR(FlashWindowEx, Piscar);

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using testing::HasSubstr;

class Principal : public ComServidor {
 protected:
    [[nodiscard]] bool Logou(const std::string& inicio) const { return QuantasLinhas(inicio) > 0; }
    // Up to date, and the window knows it.
    bool EsperarPronto(const Interface& ui) const {
        return Esperar(10s, [&] {
            return Logou("[update] Atualização concluída") && !ObterControlador().Atualizando() &&
                   IsWindowEnabled(GetDlgItem(ui.Janela(), kBotaoConectar));
        });
    }
    static void ComSite(const std::filesystem::path& programas, const std::wstring& captura,
                        const std::vector<std::wstring>& argumentos = {}) {
        SetEnvironmentVariableW(L"ProgramFiles(x86)", programas.c_str());
        ConfigLauncher config = ObterConfig();
        config.urlSite = "http://site.example/";
        config.captura = captura;
        config.argumentos = argumentos;
        DefinirConfig(config);
    }
};

// What the taskbar is told.
std::string ditos;

HRESULT WINAPI NotarValor(void*, HWND, ULONGLONG feito, ULONGLONG todo) {
    return ditos += Formatar("{}/{} ", feito, todo), S_OK;
}
HRESULT WINAPI NotarEstado(void*, HWND, int estado) {
    return ditos += Formatar("estado {} ", estado), S_OK;
}

// In the places of the two calls in the table of the taskbar's interface, from now on.
void EscutarTarefas() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    void* barra = nullptr;
    CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3, &barra);
    void** const chamadas = *static_cast<void***>(barra) + 9;
    DWORD antes = 0;
    VirtualProtect(chamadas, 2 * sizeof *chamadas, PAGE_READWRITE, &antes);
    chamadas[0] = reinterpret_cast<void*>(&NotarValor);
    chamadas[1] = reinterpret_cast<void*>(&NotarEstado);
    ditos.clear();
}

// Faults: the button keeps what it showed; a colour is another state's; the same is told again with every refresh; the
// end of a short run flashes.
TEST(Barra, DeTarefasEmCadaEstado) {
    EscutarTarefas();
    BarraDeTarefas barra;
    const auto mostrar = [&](StatusUpdate status, bool atualizando) {
        barra.Mostrar(nullptr, SinalDe(status, atualizando, 40));
    };
    mostrar(StatusUpdate::kVerificando, true);
    mostrar(StatusUpdate::kBaixando, true);
    mostrar(StatusUpdate::kJogoAberto, false);
    mostrar(StatusUpdate::kErro, false);
    barra.Esquecer();
    mostrar(StatusUpdate::kErro, false);
    mostrar(StatusUpdate::kPronto, false);
    EXPECT_EQ(ditos, "estado 2 40/100 estado 8 100/100 estado 4 100/100 estado 4 100/100 estado 0 ");
    for (const ULONGLONG duracao : {9'000ULL, 10'500ULL}) {
        barra.Acompanhar(nullptr, true);
        adiantado += duracao;
        barra.Acompanhar(nullptr, false);
        barra.Acompanhar(nullptr, false);
    }
    EXPECT_EQ(piscadas, 1);
}

// Faults: the bars change in the record and not on the screen, or both show one value; high contrast that comes or goes
// while the window is open is not followed; a key that is still held down, from a window above, plays or closes; the
// taskbar is told nothing; a tip stays, or keeps its text.
TEST_F(Principal, BarrasEBotoesEmCadaFaseAteOJogoAbrir) {
    // Half of the second file arrives, and the other when all has been seen.
    constexpr std::size_t kMetade = 1 << 20;
    const std::string conteudo = Bytes(2 * kMetade);
    Publicar({{"a.bin", conteudo}, {"b.bin", conteudo}});
    servidor_.Definir("b.bin",
                      [&](const Pedido&) { return Resposta{.corpo = conteudo, .bloco = kMetade, .prender = true}; });
    PorJogo("viver=300\nrelatorio=so_vulkan\n", true);
    EscutarTarefas();
    Interface ui;
    EXPECT_EQ(ui.Provar("299,419=2762C2~10 305,416=AFAFAF~6 249,438=2762C2~10 255,435=AFAFAF~6"), "");
    EXPECT_TRUE(Esperar(2s, [&] {
        return LerTela(ui.Janela()) ==
               "Zu Launcher\nZU | TORVAL 97 C+\n75%\nRegistrar\n50%\n(Opções) | (Conectar) | Fechar";
    }));
    ui.NaThread([] {
        EXPECT_EQ(zu::launcher::Principal().Parte(0).valor + zu::launcher::Principal().Parte(1).valor, L"75%50%");
        EXPECT_EQ(zu::launcher::Principal().Parte(2).papel, ROLE_SYSTEM_STATICTEXT);
    });
    const DWORD destaque = GetSysColor(COLOR_HIGHLIGHT);
    const std::string comContraste = Formatar(
        "226,450=FFFFFF~0 5,45=FFFFFF~0 60,10=FFFFFF~0 110,486=FFFFFF~0 299,419={:02X}{:02X}{:02X}~0 120,485=F0F0F0~6",
        GetRValue(destaque), GetGValue(destaque), GetBValue(destaque));
    for (const std::string& provas : {comContraste, std::string("226,450=E2E2E2~0 5,45=D4D4D4~0")}) {
        contraste = !contraste;
        SendMessageW(ui.Janela(), WM_SETTINGCHANGE, 0, 0);
        EXPECT_EQ(ui.Provar(provas), "");
    }
    const auto dica = [] { return FindWindowW(L"ZuLauncherDica", nullptr); };
    for (const UINT saida : {UINT{WM_MOUSEMOVE}, UINT{WM_MOUSELEAVE}, UINT{WM_NULL}}) {
        SendMessageW(ui.Janela(), WM_MOUSEHOVER, 0, MAKELPARAM(200, 416));
        EXPECT_THAT(LerTela(dica()), HasSubstr("\nb.bin\n3.0 MB de 4.0 MB; 1 de 2 arquivos"));
        SendMessageW(ui.Janela(), saida, 0, MAKELPARAM(20, 416));
        EXPECT_EQ(dica() == nullptr, saida != WM_NULL);
    }
    SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
    ASSERT_FALSE(ObterControlador().AbrindoJogo());
    servidor_.Soltar();
    EXPECT_TRUE(EsperarPronto(ui));
    EXPECT_TRUE(Esperar(2s, [&] { return LerTela(dica()) == "Atualização concluída: 2 arquivo(s) novo(s)."; }));
    EXPECT_EQ(ui.Provar("348,419=2762C2~10 348,438=2762C2~10"), "");
    EXPECT_THAT(ditos, testing::AllOf(HasSubstr("estado 2 75/100 "), testing::EndsWith("estado 0 ")));
    // The player puts the interface back that does not run here; playing changes it again. Enter plays, whichever
    // control it goes to.
    EXPECT_TRUE(Esperar(10s, [&] { return Logou("Opções gravadas em Config"); }));
    GravarOpcoesJogo({.musicLevel = 3});
    for (const int tecla : {VK_RETURN, VK_ESCAPE})
        Teclar(ui.Janela(), tecla, true);
    EXPECT_FALSE(Esperar(300ms, [&] { return ui.Terminou() || Logou("Jogo aberto"); }));
    Teclar(GetDlgItem(ui.Janela(), kBotaoFechar), VK_RETURN);
    EXPECT_TRUE(Esperar(5s, [&] { return IsWindowVisible(ui.Janela()) == FALSE; }));
    EXPECT_EQ(dica(), nullptr);
    EXPECT_EQ(ui.EsperarFim(10s), 0);
    EXPECT_EQ(LerOpcoesJogo(), (OpcoesJogo{.api = "vulkan", .musicLevel = 3}));
    EXPECT_EQ(QuantasLinhas("A API gravada (d3d12) não roda neste PC: trocando para a outra"), 1);
    EXPECT_TRUE(Logou("Jogo aberto: Zu.exe --api=vulkan"));
}

TEST_F(Principal, NoMeioDaTelaMinimizaEVoltaComAMensagemQuandoOJogoNaoAbre) {
    pasta_.Escrever("Zu.exe", "isto não é um programa");
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui));
    const RECT r = NaTela(ui.Janela());
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    EXPECT_EQ(std::pair(r.left + r.right, r.top + r.bottom), std::pair(area.left + area.right, area.top + area.bottom));
    SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    EXPECT_NE(IsIconic(ui.Janela()), FALSE);
    ShowWindow(ui.Janela(), SW_RESTORE);
    Clicar(GetDlgItem(ui.Janela(), kBotaoConectar));
    EXPECT_EQ(TextoDaCaixa(), "não foi possível abrir o Zu.exe (erro 193)");
    EXPECT_TRUE(IsWindowVisible(ui.Janela()) && !IsWindowEnabled(ui.Janela()));
    SendMessageW(ui.Janela(), MSG_TRAZER_FRENTE, 0, 0);
    EXPECT_EQ(GetForegroundWindow(), CaixaDeMensagem());
    // Only once.
    PostMessageW(CaixaDeMensagem(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(Esperar(5s, [] { return CaixaDeMensagem() == nullptr; }));
    EXPECT_FALSE(Esperar(500ms, [] { return CaixaDeMensagem() != nullptr; }));
    Teclar(ui.Janela(), VK_ESCAPE);
    EXPECT_EQ(ui.EsperarFim(5s), 0);
}

// Faults: a control that the keyboard does not reach, or not in the order of reading; a key that presses twice; the
// keyboard is lost when the window above closes; the mark that shows where it is does not come.
TEST_F(Principal, SessaoInteiraSoPeloTeclado) {
    PorJogo("relatorio=bom\n", true);
    pasta_.Escrever("Config/Zu.ini", TextoDoIni({.windowMode = 0}));
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui) && Esperar(5s, [] { return ObterRequisitos().concluido; }));
    const auto digitar = [](std::initializer_list<int> teclas) {
        for (const int tecla : teclas) {
            for (const DWORD ponta : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}})
                keybd_event(static_cast<BYTE>(tecla), 0, ponta, 0);
        }
    };
    digitar({VK_TAB, VK_TAB});
    EXPECT_EQ(ui.Provar("140,476=1E48A0~60"), "");
    // Opções: Vulkan; from full screen to a window; the last resolution; both boxes; 60; mute; the menu of the music;
    // "Fechar".
    digitar({VK_SPACE, VK_RIGHT, VK_TAB, VK_UP,   VK_TAB, VK_END, VK_TAB,  VK_SPACE, VK_TAB,  VK_SPACE,  VK_TAB,
             VK_DOWN,  VK_DOWN,  VK_TAB, VK_HOME, VK_TAB, VK_F4,  VK_DOWN, VK_DOWN,  VK_DOWN, VK_RETURN, VK_TAB});
    keybd_event(VK_SHIFT, 0, 0, 0);
    digitar({VK_TAB});
    keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
    // Requisitos, Diagnóstico, its report copied, and out again; OK; Conectar.
    digitar({VK_TAB, VK_TAB, VK_SPACE, VK_TAB, VK_SPACE, VK_SPACE, VK_SPACE, VK_ESCAPE, VK_ESCAPE, VK_TAB, VK_SPACE});
    const std::string ini = TextoDoIni({"vulkan", 1, 1, 7, 0, 2, 0, 2, 0});
    EXPECT_TRUE(Esperar(10s, [&] { return pasta_.Ler("Config/Zu.ini") == ini; })) << pasta_.Ler("Config/Zu.ini");
    digitar({VK_TAB, VK_SPACE});
    EXPECT_TRUE(Esperar(10s, [&] { return Logou("Jogo aberto: Zu.exe --api=vulkan"); }));
}

// Fault: the view has failed or is there, and the centre on the screen keeps what it showed before.
TEST_F(Principal, CentroNaTelaSemSiteSemRuntimeEComAVisao) {
    constexpr RECT kAcima{9, 49, 445, 352};
    constexpr RECT kLinhaDaFalha{9, 352, 445, 374};
    // Header, the rings around the centre, the logo in it; footer, panels and their shadow, border; and the strip, also
    // with the pointer over its boxes.
    const std::pair<int, const char*> telas[] = {
        {10, "10,13=1E3CAA~0 441,10=1E1E1E~40"},
        {441, "10,13=000000~0 441,14=EFA998~6 441,10=96140A~40"},
        {60,
         "300,20=FBFBFB 300,43=CFCFCF 300,44=969696~0 6,46=606060~0 447,384=606060~0 7,47=FFFFFF~0 446,383=FFFFFF~0 "
         "8,48=FFFFFF~0 445,382=FFFFFF~0 5,45=D4D4D4~0 448,385=D4D4D4~0 9,49=080406~0 444,381=080406~0 "
         "226,387=D4D4D4~0 2,388=606060~0 440,389=A6A6A6 440,514=D2D2D2 226,450=E2E2E2~0 226,396=FAFAFA~12 "
         "54,397=A9A9A9 226,459=BEBEBE~9 98,486=E2E2E2~0 1,200=404040~30 200,1=404040~30 225,336=F3EDE6 230,337=978A8E "
         "410,208=8B5321 200,88=9E7C4E"},
        {60,
         "60,0=ECF1F7~20 60,10=CBD4E0 60,19=AEB9CB 0,20=6E6E6E~40 10,13=000000~0 441,14=C6C6C6~6 441,10=1E1E1E~40"}};
    ComSite(pasta_.Caminho(), L"", {L"--sem-cef"});
    std::unique_ptr<Superficie> logo;
    {
        Interface ui;
        for (const auto& [x, provas] : telas) {
            SetCursorPos(NaTela(ui.Janela()).left + x, NaTela(ui.Janela()).top + 10);
            SendMessageW(ui.Janela(), WM_MOUSEMOVE, 0, MAKELPARAM(x, 10));
            EXPECT_EQ(ui.Provar(provas), "");
        }
        logo = std::make_unique<Superficie>(ui.Janela());
    }
    EXPECT_FALSE(Logou("WebView2"));
    ComSite(pasta_.Caminho(), L"");
    {
        Interface ui;
        EXPECT_TRUE(Esperar(5s, [&] { return Superficie(ui.Janela()).Diferentes(*logo, kLinhaDaFalha) > 50; }));
        EXPECT_EQ(Superficie(ui.Janela()).Diferentes(*logo, kAcima), 0);
        EXPECT_THAT(LerTela(ui.Janela()), HasSubstr("\nNão foi possível abrir o site.\n"));
    }
    ComSite(kPastaBin / "runtime_falso", L"");
    RuntimeFalso().Comecar({});
    Interface ui;
    EXPECT_EQ(ui.Provar("226,150=080406 20,60=080406"), "");
    SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(440, 10));
    EXPECT_EQ(ui.EsperarFim(5s), 0);
}

// The stand-in draws no page, so nothing is ever composited: what the window draws itself is saved.
TEST_F(Principal, CapturaSemQuadroDoSite) {
    ComSite(kPastaBin / "runtime_falso", (pasta_ / "fotos").native());
    NavegadorFalso& falso = RuntimeFalso();
    falso.Comecar({});
    Interface ui;
    // Off the screen, and there is no picture before the page is there or has failed.
    EXPECT_LE(NaTela(ui.Janela()).right, GetSystemMetrics(SM_XVIRTUALSCREEN) - 200);
    EXPECT_TRUE(Esperar(5s, [&] { return Logou("WebView2 120.0.2210.91"); }));
    EXPECT_FALSE(Esperar(4s, [&] { return pasta_.Tem("fotos/principal.png"); }));
    std::string visivel;
    ui.NaThread([&] {
        falso.Ocorrer(Ocorrencia::kNavigationCompleted);
        for (const int como : {SW_HIDE, SW_SHOWNOACTIVATE, SW_SHOWMINNOACTIVE, SW_RESTORE}) {
            ShowWindow(ui.Janela(), como);
            const std::string_view chamadas = falso.Chamadas();
            visivel += chamadas.substr(chamadas.rfind("put_IsVisible ") + 14, 1);
        }
        SetWindowPos(ui.Janela(), nullptr, -3000, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        EXPECT_THAT(falso.Chamadas(), testing::EndsWith("NotifyParentWindowPositionChanged\n"));
        for (const wchar_t* const endereco : {L"https://um/", L"https://dois/"})
            falso.Ocorrer(Ocorrencia::kNewWindow, {endereco});
    });
    EXPECT_EQ(visivel, "0101");
    ui.NaThread([] { EXPECT_EQ(std::exchange(abertos, {}), L"https://um/\nhttps://dois/\n"); });
    // No window is seen, none takes what the player is doing away from him.
    EXPECT_TRUE(Esperar(30s, [&] {
        for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico}) {
            const HWND janela = FindWindowW(classe, nullptr);
            EXPECT_TRUE(NaTela(janela).right <= 0 && (janela == nullptr || janela != GetForegroundWindow()));
            EXPECT_TRUE((GetWindowLongPtrW(janela, GWL_EXSTYLE) & WS_EX_NOACTIVATE) != 0 || !IsWindow(janela));
        }
        return ui.Terminou();
    }));
    EXPECT_EQ(ui.EsperarFim(5s), 0);
    EXPECT_TRUE(Logou("Captura: o DWM não entregou o quadro do site; fica o desenho GDI"));
    for (const std::string foto : {"principal.png", "opcoes.png", "requisitos.png", "diagnostico.png"}) {
        EXPECT_TRUE(Logou("Captura " + foto + ": gravada"));
        EXPECT_EQ(pasta_.Ler("fotos/" + foto).substr(1, 3), "PNG") << foto;
    }
    EXPECT_EQ(falso.Faltas(), 0) << falso.Chamadas();
}

class Fim : public ComServidor {
 protected:
    int Fotografar(const char* destino) const {
        const std::wstring captura = L"--captura=" + (pasta_ / destino).native();
        return Programa(Lancado::Instalar(pasta_ / "testes_janela.exe"), {captura}).Esperar();
    }
};

// Faults: the end waits for a read that the server leaves unanswered; what the run has found out is lost; a start that
// comes meanwhile ends without a word.
TEST_F(Fim, DoCliqueAoFimComServidorParadoOuLento) {
    const std::string conteudo = Bytes(600'000);
    Publicar({{"a.bin", "a"}, {"b.bin", conteudo}});
    const Resposta respostas[] = {
        {.corpo = conteudo.substr(0, 1000), .anunciado = conteudo.size(), .fim = teste::Fim::kCalar},
        {.corpo = conteudo, .bloco = 1000, .pausa = 100ms}};
    std::unique_ptr<Lancado> anterior;
    std::chrono::steady_clock::time_point clique;
    const auto esperarFim = [&] {
        EXPECT_EQ(anterior->programa.Esperar(10'000), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - clique, 3s);
        EXPECT_NE(pasta_.Ler("Config/Launcher.cache").find("a.bin"), std::string::npos);
    };
    for (const Resposta& resposta : respostas) {
        servidor_.Definir("b.bin", [&](const Pedido&) { return resposta; });
        servidor_.EsquecerPedidos();
        auto agora = std::make_unique<Lancado>(pasta_);
        if (anterior) esperarFim();
        ASSERT_NE(agora->EsperarJanela(), nullptr);
        ASSERT_TRUE(Esperar(20s, [&] { return !servidor_.Pedidos("b.bin").empty(); }));
        clique = std::chrono::steady_clock::now();
        Clicar(GetDlgItem(agora->janela, kBotaoFechar));
        anterior = std::move(agora);
    }
    esperarFim();
}

// Faults: the topmost launcher is woken instead of the folder's; a mutex that another right level made counts as none.
TEST_F(Fim, OutroInicioAcordaOLauncherDaPasta) {
    SECURITY_ATTRIBUTES ninguem{sizeof ninguem, nullptr, FALSE};
    ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:", SDDL_REVISION_1, &ninguem.lpSecurityDescriptor,
                                                         nullptr);
    HandleKernel mutex(CreateMutexW(&ninguem, FALSE, NomeDaInstancia(pasta_.Caminho()).c_str()));
    LocalFree(ninguem.lpSecurityDescriptor);
    {
        InstanciaUnica outra(pasta_.Caminho());
        EXPECT_FALSE(outra.Possui());
        Interface ui;
        const PastaTemporaria vizinha;
        vizinha.Escrever("Launcher.emu", Selado(servidor_.Url()));
        Lancado vizinho(vizinha);
        ASSERT_NE(vizinho.EsperarJanela(), nullptr);
        ShowWindow(ui.Janela(), SW_MINIMIZE);
        EXPECT_EQ(Lancado(pasta_).programa.Esperar(), 0);
        EXPECT_TRUE(Esperar(5s, [&] { return !IsIconic(ui.Janela()) && GetForegroundWindow() == ui.Janela(); }));
        EXPECT_EQ(JanelaDaInstancia(NomeDaInstancia(vizinha.Caminho())), vizinho.janela);
    }
    // The folder is to be had again once that launcher has gone.
    InstanciaUnica depois(pasta_.Caminho());
    mutex.Fechar();
    EXPECT_TRUE(depois.EsperarOuChamar(false));
}

// Fault: the end of the window takes the channel away over which the game confirms its token.
TEST_F(Fim, OApertoSobreviveAJanela) {
    PorJogo("esperar=1\nviver=10\n", false);
    for (const bool chamado : {false, true}) {
        std::filesystem::remove(pasta_ / "siga");
        std::filesystem::remove(pasta_ / "jogo_falso.log");
        Lancado l(pasta_);
        const HWND janela = l.EsperarJanela();
        // Clicks that come too early do nothing.
        ASSERT_TRUE(Esperar(20s, [&] {
            Clicar(GetDlgItem(janela, kBotaoConectar));
            return pasta_.Ler("jogo_falso.log").find("api ") != std::string::npos;
        }));
        EXPECT_NE(IsWindowVisible(janela), FALSE);  // as the option asks
        PostMessageW(janela, WM_CLOSE, 0, 0);
        EXPECT_TRUE(Esperar(5s, [&] { return IsWindowVisible(janela) == FALSE; }));
        ASSERT_NE(IsWindow(janela), FALSE);
        if (chamado) {
            EXPECT_EQ(Lancado(pasta_).programa.Esperar(), 0);
            EXPECT_TRUE(Esperar(5s, [&] { return IsWindowVisible(janela) != FALSE; }));
            PostMessageW(janela, WM_CLOSE, 0, 0);
        } else {
            pasta_.Escrever("siga", "");
        }
        EXPECT_EQ(l.programa.Esperar(10'000), 0);
        EXPECT_EQ(QuantasLinhas("Lançamento: anti-hack confirmou o token"), chamado ? 0 : 1);
        pasta_.Escrever("siga", "");
    }
}

// Faults: the session's end is not seen from a loop of the system's, or ends nothing there; the log's last line comes
// after the message, when the process may be gone.
TEST_F(Fim, ASessaoAcabaDeDentroDeUmMenuEDeUmArrasto) {
    std::ptrdiff_t fins = 0;
    for (const DWORD laco : {DWORD{GUI_INMENUMODE}, DWORD{GUI_INMOVESIZE}}) {
        Interface ui;
        // Again where a click comes before its window is on the screen.
        EXPECT_TRUE(Esperar(20s, [&] {
            const HWND opcoes = FindWindowW(kClasseDasOpcoes, nullptr);
            if (laco == GUI_INMOVESIZE) {
                SetCursorPos(NaTela(ui.Janela()).left + 200, NaTela(ui.Janela()).top + 10);
                mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
                mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
                mouse_event(MOUSEEVENTF_MOVE, 30, 20, 0, 0);
            } else if (opcoes == nullptr) {
                PostMessageW(ui.Janela(), WM_COMMAND, kBotaoOpcoes, 0);
            } else {
                PostMessageW(GetDlgItem(opcoes, kListaEfeitos), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
            }
            return Esperar(1s, [&] {
                GUITHREADINFO info{.cbSize = sizeof info};
                GetGUIThreadInfo(GetWindowThreadProcessId(ui.Janela(), nullptr), &info);
                return (info.flags & laco) != 0;
            });
        }));
        EXPECT_NE(SendMessageW(ui.Janela(), WM_QUERYENDSESSION, 0, 0), 0);
        SendMessageW(ui.Janela(), WM_ENDSESSION, FALSE, 0);
        EXPECT_EQ(QuantasLinhas("ZuLauncher encerrado (código 0)"), fins);
        SendMessageW(ui.Janela(), WM_ENDSESSION, TRUE, 0);
        EXPECT_EQ(QuantasLinhas("ZuLauncher encerrado (código 0)"), ++fins);
        EXPECT_EQ(ui.EsperarFim(10s), 0);
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
        EsperarRepouso();
    }
}

// Faults: a run that nobody watches waits in a box; the player is told nothing. (Without windows: the system's test.)
TEST_F(Fim, ConfiguracaoRecusadaComCaixaSoDianteDoJogador) {
    std::filesystem::remove(pasta_ / "Launcher.emu");
    EXPECT_EQ(Fotografar("fotos"), 2);
    Lancado recusado(pasta_);
    EXPECT_EQ(TextoDaCaixa(),
              "A configuração do launcher não pôde ser lida.\n\nLauncher.emu não encontrado na pasta do jogo.\n\nO "
              "Launcher.emu é gerado pela equipe do servidor e não pode ser editado. Reinstale o cliente ou peça o "
              "Launcher.emu atual à equipe do servidor.");
    PostMessageW(CaixaDeMensagem(), WM_CLOSE, 0, 0);
    EXPECT_EQ(recusado.programa.Esperar(), 2);
}

// Beside a launcher that has the folder, and in a folder with DLLs of the names that a window needs.
TEST_F(Fim, CapturaAoLadoDoDonoSoFotografaENaoCarregaDllPlantada) {
    PorJogo("relatorio=so_vulkan\n", true);
    const InstanciaUnica dono(pasta_.Caminho());
    for (const char* dll : {"gdiplus.dll", "dwmapi.dll", "windowscodecs.dll", "uxtheme.dll"})
        pasta_.Escrever(dll, "não é uma DLL");
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_EQ(Fotografar("fotos/novas"), 0);
    EXPECT_GT(std::chrono::steady_clock::now() - inicio, 2500ms);  // the windows are given their time
    EXPECT_EQ(Fotografar("Zu.exe"), 1);                            // no folder
    EXPECT_EQ(QuantasLinhas("Captura principal.png: FALHOU"), 1);
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);
    EXPECT_FALSE(pasta_.Tem("Config") || pasta_.Tem("a.bin"));
}

// Faults: a message box stands alone on the screen while the game starts, or holds up the start that was asked for.
TEST_F(Fim, CaixaDeMensagemFechaComOLauncherENaoAtrasaOInicio) {
    PorJogo("demora=1500\nesperar=1\nviver=10\n", true);
    ConfigLauncher config = ObterConfig();
    config.urlUpdate = "http://127.0.0.1:1/";
    for (const bool sozinho : {false, true}) {
        config.jogar = sozinho;
        DefinirConfig(config);
        Interface ui;
        const bool caixa = Esperar(20s, [&] { return CaixaDeMensagem() != nullptr || ui.Terminou(); });
        EXPECT_EQ(caixa && !ui.Terminou(), !sozinho);
        if (!sozinho) SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
        EXPECT_TRUE(Esperar(5s, [] { return CaixaDeMensagem() == nullptr; }));
        pasta_.Escrever("siga", "");
        EXPECT_EQ(ui.EsperarFim(10s), 0);
        EXPECT_TRUE(Esperar(5s, [this] { return !JogoAberto(pasta_.Caminho()); }));
    }
    EXPECT_EQ(QuantasLinhas("Lançamento: anti-hack confirmou o token"), 2);
}

}  // namespace
}  // namespace zu::launcher

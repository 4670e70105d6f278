// The main window through the real interface run, driven by messages as the system and the player send them.
#include "tests/suporte/janelas.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

class Principal : public ComServidor {
 protected:
    [[nodiscard]] bool Logou(const std::string& inicio) const { return QuantasLinhas(inicio) > 0; }
    // Up to date, and the window knows it.
    bool EsperarPronto(const Interface& ui) const {
        return Esperar(10s, [&] {
            return Logou("[update] Atualização concluída") && !ObterControlador().Atualizando() &&
                   ui.Habilitado(kBotaoConectar);
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

// Faults: the bars change in the record and not on the screen, or both show one value.
TEST_F(Principal, BarrasNaTelaEBotoesEmCadaFase) {
    // Half of the second file arrives, and the other a good while later.
    constexpr std::size_t kMetade = 1 << 20;
    const std::string conteudo = Bytes(2 * kMetade);
    Publicar({{"a.bin", conteudo}, {"b.bin", conteudo}});
    servidor_.Definir("b.bin",
                      [&](const Pedido&) { return Resposta{.corpo = conteudo, .bloco = kMetade, .pausa = 3s}; });
    PorJogo("", true);
    Interface ui;
    ASSERT_NE(ui.Janela(), nullptr);
    EXPECT_TRUE(Esperar(10s, [&] {
        return ui.Barras() == std::pair(75, 50) &&
               LerTela(ui.Janela()) ==
                   "Zu Launcher\nZU | TORVAL 97 C+\n75%\nRegistrar\n50%\n(Opções) | (Conectar) | Fechar";
    })) << LerTela(ui.Janela());
    SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
    EXPECT_FALSE(ObterControlador().AbrindoJogo());
    EXPECT_EQ(ui.Fechar(), 0);
    EXPECT_TRUE(Esperar(20s, [] { return !ObterControlador().Atualizando(); }));
    EXPECT_FALSE(pasta_.Tem("b.bin"));
}

// Fault: a key that is still held down, from a window above, plays or closes.
TEST_F(Principal, ProntaAbreOJogoEFecha) {
    PorJogo("viver=300\nrelatorio=so_vulkan\n", true);
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui));
    EXPECT_TRUE(Esperar(5s, [&] { return ui.Barras() == std::pair(100, 100); }));
    EXPECT_TRUE(ui.Habilitado(kBotaoOpcoes));
    EXPECT_TRUE(Esperar(5s, [] { return ObterRequisitos().concluido; }));
    // The player puts the interface back that does not run here; playing changes it again. Enter plays, whichever
    // control it goes to.
    OpcoesJogo opcoes;
    EXPECT_TRUE(Esperar(5s, [&] { return (opcoes = LerOpcoesJogo()).api == "vulkan"; }));
    opcoes.api = "d3d12";
    opcoes.fecharAoJogar = 1;
    GravarOpcoesJogo(opcoes);
    for (const int tecla : {VK_RETURN, VK_ESCAPE})
        Teclar(ui.Janela(), tecla, true);
    EXPECT_FALSE(Esperar(300ms, [&] { return ui.Terminou() || Logou("Jogo aberto"); }));
    Teclar(GetDlgItem(ui.Janela(), kBotaoFechar), VK_RETURN);
    EXPECT_TRUE(Esperar(5s, [&] { return IsWindowVisible(ui.Janela()) == FALSE; }));
    EXPECT_EQ(ui.EsperarFim(10s), 0);
    EXPECT_EQ(LerOpcoesJogo().api, "vulkan");
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
    const auto clicar = [&ui](int x) { SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(x, 10)); };
    clicar(10);
    EXPECT_NE(IsIconic(ui.Janela()), FALSE);
    ShowWindow(ui.Janela(), SW_RESTORE);
    clicar(300);
    Clicar(GetDlgItem(ui.Janela(), kBotaoConectar));
    EXPECT_EQ(TextoDaCaixa(), "não foi possível abrir o Zu.exe (erro 193)");
    EXPECT_NE(IsWindowVisible(ui.Janela()), FALSE);
    EXPECT_EQ(IsWindowEnabled(ui.Janela()), FALSE);
    // Only once.
    PostMessageW(CaixaDeMensagem(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(Esperar(5s, [] { return CaixaDeMensagem() == nullptr; }));
    EXPECT_FALSE(Esperar(500ms, [] { return CaixaDeMensagem() != nullptr; }));
    Teclar(ui.Janela(), VK_ESCAPE);
    EXPECT_EQ(ui.EsperarFim(5s), 0);
}

// Fault: the view has failed or is there, and the centre on the screen keeps what it showed before.
TEST_F(Principal, CentroNaTelaSemSiteSemRuntimeEComAVisao) {
    constexpr RECT kAcima{9, 49, 445, 352};
    constexpr RECT kLinhaDaFalha{9, 352, 445, 374};
    ComSite(pasta_.Caminho(), L"", {L"--sem-cef"});
    std::unique_ptr<Superficie> logo;
    {
        Interface ui;
        EXPECT_TRUE(Esperar(5s, [&] {
            logo = std::make_unique<Superficie>(ui.Janela());
            return logo->Em(226, 150) >> 16 > 60;
        }));
    }
    EXPECT_FALSE(Logou("WebView2"));
    ComSite(pasta_.Caminho(), L"");
    {
        Interface ui;
        EXPECT_TRUE(Esperar(5s, [&] { return Superficie(ui.Janela()).Diferentes(*logo, kLinhaDaFalha) > 50; }));
        EXPECT_EQ(Superficie(ui.Janela()).Diferentes(*logo, kAcima), 0);
        EXPECT_NE(LerTela(ui.Janela()).find("\nNão foi possível abrir o site.\n"), std::string::npos);
    }
    ComSite(kPastaBin / "runtime_falso", L"");
    RuntimeFalso().Comecar({});
    Interface ui;
    EXPECT_TRUE(Esperar(5s, [&] { return Superficie(ui.Janela()).Provar("226,150=080406 20,60=080406").empty(); }));
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
    std::string chamadas;
    ui.NaThread([&] {
        falso.Ocorrer(Ocorrencia::kNavigationCompleted);
        const std::size_t antes = std::string(falso.Chamadas()).size();
        ShowWindow(ui.Janela(), SW_SHOWMINNOACTIVE);
        ShowWindow(ui.Janela(), SW_RESTORE);
        SetWindowPos(ui.Janela(), nullptr, -3000, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        chamadas = std::string(falso.Chamadas()).substr(antes);
    });
    const std::size_t escondida = chamadas.find("put_IsVisible 0");
    EXPECT_NE(escondida, std::string::npos) << chamadas;
    EXPECT_NE(chamadas.find("put_IsVisible 1", escondida), std::string::npos) << chamadas;
    EXPECT_NE(chamadas.find("NotifyParentWindowPositionChanged"), std::string::npos) << chamadas;
    // No window is seen, none takes what the player is doing away from him.
    EXPECT_TRUE(Esperar(30s, [&] {
        for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico}) {
            const HWND janela = FindWindowW(classe, nullptr);
            EXPECT_TRUE(NaTela(janela).right <= 0 && (janela == nullptr || janela != GetForegroundWindow()));
            EXPECT_TRUE(janela == nullptr || (GetWindowLongPtrW(janela, GWL_EXSTYLE) & WS_EX_NOACTIVATE) != 0);
        }
        return ui.Terminou();
    }));
    EXPECT_EQ(ui.Fechar(), 0);
    EXPECT_TRUE(Logou("Captura: o DWM não entregou o quadro do site; fica o desenho GDI"));
    for (const std::string foto : {"principal.png", "opcoes.png", "requisitos.png", "diagnostico.png"}) {
        EXPECT_TRUE(Logou("Captura " + foto + ": gravada"));
        EXPECT_EQ(pasta_.Ler("fotos/" + foto).substr(1, 3), "PNG") << foto;
    }
    EXPECT_EQ(falso.Vivos() + falso.Faltas(), 0) << falso.Chamadas();
}

}  // namespace
}  // namespace zu::launcher

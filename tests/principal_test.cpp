// The main window through the real interface run, driven by messages as the system and the player send them.
#include <gtest/gtest.h>

#include <windows.h>

#include <bit>
#include <chrono>
#include <string>

#include "app/controlador.h"
#include "game/requisitos.h"
#include "tests/runtime_falso/controle.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/janelas.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/superficie.h"
#include "ui/estado_interface.h"
#include "ui/interface.h"
#include "ui/janela_principal.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using teste::Esperar;
using teste::Interface;
using teste::Perto;

class Principal : public teste::ComServidor {
 protected:
    [[nodiscard]] bool Logou(const std::string& inicio) const { return QuantasLinhas(inicio) > 0; }
    // Up to date, and the window knows it.
    bool EsperarPronto(const Interface& ui) const {
        return Esperar(10s, [&] {
            return Logou("[update] Atualização concluída") && !ObterControlador().Atualizando() &&
                   ui.Habilitado(kBotaoConectar);
        });
    }
    static void ComSite(const std::filesystem::path& programas, const std::wstring& captura) {
        SetEnvironmentVariableW(L"ProgramFiles(x86)", programas.c_str());
        ConfigLauncher config = ObterConfig();
        config.urlSite = "http://site.example/";
        config.captura = captura;
        DefinirConfig(config);
    }
    // Whether the line of the site that failed stands in the centre.
    static bool DizQueOSiteFalhou(const teste::Superficie& s) {
        int claros = 0;
        for (int x = 9; x < 445; ++x) {
            for (int y = 352; y < 374; ++y)
                claros += Perto(s.Em(x, y), {200, 170, 120}, 30) ? 1 : 0;
        }
        return claros > 50;
    }
};

TEST_F(Principal, BarrasEBotoesEmCadaFase) {
    // The second file arrives in eight pieces, slowly.
    constexpr std::size_t kPedaco = 256 << 10;
    const std::string conteudo = teste::Bytes(8 * kPedaco);
    Publicar({{"a.bin", conteudo}, {"b.bin", conteudo}});
    servidor_.Definir("b.bin", [&](const teste::Pedido& pedido) {
        teste::Resposta r = teste::Servir(conteudo)(pedido);
        r.bloco = kPedaco;
        r.pausa = 200ms;
        return r;
    });
    PorJogo("", true);
    Interface ui;
    ASSERT_NE(ui.Janela(), nullptr);
    EXPECT_TRUE(Esperar(10s, [&] { return ui.Barras() == std::pair(75, 50); }));
    EXPECT_FALSE(ui.Habilitado(kBotaoOpcoes));
    EXPECT_FALSE(ui.Habilitado(kBotaoConectar));
    EXPECT_TRUE(ui.Habilitado(kBotaoRegistrar));
    EXPECT_TRUE(ui.Habilitado(kBotaoFechar));
    SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
    EXPECT_FALSE(ObterControlador().AbrindoJogo());
    EXPECT_EQ(ui.Fechar(), 0);
    EXPECT_TRUE(Esperar(10s, [] { return !ObterControlador().Atualizando(); }));
    EXPECT_FALSE(pasta_.Tem("b.bin"));
}

TEST_F(Principal, ProntaAbreOJogoEFecha) {
    PorJogo("viver=300\nrelatorio=so_vulkan\n", true);
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui));
    EXPECT_TRUE(Esperar(1s, [&] { return ui.Barras() == std::pair(100, 100); }));
    EXPECT_TRUE(ui.Habilitado(kBotaoOpcoes));
    EXPECT_TRUE(Esperar(5s, [] { return ObterRequisitos().concluido; }));
    // The player puts the interface back that does not run here; playing changes it again. Enter plays, whichever
    // control it goes to.
    OpcoesJogo opcoes = LerOpcoesJogo();
    Esperar(1s, [&] { return (opcoes = LerOpcoesJogo()).api == "vulkan"; });
    opcoes.api = "d3d12";
    opcoes.fecharAoJogar = 1;
    GravarOpcoesJogo(opcoes);
    PostMessageW(ui.Botao(kBotaoFechar), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(Esperar(5s, [&] { return IsWindowVisible(ui.Janela()) == FALSE; }));
    EXPECT_EQ(ui.EsperarFim(10s), 0);
    EXPECT_EQ(LerOpcoesJogo().api, "vulkan");
    EXPECT_TRUE(Logou("Jogo aberto: Zu.exe --api=vulkan"));
}

TEST_F(Principal, JogoQueNaoAbreTrazAJanelaDeVoltaComAMensagem) {
    pasta_.Escrever("Zu.exe", "isto não é um programa");
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui));
    ui.Clicar(kBotaoConectar);
    EXPECT_TRUE(Esperar(10s, [] { return CaixaDeMensagem() != nullptr; }));
    EXPECT_NE(IsWindowVisible(ui.Janela()), FALSE);
    EXPECT_EQ(IsWindowEnabled(ui.Janela()), FALSE);
    // Only once.
    PostMessageW(CaixaDeMensagem(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(Esperar(2s, [] { return CaixaDeMensagem() == nullptr; }));
    EXPECT_FALSE(Esperar(500ms, [] { return CaixaDeMensagem() != nullptr; }));
    PostMessageW(ui.Janela(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(ui.EsperarFim(2s), 0);
}

TEST_F(Principal, CaixasDaTiraEBotaoFechar) {
    {
        Interface ui;
        RECT r{};
        GetWindowRect(ui.Janela(), &r);
        EXPECT_EQ(std::pair(r.right - r.left, r.bottom - r.top), std::pair(LONG{454}, LONG{516}));
        RECT area{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        EXPECT_EQ(r.left, (area.left + area.right - 454) / 2);
        EXPECT_EQ(r.top, (area.top + area.bottom - 516) / 2);
        SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
        EXPECT_NE(IsIconic(ui.Janela()), FALSE);
        ASSERT_FALSE(ui.Terminou());
        ShowWindow(ui.Janela(), SW_RESTORE);
        SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(300, 10));
        SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(440, 10));
        EXPECT_EQ(ui.EsperarFim(2s), 0);
    }
    Interface outra;
    outra.Clicar(kBotaoFechar);
    EXPECT_EQ(outra.EsperarFim(2s), 0);
}

TEST_F(Principal, SemRuntimeDoSiteFicaALogoComAMensagem) {
    ComSite(pasta_.Caminho(), L"");
    Interface ui;
    EXPECT_TRUE(Esperar(5s, [&] { return Logou("WebView2: runtime não instalado; o centro mostra a logo"); }));
    teste::Superficie s(kLarguraPrincipal, kAlturaPrincipal);
    EXPECT_TRUE(Esperar(5s, [&] { return PrintWindow(ui.Janela(), s.Dc(), 0) && DizQueOSiteFalhou(s); }));
    EXPECT_GT(s.Em(226, 150).r, 60);  // the logo of the resources
    // Asked for without the site, it has none to fail.
    ConfigLauncher semSite = ObterConfig();
    semSite.argumentos = {L"--sem-cef"};
    DefinirConfig(semSite);
    EXPECT_TRUE(VisaoSite(AmbienteDaInterface()).Assentou());
}

// The stand-in draws no page, so nothing is ever composited: what the window draws itself is saved.
TEST_F(Principal, CapturaSemQuadroDoSite) {
    ComSite(teste::kPastaBin / "runtime_falso", (pasta_ / "fotos").native());
    const HMODULE dll =
        LoadLibraryW((teste::kPastaBin / "runtime_falso/Microsoft/EdgeWebView/Application/120.0.2210.91/EBWebView/x64/"
                                         "EmbeddedBrowserWebView.dll")
                         .make_preferred()
                         .c_str());
    auto& falso = *std::bit_cast<teste::ObterControle>(GetProcAddress(dll, "ControleDoRuntime"))();
    falso.Comecar({});
    Interface ui;
    // Off the screen, and there is no picture before the page is there or has failed.
    RECT r{};
    GetWindowRect(ui.Janela(), &r);
    EXPECT_LE(r.right, GetSystemMetrics(SM_XVIRTUALSCREEN) - 200);
    EXPECT_TRUE(Esperar(5s, [&] { return Logou("WebView2 120.0.2210.91"); }));
    EXPECT_FALSE(Esperar(4s, [&] { return pasta_.Tem("fotos/principal.png"); }));
    std::string chamadas;
    teste::NaThreadDe(ui.Janela(), [&] {
        falso.NavigationCompleted();
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
    EXPECT_EQ(ui.EsperarFim(30s), 0);
    EXPECT_TRUE(Logou("Captura: o DWM não entregou o quadro do site; fica o desenho GDI"));
    for (const std::string foto : {"principal.png", "opcoes.png", "requisitos.png", "diagnostico.png"}) {
        EXPECT_TRUE(Logou("Captura " + foto + ": gravada"));
        EXPECT_EQ(pasta_.Ler("fotos/" + foto).substr(1, 3), "PNG") << foto;
    }
    EXPECT_EQ(falso.Vivos(), 0) << falso.Chamadas();
    EXPECT_EQ(falso.Faltas(), 0) << falso.Chamadas();
}

// The program itself, beside a launcher that has the folder, and in a folder with DLLs of the names that a window
// needs.
TEST_F(Principal, CapturaAoLadoDoDonoSoFotografaENaoCarregaDllPlantada) {
    PorJogo("relatorio=so_vulkan\n", true);
    const InstanciaUnica dono(pasta_.Caminho());
    std::filesystem::copy_file(teste::kPastaBin / "ZuLauncher.exe", pasta_ / "ZuLauncher.exe");
    pasta_.Escrever("Launcher.emu", teste::Selado(servidor_.Url()));
    for (const char* dll : {"gdiplus.dll", "dwmapi.dll", "windowscodecs.dll", "uxtheme.dll"})
        pasta_.Escrever(dll, "não é uma DLL");
    EXPECT_EQ(teste::Programa(pasta_ / "ZuLauncher.exe", {L"--captura=" + (pasta_ / "fotos/novas").native()}).Esperar(),
              0);
    EXPECT_EQ(pasta_.Ler("fotos/novas/principal.png").substr(1, 3), "PNG");
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);
    EXPECT_FALSE(pasta_.Tem("Config") || pasta_.Tem("a.bin"));
}

TEST_F(Principal, CapturaQueNaoGravaAcabaComCodigo1) {
    pasta_.Escrever("fotos", "um arquivo onde devia haver uma pasta");
    ComSite(pasta_.Caminho(), (pasta_ / "fotos").native());
    Interface ui;
    EXPECT_EQ(ui.EsperarFim(30s), 1);
    EXPECT_TRUE(Logou("Captura principal.png: FALHOU"));
    EXPECT_EQ(pasta_.Ler("fotos"), "um arquivo onde devia haver uma pasta");
}

}  // namespace
}  // namespace zu::launcher

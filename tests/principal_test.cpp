// The main window through the real interface run, driven by messages as the system and the player send them.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <string>
#include <thread>

#include "app/controlador.h"
#include "game/requisitos.h"
#include "tests/runtime_falso/controle.h"
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
using teste::Perto;

// Until it is so, or `limite` has passed.
template <class Condicao>
bool Esperar(std::chrono::milliseconds limite, Condicao condicao) {
    const auto fim = std::chrono::steady_clock::now() + limite;
    while (!condicao()) {
        if (std::chrono::steady_clock::now() >= fim) return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

// One launcher with its window, on a thread of its own as in the program.
class Interface {
 public:
    Interface()
        : thread_([this] {
              CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
              codigo_ = RodarInterface();
              fim_ = true;
          }) {
        Esperar(10s, [this] {
            janela_ = FindWindowW(kClasseDaJanela, nullptr);
            return janela_ != nullptr && IsWindowVisible(janela_);
        });
    }
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;
    ~Interface() { Fechar(); }

    [[nodiscard]] HWND Janela() const { return janela_; }
    [[nodiscard]] HWND Botao(int id) const { return GetDlgItem(janela_, id); }
    [[nodiscard]] bool Habilitado(int id) const { return IsWindowEnabled(Botao(id)) != FALSE; }
    void Clicar(int id) const {
        SendMessageW(Botao(id), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(Botao(id), WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    }
    [[nodiscard]] std::pair<int, int> Barras() const {
        std::pair<int, int> barras;
        teste::NaThreadDe(janela_, [&] { barras = {ObterInterface().superior, ObterInterface().inferior}; });
        return barras;
    }
    [[nodiscard]] bool Terminou() const { return fim_; }
    // The run's code, once it has ended by itself; -1 when it does not.
    int EsperarFim(std::chrono::milliseconds limite) {
        if (!Esperar(limite, [this] { return fim_.load(); })) return -1;
        thread_.join();
        return codigo_;
    }
    int Fechar() {
        if (!thread_.joinable()) return codigo_;
        PostMessageW(janela_, WM_CLOSE, 0, 0);
        thread_.join();
        return codigo_;
    }

 private:
    HWND janela_ = nullptr;
    int codigo_ = -1;
    std::atomic<bool> fim_ = false;
    std::thread thread_;
};

class Principal : public testing::Test {
 protected:
    Principal() { teste::Configurar(pasta_.Caminho(), servidor_.Url()); }

    void Publicar(std::map<std::string, std::string> arquivos) {
        publicacao_.arquivos = std::move(arquivos);
        publicacao_.Servir(servidor_);
    }
    void PorJogo(const std::string& roteiro) {
        std::filesystem::copy_file(teste::kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
        pasta_.Escrever("jogo_falso.txt", roteiro);
    }
    [[nodiscard]] bool Logou(const std::string& texto) const {
        return teste::LerLog(pasta_).find(texto) != std::string::npos;
    }
    static bool NoStatus(StatusUpdate status) {
        return ObterControlador().Estado().status == status && !ObterControlador().Atualizando();
    }
    // Up to date, and the window knows it.
    bool EsperarPronto(const Interface& ui) const {
        return Esperar(10s, [&] {
            return Logou("[update] Atualização concluída") && NoStatus(StatusUpdate::kPronto) &&
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
    static HWND CaixaDeMensagem() { return FindWindowW(L"#32770", L"Zu Launcher"); }

    teste::PastaTemporaria pasta_;
    teste::Servidor servidor_;
    teste::Publicacao publicacao_;
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
    PorJogo("");
    Interface ui;
    ASSERT_NE(ui.Janela(), nullptr);
    EXPECT_TRUE(Esperar(10s, [&] { return ui.Barras() == std::pair(75, 50); }));
    EXPECT_FALSE(ui.Habilitado(kBotaoOpcoes));
    EXPECT_FALSE(ui.Habilitado(kBotaoConectar));
    EXPECT_TRUE(ui.Habilitado(kBotaoRegistrar));
    EXPECT_TRUE(ui.Habilitado(kBotaoFechar));
    SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
    EXPECT_FALSE(ObterControlador().AbrindoJogo());

    // Closing in the middle: quick, and nothing torn.
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_EQ(ui.Fechar(), 0);
    ObterControlador().Encerrar(2s);
    EXPECT_LT(std::chrono::steady_clock::now() - inicio, 2s);
    EXPECT_FALSE(ObterControlador().Atualizando());
    EXPECT_EQ(FindWindowW(kClasseDaJanela, nullptr), nullptr);
    EXPECT_FALSE(pasta_.Tem("b.bin"));
}

TEST_F(Principal, ProntaAbreOJogoEFecha) {
    Publicar({{"a.bin", "a"}});
    PorJogo("viver=300\nrelatorio=so_vulkan\n");
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
    Publicar({{"a.bin", "a"}});
    pasta_.Escrever("Zu.exe", "isto não é um programa");
    Interface ui;
    EXPECT_TRUE(EsperarPronto(ui));
    ui.Clicar(kBotaoConectar);
    EXPECT_TRUE(Esperar(10s, [] { return CaixaDeMensagem() != nullptr; }));
    EXPECT_NE(IsWindowVisible(ui.Janela()), FALSE);
    EXPECT_EQ(IsWindowEnabled(ui.Janela()), FALSE);
    // Only once, and the run can end while the box is open.
    const HWND caixa = CaixaDeMensagem();
    std::this_thread::sleep_for(500ms);
    EXPECT_EQ(CaixaDeMensagem(), caixa);
    PostMessageW(ui.Janela(), WM_CLOSE, 0, 0);
    EXPECT_EQ(ui.EsperarFim(2s), 0);
}

TEST_F(Principal, MensagemDoFimDaAtualizacaoUmaVez) {
    teste::Configurar(pasta_.Caminho(), "http://127.0.0.1:1/");
    Interface ui;
    EXPECT_TRUE(Esperar(15s, [] { return CaixaDeMensagem() != nullptr; }));
    EXPECT_TRUE(ui.Habilitado(kBotaoOpcoes));
    EXPECT_FALSE(ui.Habilitado(kBotaoConectar));  // no game to start
    PostMessageW(CaixaDeMensagem(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(Esperar(2s, [] { return CaixaDeMensagem() == nullptr; }));
    std::this_thread::sleep_for(400ms);
    EXPECT_EQ(CaixaDeMensagem(), nullptr);
    PostMessageW(ui.Janela(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(ui.EsperarFim(2s), 0);
}

TEST_F(Principal, CaixasDaTiraEBotaoFechar) {
    Publicar({{"a.bin", "a"}});
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
        // A second launcher for the same folder brings it back and ends.
        pasta_.Escrever("Launcher.emu", teste::Selado(servidor_.Url()));
        const InstanciaUnica instancia(pasta_.Caminho(), false, false);
        EXPECT_EQ(
            teste::Programa(teste::kPastaBin / "ZuLauncher.exe", {L"--cliente=" + pasta_.Caminho().native()}).Esperar(),
            0);
        EXPECT_TRUE(Esperar(2s, [&] { return !IsIconic(ui.Janela()) && GetForegroundWindow() == ui.Janela(); }));
        SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(300, 10));
        SendMessageW(ui.Janela(), WM_LBUTTONUP, 0, MAKELPARAM(440, 10));
        EXPECT_EQ(ui.EsperarFim(2s), 0);
    }
    Interface outra;
    outra.Clicar(kBotaoFechar);
    EXPECT_EQ(outra.EsperarFim(2s), 0);
}

TEST_F(Principal, SemRuntimeDoSiteFicaALogoComAMensagem) {
    Publicar({{"a.bin", "a"}});
    ComSite(pasta_.Caminho(), L"");
    Interface ui;
    EXPECT_TRUE(Esperar(5s, [&] { return Logou("WebView2: runtime não instalado; o centro mostra a logo"); }));
    teste::Superficie s(kLarguraPrincipal, kAlturaPrincipal);
    EXPECT_TRUE(Esperar(5s, [&] { return PrintWindow(ui.Janela(), s.Dc(), 0) && DizQueOSiteFalhou(s); }));
    EXPECT_GT(s.Em(226, 150).r, 60);
}

// The stand-in draws no page, so nothing is ever composited: what the window draws itself is saved.
TEST_F(Principal, CapturaSemQuadroDoSite) {
    Publicar({{"a.bin", "a"}});
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
    std::this_thread::sleep_for(4s);
    EXPECT_FALSE(pasta_.Tem("fotos/principal.png"));
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

// The program itself, in a folder with DLLs of the names that a window needs.
TEST_F(Principal, DllPlantadaNaoECarregadaPelaJanela) {
    Publicar({{"a.bin", "a"}});
    std::filesystem::copy_file(teste::kPastaBin / "ZuLauncher.exe", pasta_ / "ZuLauncher.exe");
    pasta_.Escrever("Launcher.emu", teste::Selado(servidor_.Url()));
    for (const char* dll : {"gdiplus.dll", "dwmapi.dll", "windowscodecs.dll", "uxtheme.dll"})
        pasta_.Escrever(dll, "não é uma DLL");
    EXPECT_EQ(teste::Programa(pasta_ / "ZuLauncher.exe", {L"--captura=" + (pasta_ / "fotos/novas").native()}).Esperar(),
              0);
    EXPECT_EQ(pasta_.Ler("fotos/novas/principal.png").substr(1, 3), "PNG");
}

TEST_F(Principal, CapturaQueNaoGravaAcabaComCodigo1) {
    Publicar({{"a.bin", "a"}});
    pasta_.Escrever("fotos", "um arquivo onde devia haver uma pasta");
    ComSite(pasta_.Caminho(), (pasta_ / "fotos").native());
    Interface ui;
    EXPECT_EQ(ui.EsperarFim(30s), 1);
    EXPECT_TRUE(Logou("Captura principal.png: FALHOU"));
    EXPECT_EQ(pasta_.Ler("fotos"), "um arquivo onde devia haver uma pasta");
}

TEST_F(Principal, PintaOQueMostraESoltaTudoOQuePegou) {
    Publicar({{"a.bin", "a"}});
    teste::Posses antes;
    for (int ciclo = 0; ciclo < 101; ++ciclo) {
        Interface ui;
        ASSERT_NE(ui.Janela(), nullptr) << ciclo;
        if (ciclo == 1) {
            teste::Superficie s(kLarguraPrincipal, kAlturaPrincipal);
            ASSERT_TRUE(PrintWindow(ui.Janela(), s.Dc(), 0));
            EXPECT_TRUE(Perto(s.Em(226, 450), {226, 226, 226}, 0));
            EXPECT_GT(s.Em(226, 150).r, 60);  // the logo of the resources
            RedrawWindow(ui.Janela(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            const teste::Posses p = teste::ContarPosses();
            for (int i = 0; i < 1000; ++i) {
                RedrawWindow(ui.Janela(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            }
            EXPECT_LE(teste::ContarPosses().gdi, p.gdi + 10);  // the pulse may be painting just then
        }
        ASSERT_EQ(ui.Fechar(), 0);
        ASSERT_TRUE(Esperar(5s, [] { return !ObterControlador().Atualizando(); }));
        if (ciclo == 2) antes = teste::ContarPosses();
    }
    const teste::Posses depois = teste::ContarPosses();
    EXPECT_LE(depois.gdi, antes.gdi + 2);
    EXPECT_LE(depois.user, antes.user + 2);
}

}  // namespace
}  // namespace zu::launcher

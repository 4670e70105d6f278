// How a launcher ends, hides and is woken: the real program beside others, and a run inside the system's own loops.
#include "tests/suporte/janelas.h"
#include "update/jogo_aberto.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

// The program, serving the folder that it lies in. Its name there is the one for which the tests' Wine is told that
// there is no window manager: else Wine waits two seconds for that one's answer as the window goes.
struct Lancado {
    explicit Lancado(const PastaTemporaria& pasta)
        : programa(Instalar(pasta / "testes_janela.exe")), nome(NomeDaInstancia(pasta.Caminho())) {}

    static std::filesystem::path Instalar(const std::filesystem::path& destino) {
        if (!std::filesystem::exists(destino)) copy_file(kPastaBin / "ZuLauncher.exe", destino);
        return destino;
    }

    // Its own window, once that is to be seen; null when it never is.
    HWND EsperarJanela() {
        Esperar(20s, [this] {
            janela = JanelaDaInstancia(nome);
            DWORD pid = 0;
            GetWindowThreadProcessId(janela, &pid);
            return pid == programa.Pid() && IsWindowVisible(janela);
        });
        return janela;
    }

    Programa programa;
    std::wstring nome;
    HWND janela = nullptr;
};

class Fim : public ComServidor {
 protected:
    Fim() { pasta_.Escrever("Launcher.emu", Selado(servidor_.Url())); }

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
        auto agora = std::make_unique<Lancado>(pasta_);
        if (anterior) esperarFim();
        ASSERT_NE(agora->EsperarJanela(), nullptr);
        servidor_.EsquecerPedidos();
        ASSERT_TRUE(Esperar(20s, [&] { return !servidor_.Pedidos("b.bin").empty(); }));
        clique = std::chrono::steady_clock::now();
        Clicar(GetDlgItem(agora->janela, kBotaoFechar));
        anterior = std::move(agora);
    }
    esperarFim();
}

// Faults: the topmost launcher is woken instead of the folder's; a mutex that another right level made counts as none.
TEST_F(Fim, OutroInicioAcordaOLauncherDaPasta) {
    ACL fechada{};
    SECURITY_DESCRIPTOR descritor{};
    SECURITY_ATTRIBUTES ninguem{sizeof ninguem, &descritor, FALSE};
    InitializeAcl(&fechada, sizeof fechada, ACL_REVISION);
    InitializeSecurityDescriptor(&descritor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descritor, TRUE, &fechada, FALSE);
    HandleKernel mutex(CreateMutexW(&ninguem, FALSE, NomeDaInstancia(pasta_.Caminho()).c_str()));
    ASSERT_TRUE(mutex);
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
TEST_F(Fim, ASessaoAcabaDeDentroDeCadaLaco) {
    const std::pair<const char*, std::function<bool(const Interface&)>> lacos[] = {
        {"menu",
         [&](const Interface& ui) {
             Esperar(10s, [&] { return ui.Habilitado(kBotaoOpcoes); });
             PostMessageW(ui.Janela(), WM_COMMAND, kBotaoOpcoes, 0);
             return Esperar(10s, [] {
                 const HWND opcoes = FindWindowW(kClasseDasOpcoes, nullptr);
                 if (!IsWindowVisible(opcoes)) return false;
                 PostMessageW(GetDlgItem(opcoes, kListaEfeitos), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
                 return Esperar(5s, [] { return FindWindowW(L"#32768", nullptr) != nullptr; });
             });
         }},
        {"arrasto",
         [](const Interface& ui) {
             // Again where the click comes before the window is on the screen.
             return Esperar(10s, [&] {
                 POINT tira{200, 10};
                 ClientToScreen(ui.Janela(), &tira);
                 mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
                 SetCursorPos(tira.x, tira.y);
                 mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
                 mouse_event(MOUSEEVENTF_MOVE, 30, 20, 0, 0);
                 return Esperar(1s, [thread = GetWindowThreadProcessId(ui.Janela(), nullptr)] {
                     GUITHREADINFO info{.cbSize = sizeof info};
                     return GetGUIThreadInfo(thread, &info) != 0 && (info.flags & GUI_INMOVESIZE) != 0;
                 });
             });
         }},
        {"caixa", [](const Interface&) { return Esperar(20s, [] { return CaixaDeMensagem() != nullptr; }); }},
    };
    std::ptrdiff_t fins = 0;
    for (const auto& [nome, entrar] : lacos) {
        SCOPED_TRACE(nome);
        if (std::string_view(nome) == "caixa") Configurar(pasta_.Caminho(), "http://127.0.0.1:1/");
        Interface ui;
        EXPECT_TRUE(entrar(ui));
        EXPECT_NE(SendMessageW(ui.Janela(), WM_QUERYENDSESSION, 0, 0), 0);
        SendMessageW(ui.Janela(), WM_ENDSESSION, FALSE, 0);
        EXPECT_EQ(QuantasLinhas("ZuLauncher encerrado (código 0)"), fins);
        SendMessageW(ui.Janela(), WM_ENDSESSION, TRUE, 0);
        EXPECT_EQ(QuantasLinhas("ZuLauncher encerrado (código 0)"), ++fins);
        EXPECT_EQ(ui.EsperarFim(10s), 0);
        mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
        EXPECT_TRUE(Esperar(10s, [] { return !ObterControlador().Atualizando(); }));
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
    EXPECT_EQ(pasta_.Ler("fotos/novas/principal.png").substr(1, 3), "PNG");
    EXPECT_EQ(Fotografar("Zu.exe"), 1);  // no folder
    EXPECT_EQ(QuantasLinhas("Captura principal.png: FALHOU"), 1);
    EXPECT_EQ(servidor_.QuantosPedidos(), 0U);
    EXPECT_FALSE(pasta_.Tem("Config") || pasta_.Tem("a.bin"));
}

// Faults: a message box stands alone on the screen while the game starts, or holds up the start that was asked for.
TEST_F(Fim, CaixaDeMensagemFechaComOLauncherENaoAtrasaOInicio) {
    PorJogo("demora=1500\nviver=10\n", true);
    ConfigLauncher config = ObterConfig();
    config.urlUpdate = "http://127.0.0.1:1/";
    for (const bool sozinho : {false, true}) {
        config.jogar = sozinho;
        DefinirConfig(config);
        Interface ui;
        const bool caixa = Esperar(20s, [&] { return CaixaDeMensagem() != nullptr || ui.Terminou(); });
        EXPECT_EQ(caixa && !ui.Terminou(), !sozinho);
        if (!sozinho) SendMessageW(ui.Janela(), WM_COMMAND, kBotaoConectar, 0);
        EXPECT_EQ(ui.EsperarFim(10s), 0);
        EXPECT_EQ(CaixaDeMensagem(), nullptr);
        EXPECT_TRUE(Esperar(5s, [this] { return !JogoAberto(pasta_.Caminho()); }));
    }
    EXPECT_EQ(QuantasLinhas("Lançamento: anti-hack confirmou o token"), 2);
}

}  // namespace
}  // namespace zu::launcher

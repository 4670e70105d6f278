// Options, requirements and diagnostics in their own loops, driven by messages as the player sends them.
#include "tests/suporte/janelas.h"
#include "tests/suporte/ini.h"
#include "tests/suporte/recusa.h"

static int janelasAteFaltar = -1;  // how many are made before one cannot be, controls too; -1: all are

ZU_DESVIAR(CreateWindowExW, [](auto... a) -> HWND {
    if (janelasAteFaltar-- != 0) return ZU_VERDADEIRA(L"user32", CreateWindowExW)(a...);
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
});

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

void Clicar(HWND janela, int id) {
    teste::Clicar(GetDlgItem(janela, id));
}
bool Mostra(HWND janela, const std::string& texto) {
    return LerTela(janela).find(texto) != std::string::npos;
}
// Whether the screen has what the window would draw now.
bool EmDia(HWND janela) {
    const Superficie antes(janela);
    RedrawWindow(janela, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    return antes.Diferentes(Superficie(janela)) == 0;
}
// GDI objects of this process, windows and menus.
int ContarPosses() {
    GdiFlush();
    int posses = 0;
    for (DWORD tipo = GR_GDIOBJECTS; tipo <= GR_USEROBJECTS; ++tipo)
        posses += static_cast<int>(GetGuiResources(GetCurrentProcess(), tipo));
    // Wine does not count, but finds a handle by its lower half.
    for (UINT_PTR i = posses == 0 ? 1 : 0x10000; i < 0x10000; ++i) {
        DWORD processo = 0;
        GetWindowThreadProcessId(reinterpret_cast<HWND>(i), &processo);
        posses += GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0 ? 1 : 0;
        posses += IsMenu(reinterpret_cast<HMENU>(i)) || processo == GetCurrentProcessId() ? 1 : 0;
    }
    return posses;
}

class Janelas : public ComDesenho {
 protected:
    Janelas() {
        Configurar(pasta_.Caminho(), "");
        std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
        Ui().principal = CriarPrincipal();
        ShowWindow(Ui().principal, SW_SHOW);
        Bombear(20ms);
    }
    ~Janelas() override {
        FecharTodas();
        DestroyWindow(Ui().principal);
        Bombear(20ms);
    }

    static void FecharTodas() {
        for (const HWND janela : {Ui().diagnostico, Ui().requisitos, Ui().opcoes})
            FecharModal(janela);
    }
    static HWND AbrirTodas() {
        AbrirOpcoes();
        AbrirRequisitos();
        return AbrirDiagnostico();
    }
    // The window's own loop on this thread, the player on another.
    static void Rodar(HWND janela, const std::function<void()>& jogar) {
        std::jthread jogador([&] {
            jogar();
            EXPECT_TRUE(Esperar(5s, [&] { return !IsWindow(janela); }));
            PostMessageW(janela, WM_CLOSE, 0, 0);
        });
        RodarModal(janela);
    }
    // The probe's answer, with that report of the game.
    void Diagnosticar(const std::string& relatorio) {
        pasta_.Escrever("jogo_falso.txt", "relatorio=" + relatorio);
        IniciarRequisitos();
        ASSERT_TRUE(Bombear(30s, [] { return ObterRequisitos().concluido; }));
    }

    static EstadoInterface& Ui() { return ObterInterface(); }

    PastaTemporaria pasta_{L"Pasta do Jogo ç"};
};

// Faults: a way out that stores, or "OK" that does not; a key that is still held down presses.
TEST_F(Janelas, OpcoesSoSeGravamComOk) {
    pasta_.Escrever("Config/Zu.ini", TextoDoIni());
    const std::tuple<UINT, WPARAM, LPARAM> saidas[] = {{WM_COMMAND, kBotaoCancelar, 0},
                                                       {WM_KEYDOWN, VK_ESCAPE, 0},
                                                       {WM_CLOSE, 0, 0},
                                                       {WM_LBUTTONUP, 0, MAKELPARAM(425, 10)},
                                                       {WM_KEYDOWN, VK_RETURN, 0}};
    for (const auto& [mensagem, wParam, lParam] : saidas) {
        EXPECT_EQ(pasta_.Ler("Config/Zu.ini"), TextoDoIni());
        const HWND h = AbrirOpcoes();
        Clicar(h, kCaixaVsync);
        for (const int tecla : {VK_RETURN, VK_ESCAPE})
            Teclar(GetDlgItem(h, kBotaoOk), tecla, true);
        PostMessageW(h, mensagem, wParam, lParam);
        RodarModal(h);
        EXPECT_NE(IsWindowEnabled(Ui().principal), FALSE);
    }
    EXPECT_EQ(pasta_.Ler("Config/Zu.ini"), TextoDoIni({.vsync = 0}));
}

// Faults: a label of another list, a control over another, a value of the file that is not what stands there.
TEST_F(Janelas, OpcoesNaTela) {
    pasta_.Escrever("jogo_falso.json", R"({"d3d12": false})");
    pasta_.Escrever("Config/Zu.ini", TextoDoIni({"Vulkan", 0, 0, 99, 1, 2, 0, 8, 1}));
    const HWND h = AbrirOpcoes();
    EXPECT_EQ(AbrirOpcoes(), h);
    EXPECT_EQ(IsWindowEnabled(Ui().principal), FALSE);
    EXPECT_EQ(Superficie(h).Provar("60,10=CBD4E0 10,13=C1CBD9 0,21=D4D4D4~0"), "");
    EXPECT_EQ(Superficie(Ui().principal).Provar("60,0=EBEBEB~20 60,10=D5D5D5 60,19=C1C1C1"), "");
    const auto esperar = [h](const char* d3d12, const char* vulkan) {
        static constexpr char kTela[] =
            "Opções\nAPI gráfica\n[DirectX 12] | Vulkan\n[{}] | {}\nTela\nModo de tela: | Tela cheia\n"
            "Resolução: | (1920 x 1080)\n(Janela sem borda) | [Sincronia vertical (VSync)]\nLimite de FPS: | 60\n"
            "Som e geral\nEfeitos sonoros: | Mudo\nMúsica: | 8\nIdioma: | Português (Brasil)\n"
            "[Fechar o launcher ao jogar]\nAs opções gráficas finas (DLSS, ray tracing, sombras, água...) ficam no "
            "jogo: ESC → Opções. Tudo é gravado no mesmo Config\\Zu.ini do jogo.\nRequisitos | OK | Cancelar";
        const std::string tela = Formatar(kTela, d3d12, vulkan);
        EXPECT_TRUE(Bombear(5s, [&] { return LerTela(h) == tela; })) << LerTela(h);
        EXPECT_TRUE(EmDia(GetDlgItem(h, kOpcaoD3d12)));
    };
    esperar("Verificando o computador...", "Verificando o computador...");
    Diagnosticar("nenhum");
    esperar("Sem diagnóstico (Zu.exe não respondeu)", "Sem diagnóstico (Zu.exe não respondeu)");
    Diagnosticar("so_d3d12");
    esperar("Roda neste PC", "vulkan-1.dll não encontrada");
    Diagnosticar("copiar");
    esperar("Não roda neste PC", "Roda neste PC");
    // What is disabled is passed over, as is the tile that is not chosen.
    const HWND primeira = GetDlgItem(h, kOpcaoD3d12);
    EXPECT_TRUE(Bombear(5s, [&] { return SetFocus(primeira), GetFocus() == primeira; }));
    for (const int id : {kListaModo, kCaixaVsync}) {
        Janela::TomarTecla({.hwnd = h, .message = WM_KEYDOWN, .wParam = VK_TAB});
        EXPECT_EQ(GetDlgCtrlID(GetFocus()), id);
    }
    UpdateWindow(GetDlgItem(h, kListaModo));
    SendMessageW(GetDlgItem(h, kListaModo), WM_KEYDOWN, VK_UP, 0);
    EXPECT_TRUE(EmDia(GetDlgItem(h, kListaModo)));
    // Each is hit where it begins, also where two check boxes share their middle.
    for (HWND filho = GetWindow(h, GW_CHILD); filho != nullptr; filho = GetWindow(filho, GW_HWNDNEXT)) {
        const RECT r = NaTela(filho);
        EXPECT_EQ(WindowFromPoint({r.left + 10, (r.top + r.bottom) / 2}), filho) << GetDlgCtrlID(filho);
    }
    FecharModal(h);
    // Over a main window at the edge, all of the window stays to be seen.
    SetWindowPos(Ui().principal, nullptr, -300, -200, 0, 0, SWP_NOSIZE);
    EXPECT_EQ(std::pair(NaTela(AbrirOpcoes()).left, NaTela(Ui().opcoes).top), std::pair(LONG{0}, LONG{0}));
}

// The report comes while the window is open: what "OK" writes is what runs here, unless the player has chosen
// otherwise.
TEST_F(Janelas, ApiCorrigidaComAJanelaAberta) {
    for (const bool escolheu : {false, true}) {
        GravarOpcoesJogo({.api = escolheu ? "vulkan" : "d3d12"});
        RenovarRequisitos();
        const HWND h = AbrirOpcoes();
        if (escolheu) Clicar(h, kOpcaoD3d12);
        EXPECT_TRUE(EmDia(GetDlgItem(h, kOpcaoVulkan)));
        Diagnosticar("so_vulkan");
        EXPECT_TRUE(Bombear(5s, [&] { return Mostra(h, escolheu ? "Roda neste PC\n" : "[Roda neste PC]\n"); }));
        Clicar(h, kBotaoOk);
        EXPECT_EQ(LerOpcoesJogo().api, escolheu ? "d3d12" : "vulkan");
        FecharModal(h);
    }
}

// Faults: a row with another's value, a button that opens before its time, a window that leaves the screen.
TEST_F(Janelas, RequisitosEDiagnosticoDeCadaRelatorio) {
    const std::string fim = " | Abrir pasta do jogo | Ver registro do launcher";
    const std::string pasta = "\nPasta do jogo: | " + ParaUtf8(pasta_.Caminho().native()) + "\n";
    const struct {
        const char* relatorio;
        std::string requisitos, diagnostico;  // parts of what they show
        const char* marcas = "";              // of the verdict and of the rows in the requirements
    } casos[] = {
        {"so_vulkan",
         "\nSistema | Windows 11 Pro 64 bits (22631)\nPlaca de vídeo | NVIDIA GeForce RTX 3060 (12 GiB)\n"
         "DirectX 12 | Recurso 11_0: o jogo precisa do 12_0\nVulkan 1.3 | Vulkan 1.3.277\n"
         "O que fazer: | Escolha o Vulkan em Opções." +
             pasta + "Diagnóstico completo" + fim,
         "Diagnóstico completo\nDiagnóstico completo (Zu.exe --requisitos-json):\n"
         "Item | Seu computador | Mínimo | Situação | O que fazer\n"
         "Sistema | Windows 11 Pro 64 bits (22631) | Windows 10 64 bits (19041) | OK\n",
         "24,42=D9940C 24,96=269440 24,116=269440 24,136=C2241A 24,156=269440"},
        {"avisos", "\nO que fazer: | Atualize o driver da placa de vídeo.\nFeche outros programas.\n",
         "\nEspaço em disco | 214 GiB | 20 GiB | OK\nFeche outros programas.\nCopiar relatório | Fechar | Abrir site "
         "do driver"},
        {"sessenta", "", "\nItem 20 | valor | nenhum | OK\n"},
        {"copiar", "\nPlaca de vídeo | não informado\nDirectX 12 | Não roda neste PC\nVulkan 1.3 | Roda neste PC\n",
         "\nO relatório do jogo não traz itens.",
         "24,42=269440 24,82=828282 24,86=E8E8E8 24,90=DEDEDE 24,122=C2241A 24,142=269440 24,236=606060 24,251=E2E2E2"},
        {"nenhum", "", "\n(Copiar relatório) | Fechar"}};
    pasta_.Escrever("jogo_falso.json", R"({"d3d12": false})");
    EXPECT_EQ(AbrirRequisitos(), nullptr);
    const RECT area = AreaDeTrabalho();
    for (const auto& [relatorio, requisitos, diagnostico, marcas] : casos) {
        SCOPED_TRACE(relatorio);
        RenovarRequisitos();
        AbrirOpcoes();
        const HWND h = AbrirRequisitos();
        EXPECT_EQ(LerTela(h),
                  "Requisitos\nVerificando os requisitos do computador..." + pasta + "(Diagnóstico completo)" + fim);
        Diagnosticar(relatorio);
        EXPECT_TRUE(Bombear(5s, [&] { return Mostra(h, "\nDiagnóstico completo" + fim); }));
        EXPECT_TRUE(Mostra(h, requisitos)) << LerTela(h);
        EXPECT_EQ(Superficie(h).Provar(marcas), "");
        const RECT p = NaTela(Ui().principal);
        EXPECT_EQ(std::pair(NaTela(h).left, NaTela(h).top), std::pair(p.left - 23, p.top + 108));

        const HWND d = AbrirDiagnostico();
        EXPECT_TRUE(Mostra(d, diagnostico)) << LerTela(d);
        EXPECT_EQ(Superficie(d).Provar(ObterRequisitos().items.empty() ? "473,88=E2E2E2" : "473,88=FFFFFF"), "");
        EXPECT_EQ(std::pair(NaTela(d).left, NaTela(d).right), std::pair(p.left - 163, p.left - 163 + 780));
        EXPECT_TRUE(NaTela(d).top >= area.top && NaTela(d).bottom <= area.bottom);
        EXPECT_EQ(TamanhoDe(d).cy == area.bottom - area.top, std::string_view(relatorio) == "sessenta");
        FecharTodas();
    }
}

TEST_F(Janelas, TabelaMaiorQueATelaRola) {
    Diagnosticar("sessenta");
    const HWND d = AbrirTodas();
    const int altura = static_cast<int>(TamanhoDe(d).cy);
    const auto tecla = [d](int codigo) { SendMessageW(d, WM_KEYDOWN, static_cast<WPARAM>(codigo), 0); };
    const auto mouse = [d](UINT mensagem, int y) { SendMessageW(d, mensagem, MK_LBUTTON, MAKELPARAM(760, y)); };
    const auto roda = [d](int giro) { SendMessageW(d, WM_MOUSEWHEEL, MAKEWPARAM(0, giro), 0); };
    const Superficie inicio(d);
    tecla(VK_END);
    const Superficie fim(d);
    // Each way up and down; nothing goes past the ends, and a notch is what its parts are together.
    const std::pair<const Superficie*, std::function<void()>> caminhos[] = {
        {&inicio, [&] { tecla(VK_HOME); }},
        {&fim, [&] { roda(-12'000); }},
        {&inicio, [&] { roda(12'000); }},
        {&fim, [&] { tecla(VK_NEXT), tecla(VK_NEXT), tecla(VK_NEXT); }},
        {&inicio, [&] { tecla(VK_PRIOR), tecla(VK_PRIOR), tecla(VK_PRIOR); }},
        {&inicio, [&] { tecla(VK_DOWN), roda(-120), roda(59), roda(61), tecla(VK_UP); }},
        {&fim, [&] { mouse(WM_LBUTTONDOWN, 90), mouse(WM_MOUSEMOVE, altura), mouse(WM_LBUTTONUP, altura); }},
        {&fim, [&] { mouse(WM_MOUSEMOVE, 90); }},
        {&inicio, [&] { mouse(WM_LBUTTONDOWN, 78), mouse(WM_LBUTTONUP, 78); }}};
    for (int caminho = 0; const auto& [esperada, ir] : caminhos) {
        SCOPED_TRACE(caminho++);
        ir();
        EXPECT_EQ(Superficie(d).Diferentes(*esperada), 0);
    }
    tecla(VK_DOWN);
    EXPECT_GT(std::min(fim.Diferentes(inicio), Superficie(d).Diferentes(inicio)), 1000);
}

// Faults: advice at another row than the one it is about; line ends of two kinds on the clipboard.
TEST_F(Janelas, ConselhosNasLinhasDeQueFalamECopiaComCrLf) {
    pasta_.Escrever("jogo_falso.json", R"({"relatorio": "ção\r\nItem | a\n[X] Memória | v | m | s\n)"
                                       R"([X] Memória de vídeo | v | m | s\n[X] Placa de vídeo | v | m | s\n)"
                                       R"([X] Driver de vídeo | v | m | s\n[OK] DirectX 12 | v | m | s\n)"
                                       R"([X] Rede | v | m | s\n[!] Disco | v | m | s\n\nO que fazer:\n)"
                                       R"(- Atualize o DRIVER da placa.\n- A memória de vídeo é pouca.\n)"
                                       R"(- Ponha memória.\n- Sem placares.\n- Troque a placa.\n- A placa aquece.\n)"
                                       R"(- Veja o DirectX.\n- Sem parede.\n"})");
    Diagnosticar("copiar");
    const HWND d = AbrirTodas();
    EXPECT_TRUE(Mostra(d,
                       "\nMemória | v | m | s | Ponha memória.\n"
                       "Memória de vídeo | v | m | s | A memória de vídeo é pouca.\n"
                       "Placa de vídeo | v | m | s | Troque a placa.\nA placa aquece.\n"
                       "Driver de vídeo | v | m | s | Atualize o DRIVER da placa.\nDirectX 12 | v | m | s\n"
                       "Rede | v | m | s\nDisco | v | m | s\nSem placares.\nVeja o DirectX.\nSem parede.\n"))
        << LerTela(d);
    Clicar(d, kBotaoCopiar);
    ASSERT_TRUE(GetClipboardOwner() == d && OpenClipboard(nullptr));
    const HANDLE bloco = GetClipboardData(CF_UNICODETEXT);
    const std::string copia = ParaUtf8(static_cast<const wchar_t*>(GlobalLock(bloco)));
    GlobalUnlock(bloco);
    CloseClipboard();
    EXPECT_TRUE(copia.starts_with("ção\r\nItem | a\r\n[X] Memória") && copia.ends_with("Sem parede.\r\n")) << copia;
    EXPECT_FALSE(Bombear(1500ms, [d] { return !Mostra(d, "\nCopiado! | Fechar"); }));
    EXPECT_TRUE(Bombear(5s, [d] { return Mostra(d, "\nCopiar relatório | Fechar"); }));
    EXPECT_TRUE(EmDia(GetDlgItem(d, kBotaoCopiar)));
}

// Faults: a window closes under another; a launcher that is hidden and asked to the front stays hidden, or comes with
// another window in front.
TEST_F(Janelas, UmaSobreAOutraEFimPorDentro) {
    Diagnosticar("bom");
    // Only the topmost takes what the player does.
    const auto esperarNaFrente = [](HWND EstadoInterface::*qual) {
        EXPECT_TRUE(Esperar(5s, [&] { return JanelaDaFrente() == Ui().*qual && IsWindowVisible(Ui().*qual); }));
        for (const HWND janela : {Ui().principal, Ui().opcoes, Ui().requisitos, Ui().diagnostico})
            EXPECT_EQ(janela != nullptr && IsWindowEnabled(janela), janela == JanelaDaFrente());
    };
    const auto entrar = [&] {
        PostMessageW(Ui().opcoes, WM_COMMAND, kBotaoRequisitos, 0);
        esperarNaFrente(&EstadoInterface::requisitos);
        Teclar(Ui().requisitos, VK_RETURN);
        Teclar(Ui().principal, VK_ESCAPE);
        PostMessageW(Ui().requisitos, WM_COMMAND, kBotaoDiagnostico, 0);
        esperarNaFrente(&EstadoInterface::diagnostico);
    };
    Rodar(AbrirOpcoes(), [&] {
        entrar();
        MostrarLauncher(false);
        // One that the player has closed comes for another start of it, not for a game that does not open.
        Ui().fechamento = Fechamento::kAdiado;
        MostrarLauncher(true);
        EXPECT_EQ(IsWindowVisible(Ui().principal), FALSE);
        SendMessageW(Ui().principal, MSG_TRAZER_FRENTE, 0, 0);
        for (const HWND janela : {Ui().principal, Ui().opcoes, Ui().requisitos, Ui().diagnostico})
            EXPECT_NE(IsWindowVisible(janela), FALSE);
        EXPECT_EQ(GetForegroundWindow(), Ui().diagnostico);
        PostMessageW(Ui().opcoes, WM_CLOSE, 0, 0);
        for (const auto abaixo :
             {&EstadoInterface::requisitos, &EstadoInterface::opcoes, &EstadoInterface::principal}) {
            SendMessageW(JanelaDaFrente(), WM_CLOSE, 0, 0);
            esperarNaFrente(abaixo);
        }
    });
    Rodar(AbrirOpcoes(), [&] {
        entrar();
        PostThreadMessageW(GetWindowThreadProcessId(Ui().principal, nullptr), WM_QUIT, 0, 0);
    });
    EXPECT_TRUE(Ui().quit && JanelaDaFrente() == Ui().principal &&
                !JanelaDaInstancia(NomeDaInstancia(ObterConfig().pastaJogo)));
}

// Faults: a window or a control that could not be made is used all the same; the window under the one that did not come
// stays disabled.
TEST_F(Janelas, SemUmDosControlesNaoHaJanela) {
    Diagnosticar("avisos");
    std::size_t linhas = LinhasDoLog(pasta_).size();
    HWND dona = Ui().principal;
    for (HWND (*const abrir)() : {&AbrirOpcoes, &AbrirRequisitos, &AbrirDiagnostico}) {
        HWND janela = nullptr;
        for (int feitas = 0; janela == nullptr; ++feitas) {
            EXPECT_TRUE(IsWindowEnabled(dona) && LinhasDoLog(pasta_).size() == linhas++);
            janelasAteFaltar = feitas;
            janela = abrir();
        }
        janelasAteFaltar = -1;
        dona = janela;
        --linhas;
    }
    EXPECT_EQ(LinhasDoLog(pasta_).back(), "Interface: CreateWindow falhou (8)");
}

TEST_F(Janelas, AbrirEFecharNaoGuardaNada) {
    Diagnosticar("avisos");
    DefinirConfig({.pastaJogo = pasta_.Caminho(), .urlRegistro = "https://registro/"});
    AbrirTodas();
    Clicar(Ui().principal, kBotaoRegistrar);
    Clicar(Ui().requisitos, kBotaoRegistro);
    Clicar(Ui().diagnostico, kBotaoAcao);
    EXPECT_EQ(std::exchange(abertos, {}), L"https://registro/\n" + (pasta_ / "ZuLauncher.log").native() +
                                              L"\nhttps://www.nvidia.com/pt-br/drivers/\n");
    int antes = 0;
    for (int ciclo = 0; ciclo < 40; ++ciclo) {
        AbrirTodas();
        for (const HWND janela : {Ui().diagnostico, Ui().requisitos, Ui().opcoes, Ui().principal})
            RedrawWindow(janela, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        FecharTodas();
        Bombear(1ms);
        if (ciclo == 3) antes = ContarPosses();
    }
    EXPECT_LE(ContarPosses(), antes);
}

}  // namespace
}  // namespace zu::launcher

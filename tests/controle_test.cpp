// The controls through their real window procedure.
#include "tests/suporte/janelas.h"
#include "ui/janelas/molde.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;

constexpr int kId = 77;

class Controle : public ComDesenho {
 protected:
    using Avisos = std::vector<std::pair<int, int>>;  // ids and codes

    Controle() {
        pai_ = CriarJanela([this](UINT mensagem, WPARAM wParam) {
            if (mensagem == WM_COMMAND) avisos_.emplace_back(LOWORD(wParam), HIWORD(wParam));
        });
        SetForegroundWindow(pai_);
        Bombear(50ms);
    }
    ~Controle() override { DestroyWindow(pai_); }

    HWND Criar(TipoControle kind) { return CriarControle(pai_, kind, kId, L"Um", {20, 20, 80, 28}); }
    Avisos Tomar() { return std::exchange(avisos_, {}); }

    static void Apertar(HWND h) { SendMessageW(h, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5)); }
    static void Mover(HWND h, int x, int y) { SendMessageW(h, WM_MOUSEMOVE, 0, MAKELPARAM(x, y)); }
    static void Soltar(HWND h, int x = 5, int y = 5) { SendMessageW(h, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    // Whether the animation's timer was running; it is not afterwards.
    static bool Animava(HWND h) { return KillTimer(h, 1) != FALSE; }
    // How many steps the animation makes until it stops, each looked at. The pointer is not really there; what the
    // system says of it does not count.
    static int Animar(
        HWND h, bool hover, const std::function<void(int)>& olhar = [](int) {}) {
        for (int passos = 0;; olhar(++passos)) {
            SetTimer(h, 1, 10'000, nullptr);
            EstadoDo(h).hover = hover;
            SendMessageW(h, WM_TIMER, 1, 0);
            if (!Animava(h)) return passos;
        }
    }

    HWND pai_ = nullptr;
    Avisos avisos_;
};

TEST_F(Controle, CliqueSoQuandoSoltoDentro) {
    const HWND h = Criar(TipoControle::Botao);
    Apertar(h);
    EXPECT_EQ(GetCapture(), h);
    Soltar(h);
    EXPECT_EQ(Tomar(), (Avisos{{kId, 0}}));
    EXPECT_NE(GetCapture(), h);

    Apertar(h);
    for (const int x : {5, -3, 7, 200}) {
        Mover(h, x, 5);
        EXPECT_EQ(EstadoDo(h).hover, x == 5 || x == 7) << x;
    }
    Soltar(h, 200, 5);
    EXPECT_FALSE(EstadoDo(h).hover || EstadoDo(h).pressed);
    Soltar(h);  // never pressed
    // Another window takes the mouse away.
    Apertar(h);
    SetCapture(pai_);
    ReleaseCapture();
    Soltar(h);
    Clicar(Criar(TipoControle::DoDono));
    EXPECT_EQ(Tomar(), Avisos{});
    // A disabled window gets no word of the pointer leaving it.
    Mover(h, 5, 5);
    Habilitar(h, false);
    EXPECT_FALSE(EstadoDo(h).hover || IsWindowEnabled(h));
}

TEST_F(Controle, CaixaAlternaEOpcaoSoMarca) {
    for (const TipoControle kind : {TipoControle::Caixa, TipoControle::Opcao}) {
        const HWND h = Criar(kind);
        for (const bool esperado : {true, kind == TipoControle::Opcao, true}) {
            Clicar(h);
            EXPECT_EQ(EstadoDo(h).checked, esperado);
        }
        Apertar(h);
        Soltar(h, -1, 0);
        EXPECT_TRUE(EstadoDo(h).checked);
        EXPECT_EQ(Tomar(), Avisos(3, {kId, 0}));
    }
}

// Faults: a choice of the same item is told, a click on the open list opens it again.
TEST_F(Controle, ListaPeloTecladoEComUmCliqueNelaMesma) {
    const std::vector<std::wstring> items{L"640 x 480", L"800 x 600", L"1024 x 768"};
    for (const auto& [pedida, mostrada] : {std::pair(-4, 0), {1, 1}, {9, 2}})
        EXPECT_EQ(EstadoDo(CriarLista(pai_, 1, 0, items, pedida)).selected, mostrada);
    EXPECT_EQ(EstadoDo(CriarLista(pai_, 1, 0, {}, 3)).selected, 0);

    const HWND lista = CriarLista(pai_, kId, 40, items, 1);
    const struct {
        std::vector<int> teclas;
        int escolhida;
        Avisos avisos;
    } casos[] = {{{VK_DOWN, VK_RETURN}, 0, {{kId, 1}}},
                 {{VK_UP, VK_RETURN}, 2, {{kId, 1}}},
                 {{VK_UP, VK_RETURN}, 2, {}},
                 {{VK_DOWN, VK_ESCAPE}, 2, {}}};
    for (const auto& [teclas, escolhida, avisos] : casos) {
        // The menu's own loop takes the keys, so they have to be there when it opens.
        for (const int tecla : teclas)
            Teclar(lista, tecla);
        Apertar(lista);
        EXPECT_FALSE(EstadoDo(lista).pressed || EstadoDo(lista).hover);
        EXPECT_EQ(EstadoDo(lista).selected, escolhida);
        EXPECT_EQ(Tomar(), avisos);
    }
    POINT nela{5, 5};
    ClientToScreen(lista, &nela);
    SetCursorPos(nela.x, nela.y);
    PostMessageW(lista, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    Apertar(lista);
    MSG clique{};
    EXPECT_FALSE(PeekMessageW(&clique, lista, WM_LBUTTONDOWN, WM_LBUTTONDOWN, PM_REMOVE));
}

TEST_F(Controle, AnimacaoParaQuandoNadaSeMove) {
    for (const TipoControle kind : {TipoControle::Botao, TipoControle::Opcao}) {
        const HWND h = Criar(kind);
        EstadoControle& estado = EstadoDo(h);
        EXPECT_FALSE(Animava(h));
        Mover(h, 5, 5);
        // 1/0.035 and 1/0.12 steps, the last one stops it; 1/0.08 down.
        EXPECT_EQ(Animar(h, true, [&](int n) { EXPECT_NEAR(estado.hover_level, std::min(1.0, 0.12 * n), 1e-4); }),
                  kind == TipoControle::Botao ? 28 : 8);
        EXPECT_EQ(estado.flash, -1);
        SendMessageW(h, WM_MOUSELEAVE, 0, 0);
        EXPECT_TRUE(Animava(h));
        EXPECT_EQ(Animar(h, false), 12);
        EXPECT_EQ(estado.hover_level, 0);
    }
    const HWND caixa = Criar(TipoControle::Caixa);
    Mover(caixa, 5, 5);
    EXPECT_FALSE(Animava(caixa));
    // The primary button's pulse never stops, and wraps.
    const HWND principal = Criar(TipoControle::BotaoPrincipal);
    float fase = 0;
    for (int passos = 0; passos < 100; ++passos) {
        EXPECT_TRUE(Animava(principal));
        SendMessageW(principal, WM_TIMER, 1, 0);
        fase += passos == 69 ? 0.09F - 6.2832F : 0.09F;
        EXPECT_NEAR(EstadoDo(principal).phase, fase, 1e-3);
    }
}

TEST(Molde, TiraArrastaForaDasCaixas) {
    constexpr int kLargura = 300;
    const HWND janela = CriarJanela([](UINT, WPARAM) {});
    for (const bool comMinimizar : {true, false}) {
        CaixaDaTira sobre = CaixaDaTira::kNenhuma;
        bool tratada = false;
        const auto molde = [&](UINT mensagem, POINT p) {
            return MoldeJanela(janela, mensagem, MAKELPARAM(p.x, p.y), kLargura, comMinimizar, sobre, tratada);
        };
        for (int ponto = 0; ponto < 24 * kLargura; ++ponto) {
            const POINT p{ponto % kLargura, ponto / kLargura};
            const bool fechar = p.x >= kLargura - 20 && p.x < kLargura - 5 && p.y >= 3 && p.y < 18;
            const bool minimizar = comMinimizar && p.x >= 3 && p.x < 19 && p.y >= 2 && p.y < 18;
            POINT tela = p;
            ClientToScreen(janela, &tela);
            const LRESULT r = molde(WM_NCHITTEST, tela);
            ASSERT_EQ(tratada && r == HTCAPTION, p.y < 20 && !fechar && !minimizar) << p.x << "," << p.y;
            molde(WM_MOUSEMOVE, p);
            ASSERT_EQ(static_cast<int>(sobre), fechar ? 1 : minimizar ? 0 : -1) << p.x << "," << p.y;
            molde(WM_MOUSELEAVE, {});
            ASSERT_TRUE(tratada && sobre == CaixaDaTira::kNenhuma);
        }
    }
    DestroyWindow(janela);
}

}  // namespace
}  // namespace zu::launcher

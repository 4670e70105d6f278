// The controls through their real window procedure, and their pictures.
#include "tests/suporte/janelas.h"
#include "ui/controles/pintor_controle.h"
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
        WNDCLASSW classe{};
        classe.lpfnWndProc = [](HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
            if (mensagem == WM_COMMAND) avisos_.emplace_back(LOWORD(wParam), HIWORD(wParam));
            return DefWindowProcW(janela, mensagem, wParam, lParam);
        };
        classe.lpszClassName = L"ZuTeste";
        RegisterClassW(&classe);
        pai_ = CreateWindowW(L"ZuTeste", L"", WS_POPUP | WS_VISIBLE, 100, 100, 500, 300, nullptr, nullptr, nullptr,
                             nullptr);
        SetForegroundWindow(pai_);
        Bombear(50ms);
    }
    ~Controle() override { DestroyWindow(pai_); }

    HWND Criar(TipoControle kind) { return CriarControle(pai_, kind, kId, L"Um", {20, 20, 80, 28}); }
    static Avisos Tomar() { return std::exchange(avisos_, {}); }

    static void Apertar(HWND h) { SendMessageW(h, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5)); }
    static void Mover(HWND h, int x, int y) { SendMessageW(h, WM_MOUSEMOVE, 0, MAKELPARAM(x, y)); }
    static void Soltar(HWND h, int x = 5, int y = 5) { SendMessageW(h, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    // Whether the animation's timer was running; it is not afterwards.
    static bool Animava(HWND h) { return KillTimer(h, 1) != FALSE; }
    // How many steps the animation makes until it stops. The pointer is not really there; what the system says of it
    // does not count.
    static int Animar(HWND h, bool hover) {
        for (int passos = 0;; ++passos) {
            SetTimer(h, 1, 10'000, nullptr);
            EstadoDo(h).hover = hover;
            SendMessageW(h, WM_TIMER, 1, 0);
            if (!Animava(h)) return passos;
        }
    }

    HWND pai_ = nullptr;
    static inline Avisos avisos_;
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
    Clicar(Criar(TipoControle::DoDono));
    // Another window takes the mouse away.
    Apertar(h);
    SetCapture(pai_);
    ReleaseCapture();
    Soltar(h);
    EXPECT_EQ(Tomar(), Avisos{});
    // A disabled window gets no word of the pointer leaving it.
    Mover(h, 5, 5);
    Habilitar(h, false);
    EXPECT_FALSE(EstadoDo(h).hover || IsWindowEnabled(h));
    EXPECT_EQ(GetFocus(), pai_);
}

// Faults: a choice of the same item is told, a click on the open list opens it again.
TEST_F(Controle, ListaPeloTecladoEComUmCliqueNelaMesma) {
    const std::vector<std::wstring> items{L"640 x 480", L"800 x 600", L"1024 x 768"};
    const HWND lista = CriarLista(pai_, kId, 40, items, 1);
    // What opens it, the keys then, and what is told. The last opens nothing.
    const std::tuple<UINT, WPARAM, std::vector<int>, Avisos> casos[] = {
        {WM_SYSKEYDOWN, VK_DOWN, {VK_UP, VK_RETURN}, {{kId, 1}}},
        {WM_LBUTTONDOWN, MK_LBUTTON, {VK_UP, VK_RETURN}, {}},
        {WM_LBUTTONDOWN, MK_LBUTTON, {VK_DOWN, VK_ESCAPE}, {}},
        {WM_KEYDOWN, VK_END, {}, {}}};
    for (const auto& [mensagem, wParam, teclas, avisos] : casos) {
        // The menu's own loop takes the keys, so they have to be there when it opens.
        for (const int tecla : teclas)
            Teclar(lista, tecla);
        SendMessageW(lista, mensagem, wParam, MAKELPARAM(5, 5));
        EXPECT_FALSE(EstadoDo(lista).pressed || EstadoDo(lista).hover);
        EXPECT_EQ(EstadoDo(lista).selected, 2);
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
        EXPECT_EQ(Animar(h, true), kind == TipoControle::Botao ? 28 : 8);
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
    for (int passos = 0; passos < 100; ++passos) {
        EXPECT_TRUE(Animava(principal));
        SendMessageW(principal, WM_TIMER, 1, 0);
    }
    EXPECT_NEAR(EstadoDo(principal).phase, 100 * 0.09 - 6.2832, 1e-3);
}

// A control's picture.
class Retrato : public Superficie {
 public:
    explicit Retrato(const EstadoControle& estado, bool habilitado = true, const wchar_t* legenda = L"Conectar")
        : Superficie({120, 28}) {
        PintarControle(Dc(), {0, 0, 120, 28}, {estado, legenda, habilitado}, FontesDaInterface());
    }
};

TEST_F(Controle, CadaUmSeVeEmCadaEstadoEGuardaOTextoDentro) {
    for (const TipoControle kind : {TipoControle::Botao, TipoControle::BotaoPrincipal, TipoControle::Caixa,
                                    TipoControle::Lista, TipoControle::Opcao}) {
        SCOPED_TRACE(static_cast<unsigned>(kind));
        const bool caixa = kind == TipoControle::Caixa;
        std::vector<std::unique_ptr<Retrato>> vistos;
        for (const auto& [habilitado, hover, pressed, checked] : {std::array{true, false, false, false},
                                                                  {false, false, false, false},
                                                                  {true, true, false, false},
                                                                  {true, true, true, false},
                                                                  {true, false, false, true}}) {
            if (checked && !caixa && kind != TipoControle::Opcao) continue;
            EstadoControle estado{kind, hover, pressed, checked};
            estado.hover_level = hover ? 1 : 0;
            estado.items = {L"1024 x 768"};
            auto agora = std::make_unique<Retrato>(estado, habilitado);
            for (const auto& antes : vistos)
                EXPECT_GT(agora->Diferentes(*antes), caixa ? 10 : 40);
            vistos.push_back(std::move(agora));
        }
        // Beyond the face's corners lies the colour that the face is shaded around.
        EXPECT_EQ(vistos[0]->Provar(caixa ? "" : "0,0=E2E2E2~0"), "");

        const wchar_t* const longa = L"Uma legenda comprida demais para o lugar que ela tem no controle";
        const Retrato sem({.kind = kind, .items = {L""}}, true, L"");
        const Retrato com({.kind = kind, .items = {longa}, .text = kind == TipoControle::Opcao ? longa : L""}, true,
                          longa);
        const int fim = kind == TipoControle::Lista ? 100 : 119;
        EXPECT_GT(com.Diferentes(sem), 20);
        EXPECT_EQ(com.Diferentes(sem, {fim, 0, 999, 999}) + com.Diferentes(sem, {0, 0, 1, 999}), 0);
    }
}

// The outline's middle at the left, where only the glow and the pulse change; and a control that its owner draws.
TEST_F(Controle, BrilhoPulsoEDesenhoDoDono) {
    const auto pintor = [](HDC dc, const RECT& r, const EstadoControle&) {
        PreencherRetangulo(dc, {r.left + 5, 5, r.right, 6}, RGB(4, 5, 6));
    };
    const std::pair<EstadoControle, const char*> casos[] = {
        {{.hover_level = 1}, "1,14=B2C7EC~8 60,24=B4BCCB~2"},
        {{.kind = TipoControle::BotaoPrincipal}, "1,14=EBD8B2~8"},
        {{.kind = TipoControle::BotaoPrincipal, .phase = 1.5708F}, "1,14=EFD39B~8"},
        {{.kind = TipoControle::BotaoPrincipal, .phase = 4.7124F}, "1,14=E7DDC8~8"},
        {{.kind = TipoControle::DoDono, .pintor = pintor}, "5,5=040506~0 4,5=E2E2E2~0"}};
    for (const auto& [estado, prova] : casos)
        EXPECT_EQ(Retrato(estado).Provar(prova), "");
}

TEST_F(Controle, TiraDaJanelaArrastaForaDasCaixas) {
    constexpr int kLargura = 300;
    for (const bool comMinimizar : {true, false}) {
        CaixaDaTira sobre = CaixaDaTira::kNenhuma;
        bool tratada = false;
        const auto molde = [&](UINT mensagem, int x, int y) {
            return MoldeJanela(pai_, mensagem, MAKELPARAM(x, y), kLargura, comMinimizar, sobre, tratada);
        };
        for (int ponto = 0; ponto < 24 * kLargura; ++ponto) {
            const int x = ponto % kLargura;
            const int y = ponto / kLargura;
            const bool fechar = x >= kLargura - 20 && x < kLargura - 5 && y >= 3 && y < 18;
            const bool minimizar = comMinimizar && x >= 3 && x < 19 && y >= 2 && y < 18;
            const LRESULT r = molde(WM_NCHITTEST, NaTela(pai_).left + x, NaTela(pai_).top + y);
            ASSERT_EQ(tratada && r == HTCAPTION, y < 20 && !fechar && !minimizar) << x << "," << y;
            molde(WM_MOUSEMOVE, x, y);
            ASSERT_EQ(static_cast<int>(sobre), fechar ? 1 : minimizar ? 0 : -1) << x << "," << y;
        }
        molde(WM_MOUSEMOVE, kLargura - 10, 10);
        molde(WM_MOUSELEAVE, 0, 0);
        EXPECT_TRUE(tratada && sobre == CaixaDaTira::kNenhuma);
    }
}

}  // namespace
}  // namespace zu::launcher

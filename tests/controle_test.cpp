// The controls through their real window procedure.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "tests/suporte/janelas.h"
#include "ui/controle.h"
#include "ui/molde.h"

namespace zu::launcher {
namespace {

using teste::Bombear;
using teste::Clicar;

constexpr int kId = 77;

class Controle : public testing::Test {
 protected:
    using Aviso = std::pair<int, int>;  // id and code

    Controle() {
        IniciarDesenho();
        DefinirFontesDaInterface(CriarFontes());
        RegistrarControle(GetModuleHandleW(nullptr));
        pai_ = teste::CriarJanela([this](UINT mensagem, WPARAM wParam, LPARAM) {
            if (mensagem == WM_COMMAND) avisos_.emplace_back(LOWORD(wParam), HIWORD(wParam));
        });
        SetForegroundWindow(pai_);
        Bombear(std::chrono::milliseconds(50));
    }
    ~Controle() override {
        DestroyWindow(pai_);
        DefinirFontesDaInterface({});
        EncerrarDesenho();
    }

    HWND Criar(TipoControle kind) { return CriarControle(pai_, kind, kId, L"Um", {20, 20, 80, 28}); }
    std::vector<Aviso> Avisos() { return std::exchange(avisos_, {}); }

    static void Apertar(HWND h) { SendMessageW(h, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5)); }
    static void Mover(HWND h, int x, int y) { SendMessageW(h, WM_MOUSEMOVE, 0, MAKELPARAM(x, y)); }
    static void Soltar(HWND h, int x = 5, int y = 5) { SendMessageW(h, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); }
    static void Passo(HWND h) { SendMessageW(h, WM_TIMER, 1, 0); }
    // Whether the animation's timer was running; it is not afterwards.
    static bool Animava(HWND h) { return KillTimer(h, 1) != FALSE; }

    HWND pai_ = nullptr;
    std::vector<Aviso> avisos_;
};

TEST_F(Controle, CliqueSoQuandoSoltoDentro) {
    const HWND h = Criar(TipoControle::Botao);
    Apertar(h);
    EXPECT_EQ(GetCapture(), h);
    Soltar(h);
    EXPECT_EQ(Avisos(), (std::vector<Aviso>{{kId, 0}}));
    EXPECT_NE(GetCapture(), h);

    Apertar(h);
    Mover(h, 5, 5);
    Mover(h, -3, 5);
    EXPECT_FALSE(EstadoDo(h).hover);
    Mover(h, 5, 5);
    EXPECT_TRUE(EstadoDo(h).hover);
    Mover(h, 5, 200);
    Soltar(h, 5, 200);
    EXPECT_FALSE(EstadoDo(h).hover);
    EXPECT_FALSE(EstadoDo(h).pressed);
    Soltar(h);  // never pressed
    EXPECT_TRUE(Avisos().empty());

    // Another window takes the mouse away.
    Apertar(h);
    SetCapture(pai_);
    ReleaseCapture();
    Soltar(h);
    EXPECT_TRUE(Avisos().empty());

    Clicar(Criar(TipoControle::DoDono));
    EXPECT_TRUE(Avisos().empty());
}

TEST_F(Controle, CaixaAlternaEOpcaoSoMarca) {
    const HWND caixa = Criar(TipoControle::Caixa);
    const HWND opcao = Criar(TipoControle::Opcao);
    for (const bool esperado : {true, false, true}) {
        Clicar(caixa);
        EXPECT_EQ(EstadoDo(caixa).checked, esperado);
        Clicar(opcao);
        EXPECT_TRUE(EstadoDo(opcao).checked);
    }
    Apertar(caixa);
    Soltar(caixa, -1, 0);
    EXPECT_TRUE(EstadoDo(caixa).checked);
    EXPECT_EQ(Avisos().size(), 6U);
}

TEST_F(Controle, ListaPeloTeclado) {
    EXPECT_EQ(EstadoDo(CriarLista(pai_, 1, 0, {L"a", L"b"}, -4)).selected, 0);
    EXPECT_EQ(EstadoDo(CriarLista(pai_, 2, 0, {L"a", L"b"}, 9)).selected, 1);
    EXPECT_EQ(EstadoDo(CriarLista(pai_, 3, 0, {}, 3)).selected, 0);

    const HWND lista = CriarLista(pai_, kId, 40, {L"640 x 480", L"800 x 600", L"1024 x 768"}, 1);
    RECT r{};
    GetWindowRect(lista, &r);
    MapWindowPoints(nullptr, pai_, reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ(std::pair(r.left, r.top), std::pair(LONG{160}, LONG{40}));
    EXPECT_EQ(std::pair(r.right - r.left, r.bottom - r.top), std::pair(LONG{266}, LONG{22}));
    EXPECT_EQ(EstadoDo(lista).fill, RGB(212, 212, 212));

    const auto escolher = [&](std::initializer_list<WPARAM> teclas) {
        // The menu's own loop takes the keys, so they have to be there when it opens.
        for (const WPARAM tecla : teclas)
            PostMessageW(lista, WM_KEYDOWN, tecla, 0);
        Apertar(lista);
        EXPECT_FALSE(EstadoDo(lista).pressed);
        EXPECT_FALSE(EstadoDo(lista).hover);
        return EstadoDo(lista).selected;
    };
    EXPECT_EQ(escolher({VK_DOWN, VK_RETURN}), 0);
    EXPECT_EQ(Avisos(), (std::vector<Aviso>{{kId, 1}}));
    EXPECT_EQ(escolher({VK_UP, VK_RETURN}), 2);
    EXPECT_EQ(Avisos(), (std::vector<Aviso>{{kId, 1}}));
    EXPECT_EQ(escolher({VK_UP, VK_RETURN}), 2);  // the same again
    EXPECT_EQ(escolher({VK_DOWN, VK_ESCAPE}), 2);
    EXPECT_TRUE(Avisos().empty());
}

TEST_F(Controle, AnimacaoParaQuandoNadaSeMove) {
    for (const TipoControle kind : {TipoControle::Botao, TipoControle::Opcao}) {
        const HWND h = Criar(kind);
        EstadoControle& estado = EstadoDo(h);
        EXPECT_FALSE(Animava(h));
        EXPECT_EQ(estado.flash, -1);
        Mover(h, 5, 5);
        EXPECT_EQ(estado.flash, kind == TipoControle::Botao ? 0 : -1);
        int passos = 0;
        // The pointer is not really there; what the system says of it does not count.
        for (; SetTimer(h, 1, 10'000, nullptr), estado.hover = true, Passo(h), Animava(h); ++passos) {
            EXPECT_NEAR(estado.hover_level, std::min(1.0, 0.12 * (passos + 1)), 1e-4);
        }
        EXPECT_EQ(passos, kind == TipoControle::Botao ? 28 : 8);  // 1/0.035 and 1/0.12 steps, the last one stops it
        EXPECT_EQ(estado.flash, -1);
        EXPECT_EQ(estado.hover_level, 1);

        SendMessageW(h, WM_MOUSELEAVE, 0, 0);
        EXPECT_TRUE(Animava(h));
        for (passos = 0; SetTimer(h, 1, 10'000, nullptr), Passo(h), Animava(h); ++passos) {
        }
        EXPECT_EQ(passos, 12);
        EXPECT_EQ(estado.hover_level, 0);
    }
    for (const TipoControle kind : {TipoControle::Caixa, TipoControle::Lista}) {
        const HWND h = Criar(kind);
        Mover(h, 5, 5);
        EXPECT_FALSE(Animava(h));
    }
    const HWND principal = Criar(TipoControle::BotaoPrincipal);
    EXPECT_TRUE(Animava(principal));
    float soma = 0;
    for (int i = 0; i < 100; ++i) {
        const float antes = EstadoDo(principal).phase;
        Passo(principal);
        EXPECT_TRUE(Animava(principal));
        soma += EstadoDo(principal).phase > antes ? EstadoDo(principal).phase - antes : 0;
        EXPECT_LE(EstadoDo(principal).phase, 6.2832F);
    }
    EXPECT_NEAR(soma, 99 * 0.09, 0.01);  // one of the steps wrapped
}

TEST_F(Controle, DesabilitadoPerdeOBrilho) {
    const HWND h = Criar(TipoControle::Botao);
    Mover(h, 5, 5);
    Habilitar(h, false);
    EXPECT_FALSE(EstadoDo(h).hover);
    EXPECT_EQ(IsWindowEnabled(h), FALSE);
    Habilitar(h, true);
    EXPECT_NE(IsWindowEnabled(h), FALSE);
}

TEST(Molde, TiraArrastaForaDasCaixas) {
    constexpr int kLargura = 300;
    const HWND janela = teste::CriarJanela([](UINT, WPARAM, LPARAM) {});
    for (const bool comMinimizar : {true, false}) {
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < kLargura; ++x) {
                const bool fechar = x >= kLargura - 20 && x < kLargura - 5 && y >= 3 && y < 18;
                const bool minimizar = comMinimizar && x >= 3 && x < 19 && y >= 2 && y < 18;
                POINT tela{x, y};
                ClientToScreen(janela, &tela);
                CaixaDaTira sobre = CaixaDaTira::kNenhuma;
                bool tratada = false;
                const LRESULT r = MoldeJanela(janela, WM_NCHITTEST, MAKELPARAM(tela.x, tela.y), kLargura, comMinimizar,
                                              sobre, tratada);
                ASSERT_EQ(tratada && r == HTCAPTION, y < 20 && !fechar && !minimizar) << x << "," << y;
                MoldeJanela(janela, WM_MOUSEMOVE, MAKELPARAM(x, y), kLargura, comMinimizar, sobre, tratada);
                ASSERT_TRUE(tratada);
                ASSERT_EQ(static_cast<int>(sobre), fechar ? 1 : minimizar ? 0 : -1) << x << "," << y;
                MoldeJanela(janela, WM_MOUSELEAVE, 0, kLargura, comMinimizar, sobre, tratada);
                ASSERT_EQ(sobre, CaixaDaTira::kNenhuma);
            }
        }
    }
    DestroyWindow(janela);
}

}  // namespace
}  // namespace zu::launcher

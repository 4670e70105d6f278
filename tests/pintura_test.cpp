// Every painter's picture against the numbers it is made from.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "tests/suporte/superficie.h"
#include "ui/pintor_controle.h"
#include "ui/pintor_principal.h"

namespace zu::launcher {
namespace {

using teste::Cor;
using teste::De;
using teste::Entre;
using teste::Perto;
using teste::Superficie;

class Pintura : public testing::Test {
 protected:
    Pintura() { IniciarDesenho(); }
    ~Pintura() override {
        fontes_ = {};
        EncerrarDesenho();
    }

    Fontes fontes_ = CriarFontes();
};

TEST_F(Pintura, MolduraEmCadaEstado) {
    for (const bool ativa : {true, false}) {
        for (const CaixaDaTira sobre : {CaixaDaTira::kNenhuma, CaixaDaTira::kMinimizar, CaixaDaTira::kFechar}) {
            Superficie s(300, 200);
            PintarMoldura(s.Dc(), {300, 200, L"", ativa, true, sobre}, fontes_);
            const COLORREF alto = ativa ? RGB(238, 242, 248) : RGB(236, 236, 236);
            const COLORREF baixo = ativa ? RGB(172, 184, 202) : RGB(192, 192, 192);
            EXPECT_TRUE(Perto(s.Em(60, 0), Entre(alto, baixo, 0.5 / 20)));
            EXPECT_TRUE(Perto(s.Em(60, 10), Entre(alto, baixo, 10.5 / 20)));
            EXPECT_TRUE(Perto(s.Em(60, 19), Entre(alto, baixo, 19.5 / 20)));
            EXPECT_TRUE(Perto(s.Em(0, 20), De(RGB(110, 110, 110)), 0));
            EXPECT_TRUE(Perto(s.Em(0, 21), De(RGB(212, 212, 212)), 0));
            EXPECT_TRUE(Perto(s.Em(299, 199), De(RGB(212, 212, 212)), 0));

            const COLORREF sinal = sobre == CaixaDaTira::kMinimizar ? RGB(30, 60, 170) : RGB(0, 0, 0);
            EXPECT_TRUE(Perto(s.Em(10, 13), De(sinal), 0));
            const bool quente = sobre == CaixaDaTira::kFechar;
            const COLORREF fechar = quente ? RGB(236, 150, 130) : RGB(186, 186, 186);
            EXPECT_TRUE(Perto(s.Em(287, 14), Entre(RGB(255, 255, 255), fechar, 11.5 / 14), 6));
            EXPECT_TRUE(Perto(s.Em(287, 10), De(quente ? RGB(150, 20, 10) : RGB(30, 30, 30)), 40));
        }
    }
    Superficie sem(300, 200);
    PintarMoldura(sem.Dc(), {300, 200, L"", true, false, CaixaDaTira::kNenhuma}, fontes_);
    EXPECT_TRUE(Perto(sem.Em(10, 13), Entre(RGB(238, 242, 248), RGB(172, 184, 202), 13.5 / 20)));
}

TEST_F(Pintura, TituloComSombraNoMeioECortadoComReticencias) {
    const auto colunas = [&](const wchar_t* titulo) {
        Superficie s(300, 30);
        PintarMoldura(s.Dc(), {300, 30, titulo, true, true, CaixaDaTira::kNenhuma}, fontes_);
        int primeira = 300;
        int ultima = -1;
        bool branco = false;
        for (int x = 21; x < 278; ++x) {
            for (int y = 2; y < 18; ++y) {
                branco = branco || Perto(s.Em(x, y), {255, 255, 255}, 4);
                // Only the shadow is darker than the strip.
                if (s.Em(x, y).r < 120) primeira = std::min(primeira, x), ultima = std::max(ultima, x);
            }
        }
        EXPECT_TRUE(branco) << titulo;
        return std::pair{primeira, ultima};
    };
    const auto [a, b] = colunas(L"Zu Launcher");
    EXPECT_NEAR((a + b) / 2, 150, 4);
    const auto [c, d] = colunas(L"Um título tão comprido que não cabe na tira de nenhuma janela deste launcher");
    EXPECT_GE(c, 23);
    EXPECT_LE(d, 277);
}

TEST_F(Pintura, BarraDeProgressoEmCadaValor) {
    constexpr int kX = 20;
    constexpr int kY = 10;
    constexpr int kLargura = 200;
    for (const int valor : {-7, 0, 1, 50, 99, 100, 250}) {
        Superficie s(240, 30);
        PreencherRetangulo(s.Dc(), {0, 0, 240, 30}, kCorDoPainel);
        PintarProgresso(s.Dc(), kX, kY, kLargura, 9, valor);
        const int cheio = std::clamp(valor, 0, 100) * kLargura / 100;
        // Below the gloss, away from the round ends.
        for (int x = kX + 2; x < kX + kLargura - 2; ++x) {
            if (std::abs(x - (kX + cheio)) <= 1) continue;
            const Cor c = s.Em(x, kY + 6);
            EXPECT_EQ(c.b > c.r + 60, x < kX + cheio) << valor << "% em " << x - kX << ": " << c;
        }
        if (cheio > 100) {
            EXPECT_TRUE(Perto(s.Em(kX + 50, kY + 7), Entre(RGB(70, 140, 235), RGB(25, 80, 180), 0.70), 10));
        } else {
            EXPECT_TRUE(Perto(s.Em(kX + 150, kY + 4), Entre(RGB(150, 150, 150), RGB(200, 200, 200), 0.5), 6));
        }
        EXPECT_TRUE(Perto(s.Em(kX + 100, kY - 3), De(kCorDoPainel), 0));
        EXPECT_TRUE(Perto(s.Em(kX + 100, kY + 11), De(kCorDoPainel), 0));
        // The round end leaves the corner alone.
        EXPECT_TRUE(Perto(s.Em(kX, kY), De(kCorDoPainel), 30)) << valor;
    }
}

TEST_F(Pintura, RodapePainelEBorda) {
    Superficie s(200, 160);
    PintarRodape(s.Dc(), 200, 160, 64);
    EXPECT_TRUE(Perto(s.Em(100, 95), De(Superficie::kFundo), 0));
    EXPECT_TRUE(Perto(s.Em(1, 96), De(RGB(96, 96, 96)), 0));
    EXPECT_TRUE(Perto(s.Em(100, 97), Entre(RGB(166, 166, 166), RGB(210, 210, 210), 0.5 / 62)));
    EXPECT_TRUE(Perto(s.Em(198, 158), Entre(RGB(166, 166, 166), RGB(210, 210, 210), 61.5 / 62)));
    EXPECT_TRUE(Perto(s.Em(0, 120), De(Superficie::kFundo), 0));
    EXPECT_TRUE(Perto(s.Em(100, 159), De(Superficie::kFundo), 0));

    Superficie p(200, 100);
    PreencherRetangulo(p.Dc(), {0, 0, 200, 100}, kCorDaJanela);
    PintarPainel(p.Dc(), {20, 20, 180, 82});
    EXPECT_TRUE(Perto(p.Em(100, 50), De(kCorDoPainel), 0));
    EXPECT_TRUE(Perto(p.Em(100, 21), De(RGB(250, 250, 250)), 12));
    // Beyond the round end.
    EXPECT_TRUE(Perto(p.Em(22, 22), De(kCorDaJanela), 0));
    EXPECT_LT(p.Em(20, 50).r, 190);
    // The shadow lies below the outline, and ends.
    EXPECT_LT(std::min(p.Em(100, 82).r, p.Em(100, 83).r), 212);
    EXPECT_TRUE(Perto(p.Em(100, 86), De(kCorDaJanela), 0));

    Superficie b(100, 100);
    PreencherRetangulo(b.Dc(), {0, 0, 100, 100}, kCorDaJanela);
    PintarBorda(b.Dc(), 100, 100);
    // A line at half a pixel: renderers put it on the first or on the second.
    EXPECT_LE(std::min(b.Em(0, 50).r, b.Em(1, 50).r), 64 + 30);
    EXPECT_LE(std::min(b.Em(50, 0).r, b.Em(50, 1).r), 64 + 30);
    EXPECT_TRUE(Perto(b.Em(50, 50), De(kCorDaJanela), 0));
    EXPECT_TRUE(Perto(b.Em(0, 0), De(kCorDaJanela), 0));
}

TEST_F(Pintura, JanelaPrincipal) {
    const FontesDaPrincipal proprias;
    const LogoEncaixado logo({440, 310, std::vector<std::uint32_t>(440 * 310, 0xFF20A040U)});
    AparenciaPrincipal aparencia{L"Zu", true, CaixaDaTira::kNenhuma, CentroDaPrincipal::kLogo, 75, 50};
    Superficie s(kLarguraPrincipal, kAlturaPrincipal);
    PintarPrincipal(s.Dc(), aparencia, logo, fontes_, proprias);

    EXPECT_TRUE(Perto(s.Em(300, 20), Entre(RGB(252, 252, 252), RGB(204, 204, 204), 0.5 / 25)));
    EXPECT_TRUE(Perto(s.Em(300, 43), Entre(RGB(252, 252, 252), RGB(204, 204, 204), 23.5 / 25)));
    EXPECT_TRUE(Perto(s.Em(300, 44), De(RGB(150, 150, 150)), 0));
    // The rings around the centre, at both corners.
    for (const auto& [x, y] : {std::pair{6, 46}, std::pair{447, 384}})
        EXPECT_TRUE(Perto(s.Em(x, y), {96, 96, 96}, 0));
    for (const auto& [x, y] : {std::pair{7, 47}, std::pair{446, 383}, std::pair{8, 48}, std::pair{445, 382}}) {
        EXPECT_TRUE(Perto(s.Em(x, y), {255, 255, 255}, 0)) << x;
    }
    EXPECT_TRUE(Perto(s.Em(5, 45), De(kCorDaJanela), 0));
    EXPECT_TRUE(Perto(s.Em(448, 385), De(kCorDaJanela), 0));
    for (const auto& [x, y] : {std::pair{9, 49}, std::pair{444, 381}})
        EXPECT_TRUE(Perto(s.Em(x, y), {8, 4, 6}, 0));
    for (const auto& [x, y] : {std::pair{19, 59}, std::pair{434, 351}})
        EXPECT_TRUE(Perto(s.Em(x, y), {32, 160, 64}));
    for (const auto& [x, y] : {std::pair{18, 58}, std::pair{435, 352}})
        EXPECT_TRUE(Perto(s.Em(x, y), {8, 4, 6}, 0));
    EXPECT_TRUE(Perto(s.Em(226, 388), De(RGB(96, 96, 96)), 0));
    EXPECT_TRUE(Perto(s.Em(226, 450), De(kCorDoPainel), 0));
    EXPECT_TRUE(Perto(s.Em(110, 486), De(kCorDoPainel), 0));
    // Three quarters and a half of 200 pixels.
    EXPECT_GT(s.Em(300, 418).b, s.Em(300, 418).r + 60);
    EXPECT_LT(s.Em(304, 418).b, s.Em(304, 418).r + 60);
    EXPECT_GT(s.Em(250, 437).b, s.Em(250, 437).r + 60);
    EXPECT_LT(s.Em(254, 437).b, s.Em(254, 437).r + 60);

    // The site covers the centre, sooner or later: nothing but its dark ground is drawn there.
    aparencia.centro = CentroDaPrincipal::kSite;
    Superficie site(kLarguraPrincipal, kAlturaPrincipal);
    PintarPrincipal(site.Dc(), aparencia, logo, fontes_, proprias);
    EXPECT_TRUE(Perto(site.Em(200, 200), {8, 4, 6}, 0));

    aparencia.centro = CentroDaPrincipal::kFalhaDoSite;
    Superficie falha(kLarguraPrincipal, kAlturaPrincipal);
    PintarPrincipal(falha.Dc(), aparencia, logo, fontes_, proprias);
    bool texto = false;
    for (int x = 9; x < 445; ++x) {
        for (int y = 353; y < 374; ++y)
            texto = texto || Perto(falha.Em(x, y), {200, 170, 120}, 30);
    }
    EXPECT_TRUE(texto);
}

// A control's picture.
class Retrato : public Superficie {
 public:
    Retrato(const Fontes& fontes, const EstadoControle& estado, bool habilitado = true,
            const wchar_t* legenda = L"Conectar")
        : Superficie(kLargura, kAltura) {
        PintarControle(Dc(), {0, 0, kLargura, kAltura}, {estado, legenda, habilitado}, fontes);
    }
    static constexpr int kLargura = 120;
    static constexpr int kAltura = 28;
};

TEST_F(Pintura, EstadosDeCadaControleSaoDistintos) {
    for (const TipoControle kind : {TipoControle::Botao, TipoControle::BotaoPrincipal, TipoControle::Caixa,
                                    TipoControle::Lista, TipoControle::Opcao}) {
        EstadoControle normal;
        normal.kind = kind;
        normal.items = {L"1024 x 768"};
        EstadoControle sobre = normal;
        sobre.hover = true;
        sobre.hover_level = 1;
        EstadoControle pressionado = sobre;
        pressionado.pressed = true;
        EstadoControle marcado = normal;
        marcado.checked = true;
        const Retrato n(fontes_, normal);
        const Retrato s(fontes_, sobre);
        const Retrato p(fontes_, pressionado);
        const Retrato d(fontes_, normal, false);
        const Retrato m(fontes_, marcado);
        const int muito = kind == TipoControle::Caixa ? 10 : 80;
        const auto nome = static_cast<unsigned>(kind);
        EXPECT_GT(n.Diferentes(s), muito) << nome;
        EXPECT_GT(s.Diferentes(p), muito) << nome;
        EXPECT_GT(n.Diferentes(p), muito) << nome;
        EXPECT_GT(n.Diferentes(d), 40) << nome;
        if (kind == TipoControle::Caixa || kind == TipoControle::Opcao) {
            EXPECT_GT(n.Diferentes(m), 20) << nome;
        }
        // Beyond the face's corners lies the colour that the face is shaded around.
        if (kind != TipoControle::Caixa) {
            EXPECT_TRUE(Perto(n.Em(0, 0), De(RGB(226, 226, 226)), 0)) << nome;
        }
    }
}

// The outline's middle at the left, where only the glow and the pulse change.
TEST_F(Pintura, BrilhoEPulsoSegundoSeusNumeros) {
    const auto naBorda = [&](const EstadoControle& estado) { return Retrato(fontes_, estado).Em(1, 14); };
    EstadoControle botao;
    const Cor base = naBorda(botao);
    botao.hover_level = 1;
    const Cor acesa = naBorda(botao);
    EXPECT_TRUE(Perto(
        acesa,
        {base.r + (90 - base.r) * 90 / 255, base.g + (150 - base.g) * 90 / 255, base.b + (255 - base.b) * 90 / 255},
        8));

    EstadoControle principal;
    principal.kind = TipoControle::BotaoPrincipal;
    const auto pulso = [&](float fase, int alfa) {
        principal.phase = fase;
        EXPECT_TRUE(Perto(naBorda(principal),
                          {base.r + (255 - base.r) * alfa / 255, base.g + (190 - base.g) * alfa / 255,
                           base.b + (60 - base.b) * alfa / 255},
                          8))
            << alfa;
    };
    constexpr float kPi = std::numbers::pi_v<float>;
    pulso(0, 75);
    pulso(kPi / 2, 110);
    pulso(3 * kPi / 2, 40);
}

TEST_F(Pintura, TextosQueNaoCabemFicamDentro) {
    const wchar_t* const longa = L"Uma legenda comprida demais para o lugar que ela tem no controle";
    for (const TipoControle kind :
         {TipoControle::Botao, TipoControle::Caixa, TipoControle::Lista, TipoControle::Opcao}) {
        EstadoControle com;
        com.kind = kind;
        com.items = {longa};
        com.text = kind == TipoControle::Opcao ? longa : L"";
        EstadoControle sem = com;
        sem.items = {L""};
        const Retrato a(fontes_, com, true, longa);
        const Retrato b(fontes_, sem, true, L"");
        for (int y = 0; y < Retrato::kAltura; ++y) {
            for (const int x : {Retrato::kLargura - 1, kind == TipoControle::Lista ? Retrato::kLargura - 20 : 0}) {
                EXPECT_TRUE(Perto(a.Em(x, y), b.Em(x, y), 0)) << static_cast<unsigned>(kind) << " " << x << "," << y;
            }
        }
    }
}

TEST_F(Pintura, ControleDoDonoEDesenhadoPorEle) {
    EstadoControle dono;
    dono.kind = TipoControle::DoDono;
    dono.pintor = [](HDC dc, const RECT& r, const EstadoControle& estado) {
        PreencherRetangulo(dc, {r.left + 5, 5, r.right, 6}, estado.checked ? RGB(1, 2, 3) : RGB(4, 5, 6));
    };
    const Retrato s(fontes_, dono);
    EXPECT_TRUE(Perto(s.Em(5, 5), {4, 5, 6}, 0));
    EXPECT_TRUE(Perto(s.Em(4, 5), De(dono.fill), 0));
}

}  // namespace
}  // namespace zu::launcher

// Every painter's picture against the numbers it is made from.
#include <algorithm>

#include "tests/suporte/janelas.h"
#include "ui/controles/pintor_controle.h"
#include "ui/janelas/pintor_principal.h"

namespace zu::launcher {
namespace {

using teste::Superficie;

class Pintura : public teste::ComDesenho {};

TEST_F(Pintura, MolduraEmCadaEstado) {
    const struct {
        bool ativa, comMinimizar;
        CaixaDaTira sobre;
        const char* provas;
    } casos[] = {
        {true, true, CaixaDaTira::kNenhuma,
         "60,0=ECF1F7 60,10=CBD4E0 60,19=AEB9CB 0,20=6E6E6E~0 0,21=D4D4D4~0 299,199=D4D4D4~0 10,13=000000~0 "
         "287,14=C6C6C6~6 287,10=1E1E1E~40"},
        {false, true, CaixaDaTira::kMinimizar, "60,0=EBEBEB 60,10=D5D5D5 60,19=C1C1C1 10,13=1E3CAA~0 287,10=1E1E1E~40"},
        {true, true, CaixaDaTira::kFechar, "10,13=000000~0 287,14=EFA998~6 287,10=96140A~40"},
        {true, false, CaixaDaTira::kNenhuma, "10,13=C1CBD9"},
    };
    for (const auto& [ativa, comMinimizar, sobre, provas] : casos) {
        const Superficie s({300, 200});
        PintarMoldura(s.Dc(), {300, 200, L"", ativa, comMinimizar, sobre}, FontesDaInterface());
        EXPECT_EQ(s.Provar(provas), "");
    }
}

TEST_F(Pintura, BarraDeProgressoEmCadaValor) {
    constexpr int kX = 20;
    constexpr int kLargura = 200;
    for (const int valor : {-7, 0, 1, 50, 99, 100, 250}) {
        const Superficie s({240, 30});
        PreencherRetangulo(s.Dc(), {0, 0, 240, 30}, kCorDoPainel);
        PintarProgresso(s.Dc(), kX, 10, kLargura, 9, valor);
        const int cheio = std::clamp(valor, 0, 100) * kLargura / 100;
        // Below the gloss, away from the round ends.
        for (int x = 2; x < kLargura - 2; ++x) {
            const bool naBeira = std::abs(x - cheio) <= 1;
            EXPECT_TRUE(naBeira || s.Azul(kX + x, 16) == (x < cheio)) << valor << "% em " << x;
        }
        // The round end leaves the corner alone.
        EXPECT_EQ(s.Provar("120,7=E2E2E2~0 120,21=E2E2E2~0 20,10=E2E2E2~30 "), "") << valor;
        EXPECT_EQ(s.Provar(cheio > 100 ? "70,17=2762C2~10" : "170,14=AFAFAF~6"), "") << valor;
    }
}

// Header, the rings around the centre, the logo in it at both corners; footer, panels and their shadow, border.
TEST_F(Pintura, JanelaPrincipal) {
    const std::string emVolta =
        "300,20=FBFBFB 300,43=CFCFCF 300,44=969696~0 6,46=606060~0 447,384=606060~0 7,47=FFFFFF~0 446,383=FFFFFF~0 "
        "8,48=FFFFFF~0 445,382=FFFFFF~0 5,45=D4D4D4~0 448,385=D4D4D4~0 9,49=080406~0 444,381=080406~0 18,111=080406~0 "
        "435,299=080406~0 226,387=D4D4D4~0 2,388=606060~0 440,389=A6A6A6 440,514=D2D2D2 226,450=E2E2E2~0 "
        "226,396=FAFAFA~12 54,397=A9A9A9 226,459=BEBEBE~9 110,486=E2E2E2~0 1,200=404040~30 200,1=404040~30 ";
    const FontesDaPrincipal proprias;
    const LogoEncaixado logo({440, 200, std::vector<std::uint32_t>(440 * 200, 0xFF20A040U)});
    for (const auto& [centro, noCentro] :
         {std::pair(CentroDaPrincipal::kLogo, "19,111=20A040 434,299=20A040 19,110=080406~0 434,300=080406~0"),
          {CentroDaPrincipal::kSite, "19,111=080406~0 200,200=080406~0"}}) {
        const Superficie s({kLarguraPrincipal, kAlturaPrincipal});
        PintarPrincipal(s.Dc(), {L"Zu", true, CaixaDaTira::kNenhuma, centro, 75, 50}, logo, FontesDaInterface(),
                        proprias);
        EXPECT_EQ(s.Provar(emVolta + noCentro), "");
    }
}

// A control's picture.
class Retrato : public Superficie {
 public:
    explicit Retrato(const EstadoControle& estado, bool habilitado = true, const wchar_t* legenda = L"Conectar")
        : Superficie({kLargura, kAltura}) {
        PintarControle(Dc(), {0, 0, kLargura, kAltura}, {estado, legenda, habilitado}, FontesDaInterface());
    }
    static constexpr int kLargura = 120;
    static constexpr int kAltura = 28;
};

TEST_F(Pintura, CadaControleSeVeEmCadaEstadoEGuardaOTextoDentro) {
    for (const TipoControle kind : {TipoControle::Botao, TipoControle::BotaoPrincipal, TipoControle::Caixa,
                                    TipoControle::Lista, TipoControle::Opcao}) {
        SCOPED_TRACE(static_cast<unsigned>(kind));
        const bool caixa = kind == TipoControle::Caixa;
        EstadoControle estado{.kind = kind, .items = {L"1024 x 768"}};
        const auto com = [&](bool EstadoControle::*qual) {
            estado.*qual = true;
            estado.hover_level = estado.hover ? 1 : 0;
            return std::make_unique<Retrato>(estado);
        };
        const Retrato normal(estado);
        EXPECT_GT(normal.Diferentes(Retrato(estado, false)), 40);
        EXPECT_EQ(normal.Diferentes(*com(&EstadoControle::checked)) > 20, caixa || kind == TipoControle::Opcao);
        estado.checked = false;
        const auto sobre = com(&EstadoControle::hover);
        const auto pressionado = com(&EstadoControle::pressed);
        for (const auto& [um, outro] :
             {std::pair(&normal, sobre.get()), {sobre.get(), pressionado.get()}, {&normal, pressionado.get()}})
            EXPECT_GT(um->Diferentes(*outro), caixa ? 10 : 80);
        // Beyond the face's corners lies the colour that the face is shaded around.
        EXPECT_EQ(normal.Provar(caixa ? "" : "0,0=E2E2E2~0"), "");

        const wchar_t* const longa = L"Uma legenda comprida demais para o lugar que ela tem no controle";
        const EstadoControle vazio{.kind = kind, .items = {L""}};
        const EstadoControle cheio{.kind = kind, .items = {longa}, .text = kind == TipoControle::Opcao ? longa : L""};
        const Retrato sem(vazio, true, L"");
        const int fim = Retrato::kLargura - (kind == TipoControle::Lista ? 20 : 1);
        EXPECT_GT(Retrato(cheio, true, longa).Diferentes(sem), 20);
        EXPECT_EQ(Retrato(cheio, true, longa).Diferentes(sem, {fim, 0, 999, 999}), 0);
        EXPECT_EQ(Retrato(cheio, true, longa).Diferentes(sem, {0, 0, 1, 999}), 0);
    }
}

// The outline's middle at the left, where only the glow and the pulse change; and a control that its owner draws.
TEST_F(Pintura, BrilhoPulsoEDesenhoDoDono) {
    EstadoControle botao;
    const std::uint32_t base = Retrato(botao).Em(1, 14);
    // That much of the way from the plain outline to the colour.
    const auto prova = [base](std::uint32_t cor, std::uint32_t alfa) {
        std::uint32_t mistura = 0;
        for (int i = 0; i < 24; i += 8)
            mistura |= ((base >> i & 255) * (255 - alfa) + (cor >> i & 255) * alfa) / 255 << i;
        return Formatar("1,14={:06X}~8", mistura);
    };
    botao.hover_level = 1;
    EXPECT_EQ(Retrato(botao).Provar(prova(0x5A96FF, 90)), "");
    botao = {.kind = TipoControle::BotaoPrincipal};
    for (const auto& [fase, alfa] : {std::pair(0.0F, 75U), {1.5708F, 110U}, {4.7124F, 40U}}) {
        botao.phase = fase;
        EXPECT_EQ(Retrato(botao).Provar(prova(0xFFBE3C, alfa)), "") << alfa;
    }
    botao = {.kind = TipoControle::DoDono, .pintor = [](HDC dc, const RECT& r, const EstadoControle&) {
                 PreencherRetangulo(dc, {r.left + 5, 5, r.right, 6}, RGB(4, 5, 6));
             }};
    EXPECT_EQ(Retrato(botao).Provar("5,5=040506~0 4,5=E2E2E2~0"), "");
}

}  // namespace
}  // namespace zu::launcher

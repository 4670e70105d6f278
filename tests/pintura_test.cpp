// Every painter's picture against the numbers it is made from.
#include <algorithm>

#include "tests/suporte/janelas.h"
#include "ui/pintor_principal.h"

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
    for (const int valor : {-7, 0, 1, 50, 250}) {
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

}  // namespace
}  // namespace zu::launcher

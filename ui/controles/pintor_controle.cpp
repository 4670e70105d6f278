#include "ui/controles/pintor_controle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace zu::launcher {
namespace {

struct Cor {
    unsigned r;
    unsigned g;
    unsigned b;
};

constexpr COLORREF kTexto = RGB(0, 0, 0);
constexpr COLORREF kTextoDesligado = RGB(128, 128, 128);
constexpr COLORREF kTextoMenor = RGB(80, 80, 80);

constexpr Cor kBrilho{90, 150, 255};  // under the pointer
constexpr float kAlfaDoBrilho = 90;
constexpr REAL kLarguraDoBrilho = 2;
constexpr float kAlfaDoTom = 36;  // the face takes on some of the glow's colour

constexpr Cor kPulso{255, 190, 60};
constexpr REAL kLarguraDoPulso = 1.6F;
constexpr float kPulsoMinimo = 40;
constexpr float kPulsoAmplitude = kForcasDoPulso - 1;

// How far the face's gradient goes from the fill colour, up to white and down to black.
struct Relevo {
    int alto;
    int meio;
    int baixo;
};
constexpr Relevo kEmPe{24, 2, -40};
constexpr Relevo kPressionada{-58, -34, -12};
constexpr Relevo kDesligada{6, 0, -12};
constexpr REAL kLugarDoMeio = 0.5F;
constexpr REAL kAlturaDoLustro = 0.46F;  // of the face's

constexpr REAL kFolgaDaFace = 1.5F;   // of a button or tile in its window
constexpr REAL kFolgaDaLista = 0.5F;  // of a list
constexpr int kFolgaDaLegenda = 6;    // left and right of a button's caption

constexpr ARGB kContorno = Argb(255, 104, 104, 104);
constexpr ARGB kContornoDesligado = Argb(255, 168, 168, 168);
constexpr ARGB kContornoMarcado = Argb(255, 40, 96, 190);
constexpr ARGB kLustroAlto = Argb(190, 255, 255, 255);
constexpr ARGB kLustroBaixo = Argb(40, 255, 255, 255);
constexpr ARGB kFioClaro = Argb(120, 255, 255, 255);
constexpr ARGB kMarcaDoFoco = Argb(255, 30, 72, 160);
constexpr REAL kLarguraDaMarcaDoFoco = 1.5F;
constexpr REAL kRecuoDaMarcaDoFoco = 4;  // from the control's edge
constexpr Cor kClarao{255, 255, 255};
constexpr float kAlfaDoClarao = 120;
constexpr REAL kLarguraDoClarao = 26;

constexpr REAL kRaioDaLista = 4;
constexpr REAL kRaioDaOpcao = 7;
constexpr int kRecuoDaLista = 8;
constexpr int kLarguraDoSinal = 22;  // the drop-down sign's place at the right end
constexpr COLORREF kCorDoSinal = RGB(50, 50, 50);
// The sign from its middle: an arrow head with a notch above.
constexpr std::array<std::pair<REAL, REAL>, 4> kSinal{{{-5, -2.5F}, {0, -1}, {5, -2.5F}, {0, 3.5F}}};

constexpr REAL kLadoDaMarca = 14;
constexpr int kRecuoDaMarca = 20;         // from a check box's left edge to its caption
constexpr int kRecuoDaMarcaNaOpcao = 12;  // from a tile's left edge to its mark
constexpr int kRecuoDaLegenda = 34;       // from a tile's left edge to its texts
constexpr COLORREF kOpcaoMarcada = RGB(206, 220, 242);

// A tile's two lines, of which the second may need two: from the tile's middle.
struct LinhasDaOpcao {
    int topo;
    int segunda;  // height
};
constexpr int kAlturaDaPrimeira = 19;
constexpr LinhasDaOpcao kCurta{18, 17};
constexpr LinhasDaOpcao kComprida{24, 28};

// The mark's colours, by how the control stands.
struct CoresDaMarca {
    COLORREF fundo;
    ARGB sombra;
    ARGB luz;
    ARGB ponto;
    ARGB pontoBaixo;
};
constexpr CoresDaMarca kMarcaNormal{RGB(250, 250, 250), Argb(255, 90, 90, 90), Argb(255, 160, 160, 160),
                                    Argb(255, 96, 156, 246), Argb(255, 22, 70, 165)};
constexpr CoresDaMarca kMarcaAcesa{RGB(250, 250, 250), kContornoMarcado, Argb(255, 120, 165, 235), kMarcaNormal.ponto,
                                   kMarcaNormal.pontoBaixo};
constexpr CoresDaMarca kMarcaAfundada{RGB(214, 224, 240), kMarcaAcesa.sombra, kMarcaAcesa.luz, kMarcaNormal.ponto,
                                      kMarcaNormal.pontoBaixo};
constexpr CoresDaMarca kMarcaDesligada{RGB(218, 218, 218), kContornoDesligado, Argb(255, 196, 196, 196),
                                       Argb(255, 150, 150, 150), Argb(255, 150, 150, 150)};
constexpr REAL kTracoDaMarca = 1.4F;
constexpr REAL kFolgaDoPonto = 3.5F;

ARGB ComAlfa(const Cor& cor, float alfa) {
    return Argb(static_cast<unsigned>(std::lround(alfa)), cor.r, cor.g, cor.b);
}

bool Afundado(const AparenciaControle& a) {
    return a.estado.pressed && a.estado.hover;
}

const Relevo& RelevoDe(const AparenciaControle& a) {
    if (!a.habilitado) return kDesligada;
    const bool afundada = a.estado.kind == TipoControle::Lista ? a.estado.pressed : Afundado(a);
    return afundada ? kPressionada : kEmPe;
}

// A diagonal sheen that crosses the face once.
void PintarClarao(Tela& tela, const Area& face, float flash) {
    const REAL x = face.x - kLarguraDoClarao + (face.largura + kLarguraDoClarao) * flash;
    const REAL inclinacao = face.altura / 2;
    const std::array pontos{Gdiplus::PointF(x + inclinacao, face.y),
                            Gdiplus::PointF(x + inclinacao + kLarguraDoClarao, face.y),
                            Gdiplus::PointF(x + kLarguraDoClarao - inclinacao, face.y + face.altura),
                            Gdiplus::PointF(x - inclinacao, face.y + face.altura)};
    const float forca = std::sin(flash * std::numbers::pi_v<float>);
    tela.Poligono(pontos, ComAlfa(kClarao, forca * kAlfaDoClarao));
}

// The body that all faces share: gradient, highlight, sheen, glow and outline.
void PintarFace(Tela& tela, const Area& face, REAL raio, const AparenciaControle& a, COLORREF cor, ARGB contorno) {
    const EstadoControle& estado = a.estado;
    const Relevo& relevo = RelevoDe(a);
    const Caminho figura(face, raio);
    tela.Preencher(figura, face, Opaca(Clarear(cor, relevo.alto)), Opaca(Clarear(cor, relevo.meio)),
                   Opaca(Clarear(cor, relevo.baixo)), kLugarDoMeio);
    tela.Recortar(figura);
    if (&relevo == &kEmPe) {
        const Area lustro{face.x + 2, face.y + 1, face.largura - 4, face.altura * kAlturaDoLustro};
        tela.Preencher(Caminho(lustro, raio - 1), lustro, kLustroAlto, kLustroBaixo);
    }
    if (estado.hover_level > 0) tela.Preencher(figura, ComAlfa(kBrilho, estado.hover_level * kAlfaDoTom));
    if (estado.flash >= 0) PintarClarao(tela, face, estado.flash);
    tela.SemRecorte();
    if (&relevo != &kPressionada) {
        tela.Contornar(Caminho({face.x + 1, face.y + 1, face.largura - 2, face.altura - 2}, raio - 1), kFioClaro, 1);
    }
    tela.Contornar(figura, a.habilitado ? contorno : kContornoDesligado, 1);
    if (estado.hover_level > 0) {
        tela.Contornar(figura, ComAlfa(kBrilho, estado.hover_level * kAlfaDoBrilho), kLarguraDoBrilho);
    }
}

void PintarBotao(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    const Area face = AreaDe(r, kFolgaDaFace);
    const REAL raio = face.altura / 2;
    {
        Tela tela(dc);
        PintarFace(tela, face, raio, a, a.estado.fill, kContorno);
        if (a.estado.kind == TipoControle::BotaoPrincipal) {
            const float alfa = kPulsoMinimo + static_cast<float>(ForcaDoPulso(a.estado));
            tela.Contornar(Caminho(face, raio), ComAlfa(kPulso, alfa), kLarguraDoPulso);
        }
    }
    RECT texto = r;
    InflateRect(&texto, -kFolgaDaLegenda, 0);
    if (Afundado(a)) OffsetRect(&texto, 1, 1);
    Escrever(dc, a.legenda, texto, Fontes::De(fontes.negrito), a.habilitado ? kTexto : kTextoDesligado,
             kUmaLinha | DT_CENTER);
}

const CoresDaMarca& CoresDe(const AparenciaControle& a) {
    if (!a.habilitado) return kMarcaDesligada;
    if (Afundado(a)) return kMarcaAfundada;
    return a.estado.hover || a.estado.pressed ? kMarcaAcesa : kMarcaNormal;
}

// A sunken circle of two half arcs, dark above and light below, with a dot when checked.
void PintarMarca(Tela& tela, const Area& circulo, const AparenciaControle& a) {
    const CoresDaMarca& cores = CoresDe(a);
    tela.Elipse(circulo, Opaca(cores.fundo));
    tela.Arco(circulo, 180, 180, cores.sombra, kTracoDaMarca);
    tela.Arco(circulo, 0, 180, cores.luz, kTracoDaMarca);
    if (!a.estado.checked) return;
    const Area ponto{circulo.x + kFolgaDoPonto, circulo.y + kFolgaDoPonto, circulo.largura - 2 * kFolgaDoPonto,
                     circulo.altura - 2 * kFolgaDoPonto};
    tela.Preencher(Caminho(ponto, ponto.altura / 2), ponto, cores.ponto, cores.pontoBaixo);
}

void PintarCaixa(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    {
        Tela tela(dc);
        const REAL topo = (static_cast<REAL>(r.bottom + r.top) - kLadoDaMarca) / 2;
        PintarMarca(tela, {static_cast<REAL>(r.left) + 1, topo, kLadoDaMarca, kLadoDaMarca}, a);
    }
    RECT texto = r;
    texto.left += kRecuoDaMarca;
    Escrever(dc, a.legenda, texto, Fontes::De(fontes.normal), a.habilitado ? kTexto : kTextoDesligado, kUmaLinha);
}

void PintarLista(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    const EstadoControle& estado = a.estado;
    const COLORREF cor = a.habilitado ? kTexto : kTextoDesligado;
    {
        const bool aceso = estado.hover || estado.pressed;
        Tela tela(dc);
        PintarFace(tela, AreaDe(r, kFolgaDaLista), kRaioDaLista, a, estado.fill, aceso ? kContornoMarcado : kContorno);
        const REAL x = static_cast<REAL>(r.right) - static_cast<REAL>(kLarguraDoSinal) / 2 - 1;
        const REAL y = static_cast<REAL>(r.top + r.bottom) / 2;
        std::array<Gdiplus::PointF, kSinal.size()> sinal;
        std::ranges::transform(kSinal, sinal.begin(),
                               [&](const auto& p) { return Gdiplus::PointF(x + p.first, y + p.second); });
        tela.Poligono(sinal, Opaca(a.habilitado ? kCorDoSinal : kTextoDesligado));
    }
    if (estado.selected < 0 || static_cast<std::size_t>(estado.selected) >= estado.items.size()) return;
    RECT texto = r;
    texto.left += kRecuoDaLista;
    texto.right -= kLarguraDoSinal;
    Escrever(dc, estado.items[static_cast<std::size_t>(estado.selected)], texto, Fontes::De(fontes.normal), cor,
             kUmaLinha);
}

void PintarOpcao(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    const EstadoControle& estado = a.estado;
    const COLORREF cor = estado.checked ? kOpcaoMarcada : estado.fill;
    {
        Tela tela(dc);
        const Area face = AreaDe(r, kFolgaDaFace);
        PintarFace(tela, face, kRaioDaOpcao, a, cor, estado.checked ? kContornoMarcado : kContorno);
        const REAL x = static_cast<REAL>(r.left + kRecuoDaMarcaNaOpcao);
        PintarMarca(tela, {x, (static_cast<REAL>(r.top + r.bottom) - kLadoDaMarca) / 2, kLadoDaMarca, kLadoDaMarca}, a);
    }
    RECT texto{r.left + kRecuoDaLegenda, r.top, r.right - kRecuoDaLista, r.bottom};
    if (Afundado(a)) OffsetRect(&texto, 1, 1);
    const int meio = (texto.top + texto.bottom) / 2;
    RECT legenda = texto;
    if (!estado.text.empty()) {
        const HFONT pequena = Fontes::De(fontes.pequena);
        const bool cabe = LarguraDoTexto(estado.text, pequena) <= texto.right - texto.left;
        const LinhasDaOpcao& linhas = cabe ? kCurta : kComprida;
        legenda.top = meio - linhas.topo;
        legenda.bottom = legenda.top + kAlturaDaPrimeira;
        const RECT menor{texto.left, legenda.bottom, texto.right, legenda.bottom + linhas.segunda};
        Escrever(dc, estado.text, menor, pequena, a.habilitado ? kTextoMenor : kTextoDesligado,
                 cabe ? kUmaLinha : kVariasLinhas);
    }
    Escrever(dc, a.legenda, legenda, Fontes::De(fontes.negrito), a.habilitado ? kTexto : kTextoDesligado, kUmaLinha);
}

void PintarFoco(HDC dc, const RECT& r, TipoControle kind) {
    const bool semFace = kind == TipoControle::Caixa;
    const Area area = AreaDe(r, semFace ? 0.5F : kRecuoDaMarcaDoFoco);
    const REAL raio =
        kind == TipoControle::Botao || kind == TipoControle::BotaoPrincipal ? area.altura / 2 : kRaioDaLista;
    Tela(dc).Contornar(Caminho(area, raio), kMarcaDoFoco, kLarguraDaMarcaDoFoco);
}

}  // namespace

std::size_t ForcaDoPulso(const EstadoControle& estado) {
    return static_cast<std::size_t>(std::lround((std::sin(estado.phase) * 0.5F + 0.5F) * kPulsoAmplitude));
}

void PintarControle(HDC dc, const RECT& r, const AparenciaControle& a, const Fontes& fontes) {
    PreencherRetangulo(dc, r, a.estado.fundo);
    switch (a.estado.kind) {
        case TipoControle::Botao:
        case TipoControle::BotaoPrincipal:
            PintarBotao(dc, r, a, fontes);
            break;
        case TipoControle::Caixa:
            PintarCaixa(dc, r, a, fontes);
            break;
        case TipoControle::Lista:
            PintarLista(dc, r, a, fontes);
            break;
        case TipoControle::Opcao:
            PintarOpcao(dc, r, a, fontes);
            break;
        case TipoControle::DoDono:
            if (a.estado.pintor) a.estado.pintor(dc, r, a.estado);
            break;
    }
    if (a.foco) PintarFoco(dc, r, a.estado.kind);
}

}  // namespace zu::launcher

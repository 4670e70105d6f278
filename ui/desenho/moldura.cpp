#include "ui/desenho/moldura.h"

#include <algorithm>
#include <array>

#include "ui/desenho/contraste.h"

namespace zu::launcher {
namespace {

struct CoresDaTira {
    COLORREF alto;
    COLORREF baixo;
    COLORREF sombra;  // of the title
};
constexpr CoresDaTira kTiraAtiva{RGB(238, 242, 248), RGB(172, 184, 202), RGB(40, 44, 60)};
constexpr CoresDaTira kTiraInativa{RGB(236, 236, 236), RGB(192, 192, 192), RGB(110, 110, 110)};
constexpr COLORREF kReguaDaTira = RGB(110, 110, 110);
constexpr COLORREF kTitulo = RGB(255, 255, 255);
constexpr int kMargemDoTitulo = 24;  // clear of the boxes at both ends

constexpr COLORREF kMinimizar = RGB(0, 0, 0);
constexpr COLORREF kMinimizarSobre = RGB(30, 60, 170);
// A bar whose ends taper by one pixel.
constexpr std::array<RECT, 2> kSinalMinimizar{{{6, 12, 16, 13}, {5, 13, 17, 15}}};

constexpr REAL kLadoDoFechar = 14;
constexpr ARGB kFecharAlto = Argb(255, 255, 255, 255);
constexpr ARGB kFecharBaixo = Argb(255, 186, 186, 186);
constexpr ARGB kFecharBaixoSobre = Argb(255, 236, 150, 130);
constexpr ARGB kFecharContorno = Argb(255, 70, 70, 70);
constexpr ARGB kCruz = Argb(255, 30, 30, 30);
constexpr ARGB kCruzSobre = Argb(255, 150, 20, 10);
constexpr REAL kLarguraDaCruz = 1.8F;

constexpr COLORREF kReguaDoRodape = RGB(96, 96, 96);
constexpr COLORREF kRodapeAlto = RGB(166, 166, 166);
constexpr COLORREF kRodapeBaixo = RGB(210, 210, 210);

constexpr ARGB kBorda = Argb(255, 64, 64, 64);
constexpr REAL kRaioDaBorda = 7;
constexpr REAL kLarguraDaBorda = 1.2F;

constexpr ARGB kPainelSombra = Argb(110, 120, 120, 120);
constexpr ARGB kPainelBrilho = Argb(200, 250, 250, 250);
constexpr ARGB kPainelContorno = Argb(255, 118, 118, 118);

constexpr ARGB kTrilhoAlto = Argb(255, 150, 150, 150);
constexpr ARGB kTrilhoBaixo = Argb(255, 200, 200, 200);
constexpr ARGB kTrilhoContorno = Argb(255, 96, 96, 96);
constexpr ARGB kBarraAlto = Argb(255, 150, 200, 255);
constexpr ARGB kBarraMeio = Argb(255, 70, 140, 235);
constexpr ARGB kBarraBaixo = Argb(255, 25, 80, 180);
constexpr REAL kLugarDoMeio = 0.45F;
constexpr ARGB kBarraLustro = Argb(110, 255, 255, 255);

void PintarTitulo(HDC dc, const AparenciaMoldura& a, const CoresDaTira& cores, const Fontes& fontes) {
    constexpr UINT kFormato = kUmaLinha | DT_CENTER;
    RECT r{kMargemDoTitulo, 0, a.largura - kMargemDoTitulo, kAlturaDaTira};
    if (!AltoContraste()) {
        OffsetRect(&r, 1, 1);
        Escrever(dc, a.titulo, r, Fontes::De(fontes.negrito), cores.sombra, kFormato);
        OffsetRect(&r, -1, -1);
    }
    Escrever(dc, a.titulo, r, Fontes::De(fontes.negrito), kTitulo, kFormato);
}

void PintarFechar(HDC dc, int largura, bool sobre) {
    const REAL x = static_cast<REAL>(CaixaFechar(largura).left);
    const Area lado{x, 3, kLadoDoFechar, kLadoDoFechar};
    const Caminho face(lado, 2);
    const ARGB cruz = sobre ? kCruzSobre : kCruz;
    Tela tela(dc);
    tela.Preencher(face, lado, kFecharAlto, sobre ? kFecharBaixoSobre : kFecharBaixo);
    tela.Contornar(face, kFecharContorno, 1);
    tela.Linha({x + 4, 7}, {x + 10, 13}, cruz, kLarguraDaCruz);
    tela.Linha({x + 10, 7}, {x + 4, 13}, cruz, kLarguraDaCruz);
}

}  // namespace

void PintarMoldura(HDC dc, const AparenciaMoldura& a, const Fontes& fontes) {
    const CoresDaTira& cores = a.ativa ? kTiraAtiva : kTiraInativa;
    PreencherRetangulo(dc, {0, 0, a.largura, a.altura}, kCorDaJanela);
    PreencherFaixa(dc, {0, 0, a.largura, kAlturaDaTira}, cores.alto, cores.baixo);
    PreencherRetangulo(dc, {0, kAlturaDaTira, a.largura, kAlturaDaTira + 1}, kReguaDaTira);
    PintarTitulo(dc, a, cores, fontes);
    if (a.comMinimizar) {
        const COLORREF cor = a.sobre == CaixaDaTira::kMinimizar ? kMinimizarSobre : kMinimizar;
        for (const RECT& r : kSinalMinimizar)
            PreencherRetangulo(dc, r, cor);
    }
    PintarFechar(dc, a.largura, a.sobre == CaixaDaTira::kFechar);
}

void PintarRodape(HDC dc, int largura, int altura, int faixa) {
    const int topo = altura - faixa;
    PreencherRetangulo(dc, {1, topo, largura - 1, topo + 1}, kReguaDoRodape);
    PreencherFaixa(dc, {1, topo + 1, largura - 1, altura - 1}, kRodapeAlto, kRodapeBaixo);
}

void PintarBorda(HDC dc, int largura, int altura) {
    const Area area{0.5F, 0.5F, static_cast<REAL>(largura) - 1.5F, static_cast<REAL>(altura) - 1.5F};
    Tela(dc).Contornar(Caminho(area, kRaioDaBorda), kBorda, kLarguraDaBorda);
}

void PintarPainel(HDC dc, const RECT& r) {
    const REAL x = static_cast<REAL>(r.left);
    const REAL y = static_cast<REAL>(r.top);
    const REAL w = static_cast<REAL>(r.right - r.left - 1);
    const REAL h = static_cast<REAL>(r.bottom - r.top - 1);
    const REAL raio = h / 2;
    const Caminho corpo({x, y, w, h}, raio);
    Tela tela(dc);
    tela.Contornar(Caminho({x, y + 1.5F, w, h}, raio), kPainelSombra, 1.4F);
    tela.Preencher(corpo, Opaca(kCorDoPainel));
    tela.Contornar(Caminho({x + raio, y + 1, w - h, 1}, 0.5F), kPainelBrilho, 1);
    tela.Contornar(corpo, kPainelContorno, 1);
}

void PintarProgresso(HDC dc, int x, int y, int largura, int altura, int valor) {
    const REAL esquerda = static_cast<REAL>(x);
    const REAL topo = static_cast<REAL>(y);
    const REAL w = static_cast<REAL>(largura);
    const REAL h = static_cast<REAL>(altura);
    const Area trilho{esquerda, topo, w, h};
    const Caminho capsula(trilho, h / 2);
    Tela tela(dc);
    tela.Preencher(capsula, trilho, kTrilhoAlto, kTrilhoBaixo);
    const REAL cheio = w * static_cast<REAL>(std::clamp(valor, 0, 100)) / 100;
    if (cheio > 0) {
        tela.Recortar({esquerda, topo, cheio, h});
        tela.Preencher(capsula, trilho, kBarraAlto, kBarraMeio, kBarraBaixo, kLugarDoMeio);
        tela.Preencher(Caminho({esquerda + 2, topo + 1, std::max<REAL>(1, cheio - 4), h * 0.4F}, h * 0.2F),
                       kBarraLustro);
        tela.SemRecorte();
    }
    tela.Contornar(capsula, kTrilhoContorno, 1);
}

}  // namespace zu::launcher

#include "ui/janelas/pintor_modal.h"

#include <algorithm>
#include <array>

namespace zu::launcher {
namespace {

constexpr int kFolgaDoPainel = 10;  // around the buttons: the round ends have one centre

struct CoresDoSinal {
    COLORREF fundo;
    COLORREF texto;
};
constexpr std::array<CoresDoSinal, 3> kCores{{
    {RGB(58, 168, 84), RGB(22, 104, 46)},
    {RGB(238, 168, 32), RGB(138, 84, 0)},
    {RGB(214, 56, 46), RGB(172, 28, 20)},
}};
constexpr CoresDoSinal kSemEstado{RGB(150, 150, 150), RGB(70, 70, 70)};

constexpr int kRelevoDoSinal = 26;
constexpr int kContornoDoSinal = -52;
constexpr ARGB kGlifo = Argb(255, 255, 255, 255);
constexpr REAL kTracoDoGlifo = 1.7F;

const CoresDoSinal& CoresDe(Situacao situacao) {
    return situacao ? kCores.at(static_cast<std::size_t>(*situacao)) : kSemEstado;
}

// From the mark's centre.
void PintarGlifo(Tela& tela, REAL x, REAL y, Situacao situacao) {
    if (!situacao) {
        tela.Linha({x - 2.4F, y}, {x + 2.4F, y}, kGlifo, kTracoDoGlifo);
    } else if (*situacao == EstadoItem::kOk) {
        tela.Linha({x - 2.8F, y + 0.2F}, {x - 0.8F, y + 2.3F}, kGlifo, kTracoDoGlifo);
        tela.Linha({x - 0.8F, y + 2.3F}, {x + 2.9F, y - 2.2F}, kGlifo, kTracoDoGlifo);
    } else if (*situacao == EstadoItem::kAviso) {
        tela.Linha({x, y - 3.1F}, {x, y + 0.5F}, kGlifo, kTracoDoGlifo);
        tela.Elipse({x - 1, y + 2, 2, 2}, kGlifo);
    } else {
        tela.Linha({x - 2.1F, y - 2.1F}, {x + 2.1F, y + 2.1F}, kGlifo, kTracoDoGlifo);
        tela.Linha({x + 2.1F, y - 2.1F}, {x - 2.1F, y + 2.1F}, kGlifo, kTracoDoGlifo);
    }
}

}  // namespace

void PintarBase(HDC dc, const AparenciaMoldura& moldura, const Trecho& botoes, const Fontes& fontes) {
    PintarMoldura(dc, moldura, fontes);
    PintarRodape(dc, moldura.largura, moldura.altura, kFaixaDosBotoes);
    const int topo = moldura.altura - kBotoesDoFim;
    PintarPainel(dc, {botoes.esquerda - kFolgaDoPainel, topo - kFolgaDoPainel, botoes.direita + kFolgaDoPainel,
                      topo + kAlturaDoBotao + kFolgaDoPainel});
}

void PintarSinal(HDC dc, int x, int y, Situacao situacao) {
    const COLORREF cor = CoresDe(situacao).fundo;
    const Area area{static_cast<REAL>(x) + 0.5F, static_cast<REAL>(y) + 0.5F, kLadoDoSinal - 1, kLadoDoSinal - 1};
    const Caminho circulo(area, area.altura / 2);
    Tela tela(dc);
    tela.Preencher(circulo, area, Opaca(Clarear(cor, kRelevoDoSinal)), Opaca(Clarear(cor, -kRelevoDoSinal)));
    tela.Contornar(circulo, Opaca(Clarear(cor, kContornoDoSinal)), 1);
    PintarGlifo(tela, area.x + area.largura / 2, area.y + area.altura / 2, situacao);
}

COLORREF CorDaSituacao(Situacao situacao) {
    return CoresDe(situacao).texto;
}

std::wstring PalavraDaSituacao(Situacao situacao) {
    if (!situacao) return {};
    switch (*situacao) {
        case EstadoItem::kOk:
            return L"em ordem";
        case EstadoItem::kAviso:
            return L"atenção";
        case EstadoItem::kFalha:
            return L"problema";
    }
    return {};
}

int AlturaDoTexto(HDC dc, std::wstring_view texto, HFONT fonte, int largura, int maximo) {
    if (texto.empty()) return 0;
    const Selecao selecao(dc, fonte);
    TEXTMETRICW metrica{};
    GetTextMetricsW(dc, &metrica);
    RECT r{0, 0, largura, 0};
    DrawTextW(dc, texto.data(), static_cast<int>(texto.size()), &r,
              DT_CALCRECT | DT_NOPREFIX | DT_WORDBREAK | DT_EDITCONTROL);
    return static_cast<int>(std::min(r.bottom, metrica.tmHeight * maximo));
}

}  // namespace zu::launcher

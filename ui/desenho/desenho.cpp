#include "ui/desenho/desenho.h"

#include <algorithm>
#include <array>

#include "ui/desenho/contraste.h"

namespace zu::launcher {
namespace {

using namespace Gdiplus::DllExports;

ULONG_PTR gdiplus = 0;

constexpr ARGB kBranca = Argb(255, 255, 255, 255);
constexpr LONG kMaiorTraco = 2;  // a rectangle as thin as that is a line

struct TracosPincel {
    using Tipo = Gdiplus::GpBrush*;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo p) noexcept { GdipDeleteBrush(p); }
};
using Pincel = Handle<TracosPincel>;

struct TracosCaneta {
    using Tipo = Gdiplus::GpPen*;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo p) noexcept { GdipDeletePen(p); }
};
using Caneta = Handle<TracosCaneta>;

Pincel PincelSolido(ARGB cor, Papel papel) {
    Gdiplus::GpSolidFill* pincel = nullptr;
    GdipCreateSolidFill(NoContraste(cor, papel), &pincel);
    return Pincel(pincel);
}

// Mirrored beyond its ends, so that a rounding at the edge does not wrap to the colour of the other end.
Pincel PincelDegrade(const Area& faixa, ARGB alto, ARGB baixo) {
    const Gdiplus::RectF r(faixa.x, faixa.y, faixa.largura, faixa.altura);
    Gdiplus::GpLineGradient* pincel = nullptr;
    GdipCreateLineBrushFromRect(&r, NoContraste(alto, Papel::kSuperficie), NoContraste(baixo, Papel::kSuperficie),
                                Gdiplus::LinearGradientModeVertical, Gdiplus::WrapModeTileFlipXY, &pincel);
    return Pincel(pincel);
}

Caneta CanetaSolida(ARGB cor, REAL largura, Papel papel = Papel::kTraco) {
    Gdiplus::GpPen* caneta = nullptr;
    GdipCreatePen1(NoContraste(cor, papel), largura, Gdiplus::UnitPixel, &caneta);
    return Caneta(caneta);
}

}  // namespace

bool IniciarDesenho() {
    LerContraste();
    const Gdiplus::GdiplusStartupInput entrada;
    return Gdiplus::GdiplusStartup(&gdiplus, &entrada, nullptr) == Gdiplus::Ok;
}

void EncerrarDesenho() {
    Gdiplus::GdiplusShutdown(gdiplus);
    gdiplus = 0;
}

Area AreaDe(const RECT& r, REAL margem) {
    return {static_cast<REAL>(r.left) + margem, static_cast<REAL>(r.top) + margem,
            static_cast<REAL>(r.right - r.left) - 2 * margem, static_cast<REAL>(r.bottom - r.top) - 2 * margem};
}

Caminho::Caminho() {
    Gdiplus::GpPath* novo = nullptr;
    Conferir(GdipCreatePath(Gdiplus::FillModeAlternate, &novo));
    caminho_.Trocar(novo);
}

Caminho::Caminho(const Area& area, REAL raio) : Caminho() {
    const REAL d = std::min({area.largura, area.altura, 2 * raio});
    const REAL direita = area.x + area.largura - d;
    const REAL baixo = area.y + area.altura - d;
    Arco({area.x, area.y, d, d}, 180, 90);
    Arco({direita, area.y, d, d}, 270, 90);
    Arco({direita, baixo, d, d}, 0, 90);
    Arco({area.x, baixo, d, d}, 90, 90);
    Fechar();
}

void Caminho::Arco(const Area& area, REAL inicio, REAL graus) {
    Conferir(GdipAddPathArc(Valor(), area.x, area.y, area.largura, area.altura, inicio, graus));
}

void Caminho::Fechar() {
    Conferir(GdipClosePathFigure(Valor()));
}

void Caminho::Conferir(Gdiplus::GpStatus s) {
    if (situacao_ == Gdiplus::Ok) situacao_ = s;
}

Tela::Tela(HDC dc) {
    GdipCreateFromHDC(dc, grafico_.Receber());
    GdipSetSmoothingMode(grafico_.Valor(), Gdiplus::SmoothingModeAntiAlias);
    GdipSetPixelOffsetMode(grafico_.Valor(), Gdiplus::PixelOffsetModeHighQuality);
}

void Tela::Preencher(const Caminho& caminho, ARGB cor) {
    GdipFillPath(grafico_.Valor(), PincelSolido(cor, Papel::kSuperficie).Valor(), caminho.Valor());
}

void Tela::Preencher(const Caminho& caminho, const Area& faixa, ARGB alto, ARGB baixo) {
    GdipFillPath(grafico_.Valor(), PincelDegrade(faixa, alto, baixo).Valor(), caminho.Valor());
}

void Tela::Preencher(const Caminho& caminho, const Area& faixa, ARGB alto, ARGB centro, ARGB baixo, REAL meio) {
    const Pincel pincel = PincelDegrade(faixa, alto, baixo);
    std::array cores{alto, centro, baixo};
    for (ARGB& cor : cores)
        cor = NoContraste(cor, Papel::kSuperficie);
    const std::array lugares{REAL{0}, meio, REAL{1}};
    GdipSetLinePresetBlend(static_cast<Gdiplus::GpLineGradient*>(pincel.Valor()), cores.data(), lugares.data(), 3);
    GdipFillPath(grafico_.Valor(), pincel.Valor(), caminho.Valor());
}

void Tela::Contornar(const Caminho& caminho, ARGB cor, REAL largura) {
    GdipDrawPath(grafico_.Valor(), CanetaSolida(cor, largura).Valor(), caminho.Valor());
}

void Tela::Linha(const Gdiplus::PointF& de, const Gdiplus::PointF& ate, ARGB cor, REAL largura) {
    const Caneta caneta = CanetaSolida(cor, largura, cor == kBranca ? Papel::kSinal : Papel::kTraco);
    GdipSetPenLineCap197819(caneta.Valor(), Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapFlat);
    GdipDrawLine(grafico_.Valor(), caneta.Valor(), de.X, de.Y, ate.X, ate.Y);
}

void Tela::Poligono(std::span<const Gdiplus::PointF> pontos, ARGB cor) {
    GdipFillPolygon(grafico_.Valor(), PincelSolido(cor, Papel::kTraco).Valor(), pontos.data(),
                    static_cast<INT>(pontos.size()), Gdiplus::FillModeAlternate);
}

void Tela::Arco(const Area& area, REAL inicio, REAL graus, ARGB cor, REAL largura) {
    GdipDrawArc(grafico_.Valor(), CanetaSolida(cor, largura).Valor(), area.x, area.y, area.largura, area.altura, inicio,
                graus);
}

void Tela::Elipse(const Area& area, ARGB cor) {
    GdipFillEllipse(grafico_.Valor(), PincelSolido(cor, Papel::kSinal).Valor(), area.x, area.y, area.largura,
                    area.altura);
}

void Tela::Recortar(const Caminho& caminho) {
    GdipSetClipPath(grafico_.Valor(), caminho.Valor(), Gdiplus::CombineModeReplace);
}

void Tela::Recortar(const Area& area) {
    GdipSetClipRect(grafico_.Valor(), area.x, area.y, area.largura, area.altura, Gdiplus::CombineModeReplace);
}

void Tela::SemRecorte() {
    GdipResetClip(grafico_.Valor());
}

void PreencherRetangulo(HDC dc, const RECT& r, COLORREF cor) {
    const bool traco = std::min(r.right - r.left, r.bottom - r.top) <= kMaiorTraco;
    SetDCBrushColor(dc, CorNoContraste(cor, traco ? Papel::kTraco : Papel::kSuperficie));
    FillRect(dc, &r, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void PreencherFaixa(HDC dc, const RECT& r, COLORREF alto, COLORREF baixo) {
    const int altura = r.bottom - r.top;
    if (AltoContraste()) {
        PreencherRetangulo(dc, r, alto);
        return;
    }
    for (int i = 0; i < altura; ++i) {
        // The colour at the row's middle, rounded.
        const auto canal = [&](int desvio) {
            const int a = static_cast<int>(alto >> desvio & 0xFF);
            const int b = static_cast<int>(baixo >> desvio & 0xFF);
            return static_cast<COLORREF>((a * (2 * (altura - i) - 1) + b * (2 * i + 1) + altura) / (2 * altura))
                   << desvio;
        };
        PreencherRetangulo(dc, {r.left, r.top + i, r.right, r.top + i + 1}, canal(0) | canal(8) | canal(16));
    }
}

void ContornarRetangulo(HDC dc, const RECT& r, COLORREF cor) {
    const Selecao caneta(dc, GetStockObject(DC_PEN));
    const Selecao pincel(dc, GetStockObject(NULL_BRUSH));
    SetDCPenColor(dc, CorNoContraste(cor, Papel::kTraco));
    Rectangle(dc, r.left, r.top, r.right, r.bottom);
}

void Escrever(HDC dc, std::wstring_view texto, RECT r, HFONT fonte, COLORREF cor, UINT formato) {
    const Selecao selecao(dc, fonte);
    SetTextColor(dc, CorNoContraste(cor, Papel::kTexto));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, texto.data(), static_cast<int>(texto.size()), &r, formato | DT_NOPREFIX);
}

BITMAPINFO InfoDoBitmap(int largura, int altura) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = largura;
    info.bmiHeader.biHeight = -altura;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

bool Retrato::Medir(HDC tela, SIZE tamanho) {
    if (dc_ && tamanho.cx == tamanho_.cx && tamanho.cy == tamanho_.cy) return true;
    dc_.Fechar();
    bitmap_.Trocar(CreateCompatibleBitmap(tela, tamanho.cx, tamanho.cy));
    if (!bitmap_) return false;
    dc_.Trocar(CreateCompatibleDC(tela));
    SelectObject(dc_.Valor(), bitmap_.Valor());
    tamanho_ = tamanho;
    return static_cast<bool>(dc_);
}

void Retrato::Copiar(HDC destino, const RECT& r, POINT de) const {
    BitBlt(destino, r.left, r.top, r.right - r.left, r.bottom - r.top, dc_.Valor(), de.x, de.y, SRCCOPY);
}

PinturaDupla::PinturaDupla(HWND janela) : pintura_(janela) {
    RECT r{};
    GetClientRect(janela, &r);
    retrato_.Medir(pintura_.Dc(), {r.right, r.bottom});
    const RECT& p = pintura_.Area();
    IntersectClipRect(retrato_.Dc(), p.left, p.top, p.right, p.bottom);
}

PinturaDupla::~PinturaDupla() {
    const RECT& p = pintura_.Area();
    retrato_.Copiar(pintura_.Dc(), p, {p.left, p.top});
}

}  // namespace zu::launcher

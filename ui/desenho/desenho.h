// The drawing surface of every window: anti-aliased shapes through GDI+'s flat interface, text and plain lines through
// GDI, and the double buffer that keeps painting free of flicker. Coordinates are pixels of a 96 DPI client area;
// `RECT` has its right and bottom edges outside, as GDI has it. For the thread that owns the windows, between
// `IniciarDesenho` and `EncerrarDesenho`. A call that GDI+ refuses draws nothing: a picture is never worth a failure.
#pragma once

#include <windows.h>
// after windows.h
#include <objidl.h>
// after objidl.h
#include <gdiplus.h>

#include <span>
#include <string_view>

#include "core/handle.h"

namespace zu::launcher {

using Gdiplus::ARGB;
using Gdiplus::REAL;

// GDI+ colours have alpha first; GDI's have none and red lowest.
constexpr ARGB Argb(unsigned alfa, unsigned r, unsigned g, unsigned b) {
    return alfa << 24 | r << 16 | g << 8 | b;
}
constexpr ARGB Opaca(COLORREF cor) {
    return Argb(255, cor & 0xFF, cor >> 8 & 0xFF, cor >> 16 & 0xFF);
}
// The colour moved towards white (`quanto` above 0) or black (below), a step a unit, clamped.
constexpr COLORREF Clarear(COLORREF cor, int quanto) {
    const auto canal = [&](int desvio) {
        const int valor = static_cast<int>(cor >> desvio & 0xFF) + quanto;
        return static_cast<COLORREF>(valor < 0 ? 0 : valor > 255 ? 255 : valor) << desvio;
    };
    return canal(0) | canal(8) | canal(16);
}

// True when GDI+ is ready. Calls pair with `EncerrarDesenho` and do not nest.
bool IniciarDesenho();
void EncerrarDesenho();

// An area in GDI+'s terms: the edges may lie between pixels.
struct Area {
    REAL x = 0;
    REAL y = 0;
    REAL largura = 0;
    REAL altura = 0;
};
// The whole area, or the one `margem` pixels inside.
Area AreaDe(const RECT& r, REAL margem = 0);

struct TracosCaminho {
    using Tipo = Gdiplus::GpPath*;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo p) noexcept { Gdiplus::DllExports::GdipDeletePath(p); }
};

// A figure to fill or outline. `Situacao` is the first status that was not Ok.
class Caminho {
 public:
    Caminho();
    // A rounded rectangle whose arcs have the diameter min(width, height, 2 x raio).
    Caminho(const Area& area, REAL raio);

    void Arco(const Area& area, REAL inicio, REAL graus);
    void Fechar();

    [[nodiscard]] Gdiplus::GpStatus Situacao() const { return situacao_; }
    [[nodiscard]] Gdiplus::GpPath* Valor() const { return caminho_.Valor(); }

 private:
    void Conferir(Gdiplus::GpStatus s);

    Gdiplus::GpStatus situacao_ = Gdiplus::Ok;
    Handle<TracosCaminho> caminho_;
};

struct TracosGrafico {
    using Tipo = Gdiplus::GpGraphics*;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo g) noexcept { Gdiplus::DllExports::GdipDeleteGraphics(g); }
};

// GDI+ over a device context, smoothed. GDI may draw on the context before and after, not during its life.
class Tela {
 public:
    explicit Tela(HDC dc);

    void Preencher(const Caminho& caminho, ARGB cor);
    // Vertical gradients over `faixa`, from its top to its bottom. The second form has a middle colour at `meio` (0 to
    // 1) of the way.
    void Preencher(const Caminho& caminho, const Area& faixa, ARGB alto, ARGB baixo);
    void Preencher(const Caminho& caminho, const Area& faixa, ARGB alto, ARGB centro, ARGB baixo, REAL meio);
    void Contornar(const Caminho& caminho, ARGB cor, REAL largura);
    void Linha(const Gdiplus::PointF& de, const Gdiplus::PointF& ate, ARGB cor, REAL largura);  // with round caps
    void Poligono(std::span<const Gdiplus::PointF> pontos, ARGB cor);
    void Arco(const Area& area, REAL inicio, REAL graus, ARGB cor, REAL largura);
    void Elipse(const Area& area, ARGB cor);

    // What is drawn from here on stays within the figure, the rectangle.
    void Recortar(const Caminho& caminho);
    void Recortar(const Area& area);
    void SemRecorte();

 private:
    Handle<TracosGrafico> grafico_;
};

void PreencherRetangulo(HDC dc, const RECT& r, COLORREF cor);
// A vertical gradient from the rectangle's top edge to its bottom edge. Row by row, which is cheaper than GDI+'s own.
void PreencherFaixa(HDC dc, const RECT& r, COLORREF alto, COLORREF baixo);
// A hollow rectangle with a line of 1 pixel.
void ContornarRetangulo(HDC dc, const RECT& r, COLORREF cor);
// How text is set: on one line, or over several, where a word that is too long is broken. What does not fit ends in an
// ellipsis.
constexpr UINT kUmaLinha = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS;
constexpr UINT kVariasLinhas = DT_WORDBREAK | DT_EDITCONTROL | DT_END_ELLIPSIS;
// DrawTextW over a transparent background.
void Escrever(HDC dc, std::wstring_view texto, RECT r, HFONT fonte, COLORREF cor, UINT formato);

// A bitmap of 32 bits a pixel, top row first, as GDI wants it described.
BITMAPINFO InfoDoBitmap(int largura, int altura);

struct TracosGdi {
    using Tipo = HGDIOBJ;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { DeleteObject(h); }
};
using HandleGdi = Handle<TracosGdi>;

struct TracosDc {
    using Tipo = HDC;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo dc) noexcept { DeleteDC(dc); }
};
using HandleDc = Handle<TracosDc>;

// Selects an object for as long as it lives.
class Selecao {
 public:
    Selecao(HDC dc, HGDIOBJ objeto) : dc_(dc), antigo_(SelectObject(dc, objeto)) {}
    Selecao(const Selecao&) = delete;
    Selecao& operator=(const Selecao&) = delete;
    ~Selecao() { SelectObject(dc_, antigo_); }

 private:
    HDC dc_;
    HGDIOBJ antigo_;
};

// A picture kept in memory, with pixels as the screen has them: drawn once, copied as often as it is shown.
class Retrato {
 public:
    // Room for as many pixels, undefined, when it has another size. False when the system refuses; it is empty then.
    bool Medir(HDC tela, SIZE tamanho);
    // Null while it is empty.
    [[nodiscard]] HDC Dc() const { return dc_.Valor(); }
    // What lies from `de` on goes to the rectangle.
    void Copiar(HDC destino, const RECT& r, POINT de) const;

 private:
    SIZE tamanho_{};
    HandleGdi bitmap_;
    HandleDc dc_;  // goes first, and lets go of the bitmap
};

// WM_PAINT, begun and ended.
class Pintura {
 public:
    explicit Pintura(HWND janela) : janela_(janela) { BeginPaint(janela, &pedido_); }
    Pintura(const Pintura&) = delete;
    Pintura& operator=(const Pintura&) = delete;
    ~Pintura() { EndPaint(janela_, &pedido_); }

    [[nodiscard]] HDC Dc() const { return pedido_.hdc; }
    // What of the client area needs painting.
    [[nodiscard]] const RECT& Area() const { return pedido_.rcPaint; }

 private:
    HWND janela_;
    PAINTSTRUCT pedido_{};
};

// A window's client area, to be drawn on outside of WM_PAINT.
class TelaDaJanela {
 public:
    explicit TelaDaJanela(HWND janela) : janela_(janela), dc_(GetDC(janela)) {}
    TelaDaJanela(const TelaDaJanela&) = delete;
    TelaDaJanela& operator=(const TelaDaJanela&) = delete;
    ~TelaDaJanela() { ReleaseDC(janela_, dc_); }

    [[nodiscard]] HDC Dc() const { return dc_; }
    // Whether any of it is on the screen.
    [[nodiscard]] bool SeVe() const {
        RECT r{};
        return GetClipBox(dc_, &r) > NULLREGION;
    }

 private:
    HWND janela_;
    HDC dc_;
};

// WM_PAINT: `pintor(HDC)` paints the client area into memory; what needs painting reaches the window in one copy.
class PinturaDupla {
 public:
    explicit PinturaDupla(HWND janela);
    PinturaDupla(const PinturaDupla&) = delete;
    PinturaDupla& operator=(const PinturaDupla&) = delete;
    ~PinturaDupla();

    [[nodiscard]] HDC Dc() const { return retrato_.Dc(); }

 private:
    Pintura pintura_;
    Retrato retrato_;
};

template <class Pintor>
void PintarJanela(HWND janela, const Pintor& pintor) {
    const PinturaDupla pintura(janela);
    pintor(pintura.Dc());
}

}  // namespace zu::launcher

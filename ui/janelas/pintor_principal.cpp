#include "ui/janelas/pintor_principal.h"

#include <array>

#include "ui/desenho/contraste.h"

namespace zu::launcher {
namespace {

constexpr RECT kFaixaDoCabecalho{1, 20, 453, 45};
constexpr COLORREF kCabecalhoAlto = RGB(252, 252, 252);
constexpr COLORREF kCabecalhoBaixo = RGB(204, 204, 204);
constexpr RECT kReguaDoCabecalho{1, 44, 453, 45};
constexpr COLORREF kCorDaRegua = RGB(150, 150, 150);

constexpr wchar_t kLetreiro[] = L"ZU";
constexpr COLORREF kCorDoLetreiro = RGB(24, 24, 24);
constexpr int kLetreiroX = 10;
constexpr int kLetreiroFolga = 12;
constexpr wchar_t kMarca[] = L"TORVAL 97 C+";
constexpr COLORREF kCorDaMarca = RGB(40, 40, 40);
constexpr int kEspacoDaMarca = 4;  // between characters
constexpr int kMarcaInicio = 18;   // from the sign's width
constexpr int kMarcaFim = 172;
constexpr int kMarcaTopo = 23;

struct LinhaDoCentro {
    RECT r;
    COLORREF cor;
};
constexpr std::array<LinhaDoCentro, 2> kQuadroDoCentro{
    {{{6, 46, 448, 385}, RGB(96, 96, 96)}, {{7, 47, 447, 384}, RGB(255, 255, 255)}}};
constexpr LinhaDoCentro kContornoDoCentro{{8, 48, 446, 383}, RGB(255, 255, 255)};
constexpr COLORREF kFundoDoCentro = RGB(8, 4, 6);
constexpr int kAlturaDoLogo = 293;
constexpr int kTopoDoLogo = 59;
constexpr COLORREF kCorDaFalha = RGB(200, 170, 120);

constexpr COLORREF kCorDoPercentual = RGB(0, 0, 0);

void PintarCabecalho(HDC dc, const FontesDaPrincipal& proprias) {
    constexpr UINT kFormato = DT_LEFT | DT_VCENTER | DT_SINGLELINE;
    PreencherFaixa(dc, kFaixaDoCabecalho, kCabecalhoAlto, kCabecalhoBaixo);
    PreencherRetangulo(dc, kReguaDoCabecalho, kCorDaRegua);
    const HFONT letreiro = Fontes::De(proprias.letreiro);
    const int largura = LarguraDoTexto(kLetreiro, letreiro);
    Escrever(dc, kLetreiro, {kLetreiroX, kFaixaDoCabecalho.top, largura + kLetreiroFolga, kFaixaDoCabecalho.bottom},
             letreiro, kCorDoLetreiro, kFormato);
    const int espaco = SetTextCharacterExtra(dc, kEspacoDaMarca);
    Escrever(dc, kMarca, {largura + kMarcaInicio, kMarcaTopo, largura + kMarcaFim, kFaixaDoCabecalho.bottom},
             Fontes::De(proprias.marca), kCorDaMarca, kFormato);
    SetTextCharacterExtra(dc, espaco);
}

void PintarLogo(HDC dc, const LogoEncaixado& logo) {
    const HandleDc origem(CreateCompatibleDC(dc));
    const Selecao selecao(origem.Valor(), logo.Bitmap());
    const Tamanho t = logo.Medida();
    const int x = (kLarguraPrincipal - t.largura) / 2;
    const int y = (kAlturaDoLogo - t.altura) / 2 + kTopoDoLogo;
    BitBlt(dc, x, y, t.largura, t.altura, origem.Valor(), 0, 0, SRCCOPY);
}

void PintarCentro(HDC dc, CentroDaPrincipal centro, const LogoEncaixado& logo, const Fontes& fontes) {
    ContornarRetangulo(dc, kContornoDoCentro.r, kContornoDoCentro.cor);
    PreencherRetangulo(dc, kCentro, kFundoDoCentro);
    if (centro == CentroDaPrincipal::kSite) return;
    if (!logo.Vazio()) PintarLogo(dc, logo);
    if (centro == CentroDaPrincipal::kFalhaDoSite) {
        Escrever(dc, kTextoDaFalhaDoSite, kLinhaDaFalha, Fontes::De(fontes.normal), kCorDaFalha,
                 DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
}

void PintarBarra(HDC dc, const BarraDaPrincipal& barra, int valor, const FontesDaPrincipal& proprias) {
    const Lugar& l = barra.lugar;
    PintarProgresso(dc, l.x, l.y, l.w, l.h, valor);
    Escrever(dc, std::to_wstring(valor) + L"%", barra.percentual, Fontes::De(proprias.percentual), kCorDoPercentual,
             DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
}

}  // namespace

LogoEncaixado::LogoEncaixado(const LogoCentral& logo) {
    if (logo.Vazia()) return;
    medida_ = EncaixarLogo(logo.largura, logo.altura);
    if (medida_.largura == 0 || medida_.altura == 0) return;
    const HandleDc dc(CreateCompatibleDC(nullptr));
    const BITMAPINFO original = InfoDoBitmap(logo.largura, logo.altura);
    const BITMAPINFO info = InfoDoBitmap(medida_.largura, medida_.altura);
    void* pixels = nullptr;
    bitmap_.Trocar(CreateDIBSection(dc.Valor(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    const Selecao selecao(dc.Valor(), bitmap_.Valor());
    SetStretchBltMode(dc.Valor(), HALFTONE);
    SetBrushOrgEx(dc.Valor(), 0, 0, nullptr);
    StretchDIBits(dc.Valor(), 0, 0, medida_.largura, medida_.altura, 0, 0, logo.largura, logo.altura,
                  logo.pixels.data(), &original, DIB_RGB_COLORS, SRCCOPY);
    GdiFlush();
}

void PinturaDaPrincipal::Pintar(HDC dc, const AparenciaPrincipal& a, const Fontes& fontes) {
    constexpr RECT kTudo{0, 0, kLarguraPrincipal, kAlturaPrincipal};
    if (!fundo_.Medir(dc, {kTudo.right, kTudo.bottom})) {
        mostrado_.reset();
        PintarTudo(dc, a, fontes);
        return;
    }
    const std::tuple pedido(a.titulo, a.ativa, a.sobre, a.centro, GeracaoDasCores());
    if (mostrado_ != pedido) PintarFundo(fundo_.Dc(), a, fontes);
    mostrado_ = pedido;
    fundo_.Copiar(dc, kTudo, {0, 0});
    PintarBarras(dc, a);
}

void PinturaDaPrincipal::PintarTudo(HDC dc, const AparenciaPrincipal& a, const Fontes& fontes) const {
    PintarFundo(dc, a, fontes);
    PintarBarras(dc, a);
}

void PinturaDaPrincipal::PintarFundo(HDC dc, const AparenciaPrincipal& a, const Fontes& fontes) const {
    PintarMoldura(dc, {kLarguraPrincipal, kAlturaPrincipal, a.titulo, a.ativa, true, a.sobre}, fontes);
    PintarCabecalho(dc, proprias_);
    for (const LinhaDoCentro& linha : kQuadroDoCentro)
        ContornarRetangulo(dc, linha.r, linha.cor);
    PintarCentro(dc, a.centro, logo_, fontes);
    PintarRodape(dc, kLarguraPrincipal, kAlturaPrincipal, kRodapeDaPrincipal);
    for (const RECT& painel : kPaineisDaPrincipal)
        PintarPainel(dc, painel);
    PintarBorda(dc, kLarguraPrincipal, kAlturaPrincipal);
}

void PinturaDaPrincipal::PintarBarras(HDC dc, const AparenciaPrincipal& a) const {
    for (std::size_t i = 0; i < kBarrasDaPrincipal.size(); ++i)
        PintarBarra(dc, kBarrasDaPrincipal.at(i), a.barras.at(i), proprias_);
}

}  // namespace zu::launcher

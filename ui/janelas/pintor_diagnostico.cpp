#include "ui/janelas/pintor_diagnostico.h"

#include <algorithm>
#include <array>

namespace zu::launcher {
namespace {

constexpr wchar_t kTituloDaTabela[] = L"Diagnóstico completo (Zu.exe --requisitos-json):";
constexpr RECT kLugarDoTitulo{14, 28, 766, 48};

constexpr RECT kCabecalho{14, 52, 766, 74};
constexpr COLORREF kCabecalhoAlto = RGB(250, 250, 250);
constexpr COLORREF kCabecalhoBaixo = RGB(200, 200, 200);

constexpr COLORREF kRegua = RGB(150, 150, 150);
constexpr COLORREF kReguaFina = RGB(204, 204, 204);
constexpr COLORREF kFundoPar = RGB(226, 226, 226);
constexpr COLORREF kFundoImpar = RGB(238, 238, 238);

constexpr int kFolgaDoFim = 10;  // between the table and the footer
constexpr int kMenorAreaDeLinhas = 60;

constexpr int kSituacao = 3;
// The last one leaves room for the scroll bar.
constexpr std::array<ColunaDoDiagnostico, kColunasDoDiagnostico> kColunas{{
    {L"Item", &LinhaDiagnostico::nome, 14, 118},
    {L"Seu computador", &LinhaDiagnostico::valor, 132, 196},
    {L"Mínimo", &LinhaDiagnostico::minimo, 328, 132},
    {L"Situação", &LinhaDiagnostico::situacao, 460, 138},
    {L"O que fazer", &LinhaDiagnostico::conselho, 598, 157},
}};
constexpr int kRecuo = 8;          // of a cell's text
constexpr int kRecuoDoSinal = 18;  // of a text behind a mark, further
constexpr int kFolgaDaLinha = 5;   // above and below a row's text
constexpr int kMenorLinha = 25;
constexpr int kLinhasDaCelula = 40;

constexpr int kLarguraDoTrilho = 11;
constexpr COLORREF kTrilho = RGB(212, 212, 212);
constexpr ARGB kPolegarAlto = Argb(255, 176, 184, 196);
constexpr ARGB kPolegarBaixo = Argb(255, 140, 148, 162);
constexpr ARGB kContornoDoPolegar = Argb(255, 104, 110, 122);

struct Celula {
    std::wstring_view texto;
    HFONT fonte;
    COLORREF cor;
    RECT lugar;  // of the text in a row that begins at 0 and is as high as it needs
};

Celula CelulaDe(const LinhaDiagnostico& linha, int coluna, const Fontes& fontes) {
    const std::array<COLORREF, kColunasDoDiagnostico> cores{kCorDoTexto, kCorDoTexto, kCorDoTextoMenor,
                                                            CorDaSituacao(linha.estado), kCorDoTexto};
    const bool forte = coluna == 0 || coluna == kSituacao;
    const ColunaDoDiagnostico& c = ColunaDe(coluna);
    const int recuo = kRecuo + (coluna == kSituacao ? kRecuoDoSinal : 0);
    return {linha.*c.texto,
            Fontes::De(forte ? fontes.negrito2 : fontes.normal),
            cores.at(static_cast<std::size_t>(coluna)),
            {c.x + recuo, 0, c.x + c.largura - kRecuo / 2, 0}};
}

int AlturaDaLinha(HDC dc, const LinhaDiagnostico& linha, const Fontes& fontes) {
    int altura = kMenorLinha;
    for (int i = 0; i < kColunasDoDiagnostico; ++i) {
        const Celula c = CelulaDe(linha, i, fontes);
        const int texto = AlturaDoTexto(dc, c.texto, c.fonte, c.lugar.right - c.lugar.left, kLinhasDaCelula);
        altura = std::max(altura, texto + 2 * kFolgaDaLinha);
    }
    return altura;
}

void PintarCabecalho(HDC dc, const Fontes& fontes) {
    PreencherFaixa(dc, kCabecalho, kCabecalhoAlto, kCabecalhoBaixo);
    for (const ColunaDoDiagnostico& c : kColunas) {
        if (c.x > kCabecalho.left) PreencherRetangulo(dc, {c.x, kCabecalho.top, c.x + 1, kCabecalho.bottom}, kRegua);
        Escrever(dc, c.titulo, {c.x + kRecuo, kCabecalho.top, c.x + c.largura, kCabecalho.bottom},
                 Fontes::De(fontes.negrito), kCorDoTexto, kUmaLinha);
    }
}

void PintarLinha(HDC dc, const LinhaDiagnostico& linha, const RECT& r, COLORREF fundo, const Fontes& fontes) {
    PreencherRetangulo(dc, r, fundo);
    PreencherRetangulo(dc, {r.left, r.bottom - 1, r.right, r.bottom}, kReguaFina);
    for (int i = 0; i < kColunasDoDiagnostico; ++i) {
        const Celula c = CelulaDe(linha, i, fontes);
        const RECT lugar{c.lugar.left, r.top + kFolgaDaLinha, c.lugar.right, r.bottom - kFolgaDaLinha};
        Escrever(dc, c.texto, lugar, c.fonte, c.cor, kVariasLinhas);
    }
    if (linha.estado) PintarSinal(dc, kColunas[kSituacao].x + kRecuo, r.top + kFolgaDaLinha, linha.estado);
}

void PintarLinhas(HDC dc, const RECT& area, const AparenciaDiagnostico& a, const Fontes& fontes) {
    PreencherRetangulo(dc, area, kFundoPar);
    if (a.linhas.empty()) {
        RECT r = area;
        InflateRect(&r, -kRecuo, -kRecuo);
        Escrever(dc, a.semLinhas, r, Fontes::De(fontes.normal), kCorDoTextoMenor, kVariasLinhas);
        return;
    }
    const int salvo = SaveDC(dc);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    const int inicio = area.top - a.rolagem;
    for (std::size_t i = 0; i < a.linhas.size(); ++i) {
        const RECT r{area.left, inicio + a.topos[i], area.right, inicio + a.topos[i + 1]};
        if (r.bottom > area.top && r.top < area.bottom)
            PintarLinha(dc, a.linhas[i], r, i % 2 == 0 ? kFundoImpar : kFundoPar, fontes);
    }
    RestoreDC(dc, salvo);
}

void PintarRolagem(HDC dc, const AparenciaDiagnostico& a, int altura) {
    const MedidasDaRolagem medidas = RolagemDoDiagnostico(a, altura);
    if (medidas.limite == 0) return;
    PreencherRetangulo(dc, medidas.trilho, kTrilho);
    const Area face = AreaDe(PolegarDaRolagem(medidas, a.rolagem), 1.5F);
    const Caminho figura(face, face.largura / 2);
    Tela tela(dc);
    tela.Preencher(figura, face, kPolegarAlto, kPolegarBaixo);
    tela.Contornar(figura, kContornoDoPolegar, 1);
}

}  // namespace

void MedirDiagnostico(AparenciaDiagnostico& a, const Fontes& fontes) {
    const HandleDc dc(CreateCompatibleDC(nullptr));
    a.topos = {0};
    for (const LinhaDiagnostico& linha : a.linhas)
        a.topos.push_back(a.topos.back() + AlturaDaLinha(dc.Valor(), linha, fontes));
}

int AlturaDoDiagnostico(const AparenciaDiagnostico& a) {
    return kCabecalho.bottom + std::max(a.topos.back(), kMenorAreaDeLinhas) + kFolgaDoFim + kFaixaDosBotoes;
}

RECT AreaDasLinhas(int altura) {
    return {kCabecalho.left, kCabecalho.bottom, kCabecalho.right, altura - kFaixaDosBotoes - kFolgaDoFim};
}

const ColunaDoDiagnostico& ColunaDe(int coluna) {
    return kColunas.at(static_cast<std::size_t>(coluna));
}

RECT LugarDoTitulo(int coluna) {
    const ColunaDoDiagnostico& c = ColunaDe(coluna);
    return {c.x, kCabecalho.top, c.x + c.largura, kCabecalho.bottom};
}

RECT LugarDaCelula(const AparenciaDiagnostico& a, std::size_t linha, int coluna, int altura) {
    const ColunaDoDiagnostico& c = ColunaDe(coluna);
    const RECT area = AreaDasLinhas(altura);
    const int inicio = area.top - a.rolagem;
    const RECT inteira{c.x, inicio + a.topos[linha], c.x + c.largura, inicio + a.topos[linha + 1]};
    RECT visivel{};
    IntersectRect(&visivel, &inteira, &area);
    return visivel;
}

MedidasDaRolagem RolagemDoDiagnostico(const AparenciaDiagnostico& a, int altura) {
    RECT trilho = AreaDasLinhas(altura);
    trilho.left = trilho.right - kLarguraDoTrilho;
    return {.trilho = trilho, .limite = std::max(0, a.topos.back() - static_cast<int>(trilho.bottom - trilho.top))};
}

void PintarDiagnostico(HDC dc, const AparenciaMoldura& moldura, const AparenciaDiagnostico& a, const Fontes& fontes) {
    PintarBase(dc, moldura, a.botoes, fontes);
    Escrever(dc, kTituloDaTabela, kLugarDoTitulo, Fontes::De(fontes.negrito), kCorDoTexto, kUmaLinha);
    const RECT area = AreaDasLinhas(moldura.altura);
    PintarLinhas(dc, area, a, fontes);
    PintarRolagem(dc, a, moldura.altura);
    PintarCabecalho(dc, fontes);
    ContornarRetangulo(dc, {area.left, kCabecalho.top, area.right, area.bottom}, kRegua);
    PreencherRetangulo(dc, {area.left, area.top - 1, area.right, area.top}, kRegua);
}

}  // namespace zu::launcher

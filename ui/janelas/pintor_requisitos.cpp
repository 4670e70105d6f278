#include "ui/janelas/pintor_requisitos.h"

namespace zu::launcher {
namespace {

constexpr int kEsquerda = 14;
constexpr int kDireita = 486;
constexpr int kSinalX = 19;
constexpr int kTextoX = 38;
constexpr int kValorX = 140;

constexpr int kYTitulo = 28;
constexpr int kAlturaDoTitulo = 20;
constexpr int kYTexto = 49;
constexpr int kLinhasDoTexto = 3;
constexpr int kFolga = 5;  // between the parts

constexpr int kAlturaDaLinha = 20;
constexpr COLORREF kFundoPar = RGB(222, 222, 222);
constexpr COLORREF kFundoImpar = RGB(232, 232, 232);
constexpr COLORREF kContornoDaTabela = RGB(160, 160, 160);

constexpr RECT kPasta{kEsquerda, 214, kDireita, 232};

void PintarVeredito(HDC dc, const AparenciaRequisitos& a, const RECT& lugar, const Fontes& fontes) {
    const COLORREF cor = CorDaSituacao(a.situacao);
    PintarSinal(dc, kSinalX, kYTitulo + (kAlturaDoTitulo - kLadoDoSinal) / 2, a.situacao);
    Escrever(dc, a.titulo, {kTextoX, kYTitulo, kDireita, kYTitulo + kAlturaDoTitulo}, Fontes::De(fontes.titulo), cor,
             kUmaLinha);
    Escrever(dc, a.texto, lugar, Fontes::De(fontes.normal), cor, kVariasLinhas);
}

void PintarLinha(HDC dc, const LinhaRequisito& linha, const RECT& r, COLORREF fundo, const Fontes& fontes) {
    PreencherRetangulo(dc, r, fundo);
    PintarSinal(dc, kSinalX, r.top + (kAlturaDaLinha - kLadoDoSinal) / 2, linha.situacao);
    Escrever(dc, linha.nome, {kTextoX, r.top, kValorX, r.bottom}, Fontes::De(fontes.negrito2), kCorDoTexto, kUmaLinha);
    Escrever(dc, linha.valor, {kValorX, r.top, r.right - kFolga, r.bottom}, Fontes::De(fontes.normal), kCorDoTexto,
             kUmaLinha);
}

void PintarLinhas(HDC dc, const AparenciaRequisitos& a, const std::vector<RECT>& lugares, const Fontes& fontes) {
    if (lugares.empty()) return;
    for (std::size_t i = 0; i < lugares.size(); ++i)
        PintarLinha(dc, a.linhas[i], lugares[i], i % 2 == 0 ? kFundoImpar : kFundoPar, fontes);
    ContornarRetangulo(dc, {kEsquerda, lugares.front().top, kDireita, lugares.back().bottom}, kContornoDaTabela);
}

// A label, and what it is for beside it.
void PintarRotulado(HDC dc, const wchar_t* rotulo, std::wstring_view texto, const RECT& r, COLORREF cor, UINT formato,
                    const Fontes& fontes) {
    Escrever(dc, rotulo, {kTextoX, r.top, kValorX, r.top + kAlturaDaLinha}, Fontes::De(fontes.negrito2), kCorDoTexto,
             DT_SINGLELINE);
    Escrever(dc, texto, {kValorX, r.top, r.right, r.bottom}, Fontes::De(fontes.normal), cor, formato);
}

}  // namespace

LugaresDosRequisitos MedirRequisitos(const AparenciaRequisitos& a, const Fontes& fontes) {
    const HandleDc dc(CreateCompatibleDC(nullptr));
    const HFONT fonte = Fontes::De(fontes.normal);
    LugaresDosRequisitos lugares;
    int y = kYTexto + AlturaDoTexto(dc.Valor(), a.texto, fonte, kDireita - kTextoX, kLinhasDoTexto);
    lugares.texto = {kTextoX, kYTexto, kDireita, y};
    y += kFolga;
    for (std::size_t i = 0; i < a.linhas.size(); ++i, y += kAlturaDaLinha)
        lugares.linhas.push_back({kEsquerda, y, kDireita, y + kAlturaDaLinha});
    if (!a.linhas.empty()) y += kFolga;
    lugares.conselhos = {kTextoX, y, kDireita, kPasta.top - 1};
    lugares.pasta = kPasta;
    return lugares;
}

void PintarRequisitos(HDC dc, const AparenciaMoldura& moldura, const AparenciaRequisitos& a,
                      const LugaresDosRequisitos& lugares, const Fontes& fontes) {
    PintarBase(dc, moldura, a.botoes, fontes);
    PintarVeredito(dc, a, lugares.texto, fontes);
    PintarLinhas(dc, a, lugares.linhas, fontes);
    if (!a.conselhos.empty()) {
        PintarRotulado(dc, L"O que fazer:", a.conselhos, lugares.conselhos, kCorDoTexto, kVariasLinhas, fontes);
    }
    PintarRotulado(dc, L"Pasta do jogo:", a.pasta, lugares.pasta, kCorDoTextoMenor, DT_SINGLELINE | DT_PATH_ELLIPSIS,
                   fontes);
}

}  // namespace zu::launcher

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

// Returns where the next part begins.
int PintarVeredito(HDC dc, const AparenciaRequisitos& a, const Fontes& fontes) {
    const COLORREF cor = CorDaSituacao(a.situacao);
    PintarSinal(dc, kSinalX, kYTitulo + (kAlturaDoTitulo - kLadoDoSinal) / 2, a.situacao);
    Escrever(dc, a.titulo, {kTextoX, kYTitulo, kDireita, kYTitulo + kAlturaDoTitulo}, Fontes::De(fontes.titulo), cor,
             kUmaLinha);
    const HFONT fonte = Fontes::De(fontes.normal);
    const int fim = kYTexto + AlturaDoTexto(dc, a.texto, fonte, kDireita - kTextoX, kLinhasDoTexto);
    Escrever(dc, a.texto, {kTextoX, kYTexto, kDireita, fim}, fonte, cor, kVariasLinhas);
    return fim + kFolga;
}

int PintarLinhas(HDC dc, int y, const AparenciaRequisitos& a, const Fontes& fontes) {
    if (a.linhas.empty()) return y;
    const int topo = y;
    COLORREF fundo = kFundoImpar;
    for (const LinhaRequisito& linha : a.linhas) {
        const int fim = y + kAlturaDaLinha;
        PreencherRetangulo(dc, {kEsquerda, y, kDireita, fim}, fundo);
        fundo = fundo == kFundoPar ? kFundoImpar : kFundoPar;
        PintarSinal(dc, kSinalX, y + (kAlturaDaLinha - kLadoDoSinal) / 2, linha.situacao);
        Escrever(dc, linha.nome, {kTextoX, y, kValorX, fim}, Fontes::De(fontes.negrito2), kCorDoTexto, kUmaLinha);
        Escrever(dc, linha.valor, {kValorX, y, kDireita - kFolga, fim}, Fontes::De(fontes.normal), kCorDoTexto,
                 kUmaLinha);
        y = fim;
    }
    ContornarRetangulo(dc, {kEsquerda, topo, kDireita, y}, kContornoDaTabela);
    return y + kFolga;
}

void PintarRotulo(HDC dc, const wchar_t* rotulo, int y, const Fontes& fontes) {
    Escrever(dc, rotulo, {kTextoX, y, kValorX, y + kAlturaDaLinha}, Fontes::De(fontes.negrito2), kCorDoTexto,
             DT_SINGLELINE);
}

}  // namespace

void PintarRequisitos(HDC dc, const AparenciaMoldura& moldura, const AparenciaRequisitos& a, const Fontes& fontes) {
    PintarBase(dc, moldura, a.botoes, fontes);
    const int y = PintarLinhas(dc, PintarVeredito(dc, a, fontes), a, fontes);
    if (!a.conselhos.empty()) {
        PintarRotulo(dc, L"O que fazer:", y, fontes);
        Escrever(dc, a.conselhos, {kValorX, y, kDireita, kPasta.top - 1}, Fontes::De(fontes.normal), kCorDoTexto,
                 kVariasLinhas);
    }
    PintarRotulo(dc, L"Pasta do jogo:", kPasta.top, fontes);
    Escrever(dc, a.pasta, {kValorX, kPasta.top, kPasta.right, kPasta.bottom}, Fontes::De(fontes.normal),
             kCorDoTextoMenor, DT_SINGLELINE | DT_PATH_ELLIPSIS);
}

}  // namespace zu::launcher

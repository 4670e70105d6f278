#include "ui/janelas/pintor_opcoes.h"

#include <array>

#include "ui/janelas/medidas_opcoes.h"
#include "ui/janelas/pintor_modal.h"

namespace zu::launcher {
namespace {

constexpr int kEsquerda = 14;
constexpr int kDireita = 426;
constexpr int kFimDosRotulos = 152;
constexpr int kAlturaDaLinha = 22;

struct TextoEm {
    int y;
    const wchar_t* texto;
};
constexpr std::array<TextoEm, 3> kSecoes{{{30, L"API gráfica"}, {118, L"Tela"}, {258, L"Som e geral"}}};
constexpr int kAlturaDaSecao = 18;
constexpr int kFolgaDaRegua = 8;  // from a heading to the rule behind it
constexpr COLORREF kCorDaSecao = RGB(32, 62, 120);
constexpr COLORREF kReguaEscura = RGB(160, 160, 160);
constexpr COLORREF kReguaClara = RGB(244, 244, 244);

constexpr RECT kNota{14, 392, 426, 422};
constexpr wchar_t kTextoDaNota[] =
    L"As opções gráficas finas (DLSS, ray tracing, sombras, água...) ficam no jogo: ESC → Opções. Tudo é gravado no "
    L"mesmo Config\\Zu.ini do jogo.";

// Where the panel's buttons begin and end, with what it leaves beside them.
constexpr int kInicioDosBotoes = 60;
constexpr int kFimDosBotoes = 380;

void PintarSecao(HDC dc, const TextoEm& secao, const Fontes& fontes) {
    const HFONT fonte = Fontes::De(fontes.negrito);
    Escrever(dc, secao.texto, {kEsquerda, secao.y, kDireita, secao.y + kAlturaDaSecao}, fonte, kCorDaSecao, kUmaLinha);
    const int x = kEsquerda + LarguraDoTexto(secao.texto, fonte) + kFolgaDaRegua;
    const int meio = secao.y + kAlturaDaSecao / 2;
    PreencherRetangulo(dc, {x, meio, kDireita, meio + 1}, kReguaEscura);
    PreencherRetangulo(dc, {x, meio + 1, kDireita, meio + 2}, kReguaClara);
}

}  // namespace

void PintarOpcoes(HDC dc, const AparenciaMoldura& moldura, const Fontes& fontes) {
    PintarBase(dc, moldura, {kInicioDosBotoes, kFimDosBotoes}, fontes);
    for (const TextoEm& secao : kSecoes)
        PintarSecao(dc, secao, fontes);
    for (const ListaDasOpcoes& linha : kListasDasOpcoes) {
        Escrever(dc, linha.rotulo, {kEsquerda, linha.y, kFimDosRotulos, linha.y + kAlturaDaLinha},
                 Fontes::De(fontes.negrito2), kCorDoTexto, kUmaLinha);
    }
    Escrever(dc, kTextoDaNota, kNota, Fontes::De(fontes.pequena), kCorDoTextoMenor, kVariasLinhas);
}

}  // namespace zu::launcher

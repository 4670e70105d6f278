#include "ui/desenho/fontes.h"

#include <utility>

namespace zu::launcher {
namespace {

constexpr wchar_t kArial[] = L"Arial";

Fontes& Compartilhadas() {
    static Fontes fontes;
    return fontes;
}

}  // namespace

HandleGdi CriarFonte(const wchar_t* face, int altura, int peso) {
    return HandleGdi(CreateFontW(-altura, 0, 0, 0, peso, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                 CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, face));
}

Fontes CriarFontes() {
    Fontes fontes;
    fontes.normal = CriarFonte(kArial, 12, FW_NORMAL);
    fontes.negrito = CriarFonte(kArial, 12, FW_BOLD);
    fontes.negrito2 = CriarFonte(kArial, 12, FW_BOLD);
    fontes.pequena = CriarFonte(kArial, 11, FW_NORMAL);
    fontes.titulo = CriarFonte(kArial, 14, FW_BOLD);
    return fontes;
}

const Fontes& FontesDaInterface() {
    return Compartilhadas();
}

void DefinirFontesDaInterface(Fontes fontes) {
    Compartilhadas() = std::move(fontes);
}

int LarguraDoTexto(std::wstring_view texto, HFONT fonte) {
    const HandleDc dc(CreateCompatibleDC(nullptr));
    const Selecao selecao(dc.Valor(), fonte);
    SIZE tamanho{};
    GetTextExtentPoint32W(dc.Valor(), texto.data(), static_cast<int>(texto.size()), &tamanho);
    return tamanho.cx;
}

}  // namespace zu::launcher

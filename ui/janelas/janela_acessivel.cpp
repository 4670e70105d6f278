#include "ui/janelas/janela_acessivel.h"

namespace zu::launcher {
namespace {

Elemento Caixa(const wchar_t* nome, const RECT& lugar, bool disponivel) {
    Elemento e{.nome = nome, .papel = ROLE_SYSTEM_PUSHBUTTON, .lugar = lugar};
    if (disponivel)
        e.acao = L"Pressionar";
    else
        e.estado = STATE_SYSTEM_UNAVAILABLE;
    return e;
}

}  // namespace

HWND JanelaAcessivel::Handle() const {
    return Janela::De(janela_) != nullptr ? janela_ : nullptr;
}

Elemento JanelaAcessivel::Inteiro() const {
    const Janela& janela = *Janela::De(janela_);
    Elemento e{.nome = janela.Titulo(), .papel = ROLE_SYSTEM_DIALOG, .descricao = janela.Descricao()};
    if (!IsWindowVisible(janela_)) e.estado |= STATE_SYSTEM_INVISIBLE;
    if (IsIconic(janela_)) e.estado |= STATE_SYSTEM_OFFSCREEN;
    e.estado |= IsWindowEnabled(janela_) ? STATE_SYSTEM_FOCUSABLE : STATE_SYSTEM_UNAVAILABLE;
    return e;
}

int JanelaAcessivel::Partes() const {
    const Janela& janela = *Janela::De(janela_);
    return janela.Partes() + (janela.ComMinimizar() ? 2 : 1);
}

Elemento JanelaAcessivel::Parte(int i) const {
    const Janela& janela = *Janela::De(janela_);
    if (i < janela.Partes()) return janela.Parte(i);
    const bool disponivel = IsWindowEnabled(janela_) != FALSE;
    return i == janela.Partes() ? Caixa(L"Fechar", CaixaFechar(janela.Medidas().cx), disponivel)
                                : Caixa(L"Minimizar", kCaixaMinimizar, disponivel);
}

// Not the controls alone: the page's window speaks for itself.
std::vector<HWND> JanelaAcessivel::Filhos() const {
    return FilhosEmOrdem(janela_);
}

}  // namespace zu::launcher

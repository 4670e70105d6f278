#include "ui/controles/controle_acessivel.h"

#include <utility>

#include "ui/controles/controle.h"

namespace zu::launcher {
namespace {

LONG Papel(TipoControle kind) {
    switch (kind) {
        case TipoControle::Botao:
        case TipoControle::BotaoPrincipal:
            return ROLE_SYSTEM_PUSHBUTTON;
        case TipoControle::Caixa:
            return ROLE_SYSTEM_CHECKBUTTON;
        case TipoControle::Lista:
            return ROLE_SYSTEM_COMBOBOX;
        case TipoControle::Opcao:
            return ROLE_SYSTEM_RADIOBUTTON;
        case TipoControle::DoDono:
            break;
    }
    return ROLE_SYSTEM_GRAPHIC;
}

const wchar_t* Acao(const EstadoControle& estado) {
    switch (estado.kind) {
        case TipoControle::Botao:
        case TipoControle::BotaoPrincipal:
            return L"Pressionar";
        case TipoControle::Caixa:
            return estado.checked ? L"Desmarcar" : L"Marcar";
        case TipoControle::Lista:
            return L"Abrir";
        case TipoControle::Opcao:
            return L"Selecionar";
        case TipoControle::DoDono:
            break;
    }
    return L"";
}

LONG Estado(HWND controle, const EstadoControle& estado) {
    LONG bits = 0;
    if (estado.checked) bits |= STATE_SYSTEM_CHECKED;
    if (estado.pressed) bits |= STATE_SYSTEM_PRESSED;
    if (estado.hover) bits |= STATE_SYSTEM_HOTTRACKED;
    if (estado.kind == TipoControle::BotaoPrincipal) bits |= STATE_SYSTEM_DEFAULT;
    if (estado.kind == TipoControle::Lista) bits |= STATE_SYSTEM_HASPOPUP | STATE_SYSTEM_COLLAPSED;
    if (!IsWindowVisible(controle)) bits |= STATE_SYSTEM_INVISIBLE;
    if (!PodeAgir(controle)) return bits | STATE_SYSTEM_UNAVAILABLE;
    return bits | STATE_SYSTEM_FOCUSABLE | (GetFocus() == controle ? STATE_SYSTEM_FOCUSED : 0);
}

}  // namespace

HWND ControleAcessivel::Handle() const {
    return EhControle(controle_) ? controle_ : nullptr;
}

Elemento ControleAcessivel::Inteiro() const {
    const EstadoControle& estado = EstadoDo(controle_);
    Elemento e{.nome = LegendaDo(controle_), .papel = Papel(estado.kind), .estado = Estado(controle_, estado)};
    e.descricao = estado.text;
    if (std::cmp_less(estado.selected, estado.items.size())) {
        e.valor = estado.items[static_cast<std::size_t>(estado.selected)];
    }
    if ((e.estado & STATE_SYSTEM_UNAVAILABLE) == 0) e.acao = Acao(estado);
    return e;
}

int ControleAcessivel::Partes() const {
    return static_cast<int>(EstadoDo(controle_).items.size());
}

// None is seen while the list is closed: a pointer finds the list itself. When it is open, the menu speaks for itself.
Elemento ControleAcessivel::Parte(int i) const {
    const EstadoControle& estado = EstadoDo(controle_);
    Elemento e{.nome = estado.items[static_cast<std::size_t>(i)], .papel = ROLE_SYSTEM_LISTITEM};
    GetClientRect(controle_, &e.lugar);
    e.estado = STATE_SYSTEM_INVISIBLE | (i == estado.selected ? STATE_SYSTEM_SELECTED : 0);
    if (!PodeAgir(controle_)) {
        e.estado |= STATE_SYSTEM_UNAVAILABLE;
        return e;
    }
    e.estado |= STATE_SYSTEM_SELECTABLE;
    e.acao = L"Selecionar";
    return e;
}

}  // namespace zu::launcher

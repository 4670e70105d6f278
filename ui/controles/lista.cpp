#include "ui/controles/lista.h"

#include <algorithm>
#include <utility>

#include "core/handle.h"
#include "ui/acessibilidade/acessivel.h"

namespace zu::launcher {
namespace {

struct TracosMenu {
    using Tipo = HMENU;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo menu) noexcept { DestroyMenu(menu); }
};

// The item that the player chose, or -1.
int EscolherNoMenu(HWND controle, const EstadoControle& estado) {
    const Handle<TracosMenu> menu(CreatePopupMenu());
    for (std::size_t i = 0; i < estado.items.size(); ++i) {
        const UINT marca = std::cmp_equal(i, estado.selected) ? MF_CHECKED : MF_UNCHECKED;
        AppendMenuW(menu.Valor(), MF_STRING | marca, i + 1, estado.items[i].c_str());
    }
    RECT r{};
    GetWindowRect(controle, &r);
    return TrackPopupMenu(menu.Valor(), TPM_RETURNCMD | TPM_NONOTIFY, r.left, r.bottom, 0, controle, nullptr) - 1;
}

// One item on or back, or to either end.
void AndarNaLista(HWND controle, EstadoControle& estado, std::int32_t passo) {
    const auto ultimo = static_cast<std::int32_t>(estado.items.size()) - 1;
    EscolherNaLista(controle, estado, std::clamp(estado.selected + passo, 0, std::max(0, ultimo)));
}

}  // namespace

void EscolherNaLista(HWND controle, EstadoControle& estado, std::int32_t item) {
    if (std::exchange(estado.selected, item) == item) return;
    Repintar(controle);
    Avisar(EVENT_OBJECT_VALUECHANGE, controle);
    Notificar(controle, kCodigoSelecao);
}

void AbrirLista(HWND controle, EstadoControle& estado) {
    Repintar(controle);
    const int escolha = EscolherNoMenu(controle, estado);
    if (!IsWindow(controle)) return;
    // A click on the open list closes it; the system leaves that click to be handled once more.
    MSG clique{};
    if (escolha < 0) PeekMessageW(&clique, controle, WM_LBUTTONDOWN, WM_LBUTTONDOWN, PM_REMOVE);
    estado.hover = false;
    estado.pressed = false;
    Repintar(controle);
    if (escolha >= 0) EscolherNaLista(controle, estado, escolha);
}

bool TeclarNaLista(HWND controle, EstadoControle& estado, WPARAM tecla) {
    const auto quantos = static_cast<std::int32_t>(estado.items.size());
    switch (tecla) {
        case VK_UP:
        case VK_LEFT:
            AndarNaLista(controle, estado, -1);
            return true;
        case VK_DOWN:
        case VK_RIGHT:
            AndarNaLista(controle, estado, 1);
            return true;
        case VK_HOME:
            AndarNaLista(controle, estado, -quantos);
            return true;
        case VK_END:
            AndarNaLista(controle, estado, quantos);
            return true;
        case VK_F4:
            AbrirLista(controle, estado);
            return true;
        default:
            return false;
    }
}

}  // namespace zu::launcher

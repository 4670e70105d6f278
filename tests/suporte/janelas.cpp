#include "tests/suporte/janelas.h"

#include "tests/suporte/recusa.h"

namespace zu::launcher::teste {

namespace {

struct Escrito {
    LONG y;  // of the first line
    LONG x;
    std::string texto;
};
std::atomic<HDC> lida = nullptr;
std::vector<Escrito> escritos;
std::string_view sinais;  // around the texts: how the control stands that is being drawn

int WINAPI EscreverENotar(HDC dc, LPCWSTR texto, int tamanho, LPRECT r, UINT formato) {
    static const auto original = ZU_VERDADEIRA(L"user32", DrawTextW);
    if (dc == lida && (formato & DT_CALCRECT) == 0 && tamanho > 0) {
        constexpr LONG kMeiaLinha = 7;
        POINT lugar{r->left, (formato & DT_VCENTER) != 0 ? (r->top + r->bottom) / 2 - kMeiaLinha : r->top};
        LPtoDP(dc, &lugar, 1);
        RECT inteiro{};
        original(dc, texto, tamanho, &inteiro, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
        const bool cabe =
            inteiro.right <= r->right - r->left || (formato & DT_SINGLELINE) == 0 || (formato & DT_PATH_ELLIPSIS) != 0;
        escritos.push_back(
            {lugar.y, lugar.x,
             Formatar("{}{}{}{}", sinais.substr(0, 1), ParaUtf8({texto, static_cast<std::size_t>(tamanho)}),
                      cabe ? "" : "…", sinais.substr(sinais.size() / 2))});
    }
    return original(dc, texto, tamanho, r, formato);
}

}  // namespace

std::string LerTela(HWND janela) {
    const Superficie s(TamanhoDe(janela));
    escritos.clear();
    lida = s.Dc();
    SendMessageW(janela, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(s.Dc()), PRF_CLIENT);
    for (HWND filho = GetWindow(janela, GW_CHILD); filho != nullptr; filho = GetWindow(filho, GW_HWNDNEXT)) {
        POINT canto{};
        MapWindowPoints(filho, janela, &canto, 1);
        sinais = !IsWindowEnabled(filho) ? "()" : EstadoDo(filho).checked ? "[]" : "";
        SetViewportOrgEx(s.Dc(), canto.x, canto.y, nullptr);
        SendMessageW(filho, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(s.Dc()), PRF_CLIENT);
    }
    sinais = "";
    lida = nullptr;
    constexpr LONG kMesmaLinha = 5;
    std::ranges::stable_sort(escritos, {}, &Escrito::y);
    for (LONG linha = -99; Escrito & e : escritos)
        e.y = linha = e.y - linha <= kMesmaLinha ? linha : e.y;
    std::ranges::stable_sort(escritos, {}, [](const Escrito& e) { return std::pair(e.y, e.x); });
    std::string tela;
    for (const Escrito* antes = nullptr; const Escrito& e : escritos) {
        // A title has a shadow.
        if (antes != nullptr && antes->texto == e.texto && e.x - antes->x <= 1) continue;
        if (antes != nullptr) tela += antes->y == e.y ? " | " : "\n";
        tela += e.texto;
        antes = &e;
    }
    return tela;
}

NavegadorFalso& RuntimeFalso() {
    static const HMODULE dll =
        LoadLibraryW((kAplicativoFalso / kVersaoFalsa / "EBWebView\\x64\\EmbeddedBrowserWebView.dll").c_str());
    return *std::bit_cast<ObterNavegador>(GetProcAddress(dll, "ControleDoRuntime"))();
}

}  // namespace zu::launcher::teste

ZU_DESVIAR(DrawTextW, &zu::launcher::teste::EscreverENotar);
ZU_DESVIAR(ShellExecuteW, [](HWND, LPCWSTR, LPCWSTR alvo, LPCWSTR, LPCWSTR, INT) {
    zu::launcher::teste::abertos.append(alvo).append(L"\n");
    return HINSTANCE{};
});

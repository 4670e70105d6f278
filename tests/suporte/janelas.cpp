#include "tests/suporte/janelas.h"

#include <bit>

#include "ui/janelas/modal.h"

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
    static const auto original =
        std::bit_cast<decltype(&DrawTextW)>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "DrawTextW"));
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

// In the place of the imports, for this program.
extern "C" {
decltype(&DrawTextW) __imp_DrawTextW = &EscreverENotar;
decltype(&ShellExecuteW) __imp_ShellExecuteW = [](HWND, LPCWSTR, LPCWSTR alvo, LPCWSTR, LPCWSTR, INT) {
    abertos.append(alvo).append(L"\n");
    return HINSTANCE{};
};
}

void Clicar(HWND controle) {
    SendMessageW(controle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(controle, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}

void Teclar(HWND janela, int tecla, bool repetida) {
    PostMessageW(janela, WM_KEYDOWN, static_cast<WPARAM>(tecla), repetida ? LPARAM{KF_REPEAT} << 16 : 0);
}

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

ComDesenho::ComDesenho() {
    RenovarRequisitos();
    IniciarDesenho();
    AbrirEstadoDaInterface();
    const HINSTANCE modulo = GetModuleHandleW(nullptr);
    RegistrarControle(modulo);
    RegistrarPrincipal(modulo);
    for (const wchar_t* classe : {kClasseDasOpcoes, kClasseDosRequisitos, kClasseDoDiagnostico})
        Janela::Registrar(modulo, classe);
}

ComDesenho::~ComDesenho() {
    FecharEstadoDaInterface();
    EncerrarDesenho();
}

NavegadorFalso& RuntimeFalso() {
    static const HMODULE dll =
        LoadLibraryW((kAplicativoFalso / kVersaoFalsa / "EBWebView\\x64\\EmbeddedBrowserWebView.dll").c_str());
    return *std::bit_cast<ObterNavegador>(GetProcAddress(dll, "ControleDoRuntime"))();
}

bool Bombear(std::chrono::milliseconds limite, const std::function<bool()>& pronto) {
    return Esperar(limite, [&] {
        MSG m{};
        while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&m);
        return pronto();
    });
}

int ContarPosses() {
    GdiFlush();
    int posses = 0;
    for (DWORD tipo = GR_GDIOBJECTS; tipo <= GR_USEROBJECTS; ++tipo)
        posses += static_cast<int>(GetGuiResources(GetCurrentProcess(), tipo));
    // Wine does not count, but finds a handle by its lower half.
    for (UINT_PTR i = posses == 0 ? 1 : 0x10000; i < 0x10000; ++i) {
        DWORD processo = 0;
        GetWindowThreadProcessId(reinterpret_cast<HWND>(i), &processo);
        posses += GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0 ? 1 : 0;
        posses += IsMenu(reinterpret_cast<HMENU>(i)) || processo == GetCurrentProcessId() ? 1 : 0;
    }
    return posses;
}

}  // namespace zu::launcher::teste

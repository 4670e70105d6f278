#include "tests/suporte/janelas.h"

#include <memory>
#include <utility>

namespace zu::launcher::teste {
namespace {

LRESULT CALLBACK Procedimento(HWND janela, UINT mensagem, WPARAM wParam, LPARAM lParam) {
    auto* espiao = reinterpret_cast<Espiao*>(GetWindowLongPtrW(janela, GWLP_USERDATA));
    if (espiao != nullptr) (*espiao)(mensagem, wParam, lParam);
    if (mensagem == WM_NCDESTROY) {
        SetWindowLongPtrW(janela, GWLP_USERDATA, 0);
        const std::unique_ptr<Espiao> fim(espiao);
    }
    return DefWindowProcW(janela, mensagem, wParam, lParam);
}

}  // namespace

HWND CriarJanela(Espiao espiao) {
    constexpr wchar_t kClasse[] = L"ZuTeste";
    WNDCLASSW classe{};
    classe.lpfnWndProc = Procedimento;
    classe.hInstance = GetModuleHandleW(nullptr);
    classe.lpszClassName = kClasse;
    RegisterClassW(&classe);
    const HWND janela = CreateWindowExW(0, kClasse, L"", WS_POPUP | WS_VISIBLE, 100, 100, 500, 300, nullptr, nullptr,
                                        classe.hInstance, nullptr);
    auto dono = std::make_unique<Espiao>(std::move(espiao));
    SetWindowLongPtrW(janela, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(dono.release()));
    return janela;
}

void NaThreadDe(HWND janela, const std::function<void()>& trabalho) {
    static constexpr UINT kRodar = WM_APP + 999;
    static WNDPROC original = nullptr;
    const WNDPROC comTrabalho = [](HWND h, UINT mensagem, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (mensagem != kRodar) return CallWindowProcW(original, h, mensagem, wParam, lParam);
        (*reinterpret_cast<const std::function<void()>*>(lParam))();
        return 0;
    };
    original =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(janela, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(comTrabalho)));
    SendMessageW(janela, kRodar, 0, reinterpret_cast<LPARAM>(&trabalho));
    SetWindowLongPtrW(janela, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
}

bool Bombear(std::chrono::milliseconds limite, const std::function<bool()>& pronto) {
    const auto fim = std::chrono::steady_clock::now() + limite;
    while (!pronto()) {
        if (std::chrono::steady_clock::now() >= fim) return false;
        MSG m{};
        while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&m);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return true;
}

void Bombear(std::chrono::milliseconds tempo) {
    Bombear(tempo, [] { return false; });
}

Posses ContarPosses() {
    GdiFlush();
    Posses p;
    p.gdi = static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS));
    p.user = static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS));
    if (p.gdi != 0) return p;
    // Wine does not count, but finds a handle by its lower half.
    for (UINT_PTR i = 1; i < 0x10000; ++i) {
        if (GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0) ++p.gdi;
        DWORD processo = 0;
        if (IsMenu(reinterpret_cast<HMENU>(i))) ++p.user;
        if (IsWindow(reinterpret_cast<HWND>(i)) &&
            GetWindowThreadProcessId(reinterpret_cast<HWND>(i), &processo) != 0 && processo == GetCurrentProcessId()) {
            ++p.user;
        }
    }
    return p;
}

}  // namespace zu::launcher::teste

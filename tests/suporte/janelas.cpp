#include "tests/suporte/janelas.h"

#include <objbase.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "app/instancia_unica.h"
#include "game/opcoes.h"
#include "tests/suporte/espera.h"
#include "tests/suporte/processo.h"
#include "ui/estado_interface.h"
#include "ui/interface.h"

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

void Clicar(HWND controle) {
    SendMessageW(controle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(controle, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}

void PuxarPelaTela(HWND janela, POINT ponto) {
    ClientToScreen(janela, &ponto);
    SetCursorPos(ponto.x, ponto.y);
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    mouse_event(MOUSEEVENTF_MOVE, 30, 20, 0, 0);
}

void SoltarNaTela() {
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
}

Interface::Interface()
    : thread_([this] {
          CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
          codigo_ = RodarInterface();
          fim_ = true;
      }) {
    Esperar(std::chrono::seconds(10), [this] {
        janela_ = FindWindowW(kClasseDaJanela, nullptr);
        return janela_ != nullptr && IsWindowVisible(janela_);
    });
}

ComServidor::ComServidor() {
    Configurar(pasta_.Caminho(), servidor_.Url());
    Publicar({{"a.bin", "a"}});
}

void ComServidor::Publicar(std::map<std::string, std::string> arquivos) {
    publicacao_.arquivos = std::move(arquivos);
    publicacao_.Servir(servidor_);
}

void ComServidor::PorJogo(const std::string& roteiro, bool fecharAoJogar) const {
    std::filesystem::copy_file(kPastaBin / "jogo_falso.exe", pasta_ / "Zu.exe");
    pasta_.Escrever("jogo_falso.txt", roteiro);
    if (!fecharAoJogar) pasta_.Escrever("Config/Zu.ini", "[Launcher]\r\nFecharAoJogar=0\r\n");
}

std::ptrdiff_t ComServidor::QuantasLinhas(const std::string& inicio) const {
    return std::ranges::count_if(LinhasDoLog(pasta_),
                                 [&](const std::string& linha) { return linha.starts_with(inicio); });
}

std::pair<int, int> Interface::Barras() const {
    std::pair<int, int> barras;
    NaThreadDe(janela_, [&] { barras = {ObterInterface().superior, ObterInterface().inferior}; });
    return barras;
}

int Interface::EsperarFim(std::chrono::milliseconds limite) {
    if (!Esperar(limite, [this] { return fim_.load(); })) return -1;
    thread_.join();
    return codigo_;
}

int Interface::Fechar() {
    if (!thread_.joinable()) return codigo_;
    PostMessageW(janela_, WM_CLOSE, 0, 0);
    thread_.join();
    return codigo_;
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

// What a window tells the programs that read the screen aloud, by the system's published interface for it (Microsoft
// Active Accessibility, IAccessible): itself, the parts that it has drawn, and its child windows. UI thread only.
#pragma once

#include <windows.h>
// after windows.h
#include <oleacc.h>

#include <memory>
#include <string>
#include <vector>

namespace zu::launcher {

// One thing on the screen. An empty text means that it has none of the kind.
struct Elemento {
    std::wstring nome;
    LONG papel = ROLE_SYSTEM_CLIENT;
    LONG estado = 0;  // STATE_SYSTEM_…
    RECT lugar{};     // in the window's client area; of the window itself it is not read
    std::wstring valor;
    std::wstring descricao;
    std::wstring acao;  // what its default action is called
};

// A window as it is at the moment of each question. It may be asked after the window's end.
class Acessivel {
 public:
    Acessivel() = default;
    Acessivel(const Acessivel&) = delete;
    Acessivel& operator=(const Acessivel&) = delete;
    virtual ~Acessivel() = default;

    [[nodiscard]] virtual HWND Handle() const = 0;  // null: the window is gone, and nothing else may be asked
    [[nodiscard]] virtual Elemento Inteiro() const = 0;
    [[nodiscard]] virtual int Partes() const = 0;
    [[nodiscard]] virtual Elemento Parte(int i) const = 0;       // 0 to Partes() - 1
    [[nodiscard]] virtual std::vector<HWND> Filhos() const = 0;  // in the order of reading
};

// Posted to the window when its default action is asked for, so that whoever asks does not wait for what comes of it.
// `wParam`: CHILDID_SELF, or the number of the part from 1 on. What it is for may be disabled by then.
constexpr UINT MSG_ACAO_PADRAO = WM_APP + 50;

// The answer to WM_GETOBJECT; 0, which leaves it to the system, for any object but the client area.
LRESULT ResponderAcessivel(WPARAM wParam, LPARAM lParam, std::unique_ptr<Acessivel> acessivel);

// Says that something of the window, or of one of its parts (from 1 on), is another now: EVENT_OBJECT_….
void Avisar(DWORD evento, HWND janela, LONG parte = CHILDID_SELF);

}  // namespace zu::launcher

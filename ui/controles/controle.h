// The one child control of every window, "ZuLauncherControle": button, primary button, check box, drop-down list and
// choice tile. It draws itself, animates itself, and tells its parent with WM_COMMAND: the id, a code and its window.
// The caption is its window text. It can have the keyboard: Space presses it, arrows change a list, F4 and Alt+Down
// open it; every other key goes to its parent. UI thread only.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/desenho/moldura.h"

namespace zu::launcher {

constexpr wchar_t kClasseDoControle[] = L"ZuLauncherControle";

// The codes in the high word of a WM_COMMAND.
constexpr WORD kCodigoClique = 0;
constexpr WORD kCodigoSelecao = 1;  // another item of a list was chosen

enum class TipoControle : std::uint32_t {
    Botao = 0,
    BotaoPrincipal = 1,
    Caixa = 2,
    Lista = 3,
    Opcao = 4,
    DoDono = 5,  // drawn by the owner window; clicks do nothing of their own
};

class FaceGuardada;
struct EstadoControle;
using PintorDoDono = std::function<void(HDC, const RECT&, const EstadoControle&)>;

struct EstadoControle {
    TipoControle kind = TipoControle::Botao;
    bool hover = false;
    bool pressed = false;  // the left button went down on it and is still held
    bool checked = false;
    std::int32_t selected = 0;           // the item of a list
    COLORREF fill = RGB(226, 226, 226);  // what the face is shaded around
    COLORREF fundo = kCorDoPainel;       // what the control stands on, seen beyond the face's corners
    float hover_level = 0;               // the glow, 0 to 1
    float flash = -1;                    // -1: idle, else runs from 0 to 1
    float phase = 0;                     // of the primary button's pulse, radians
    std::vector<std::wstring> items;
    std::wstring text;                   // a second line under the caption of a choice tile
    PintorDoDono pintor;                 // of a control that its owner draws
    std::shared_ptr<FaceGuardada> face;  // none before it is first seen
};

void RegistrarControle(HINSTANCE modulo);

struct Lugar {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
};

// The control's window, visible, or null with the reason in GetLastError. The record lives and dies with the window.
HWND CriarControle(HWND pai, TipoControle kind, int id, const wchar_t* texto, const Lugar& lugar);

// A list in the windows' column of lists. `selected` is brought into the items' range.
HWND CriarLista(HWND pai, int id, int y, std::vector<std::wstring> items, std::int32_t selected);

// Whether the window is one of these.
bool EhControle(HWND janela);

// Of a window made by the functions above. What a caller changes shows with the next repaint.
EstadoControle& EstadoDo(HWND controle);

// What a click of the player does, without the mouse.
void Acionar(HWND controle);

// For the control's own sources: draws it anew, and tells its window.
void Repintar(HWND controle);
void Notificar(HWND controle, WORD codigo);

// Whether the player can do something with it: neither it nor its window is disabled.
bool PodeAgir(HWND controle);

// The window's text.
std::wstring LegendaDo(HWND controle);

// Whether the control that has the keyboard shows it: from the first key that moves between controls to the next press
// of a mouse button.
bool MarcaDeFoco();
void MostrarMarcaDeFoco(bool visivel);

// These repaint, and only when something differs.
void Marcar(HWND controle, bool checked);
void Habilitar(HWND controle, bool habilitado);
void DefinirTexto(HWND controle, const std::wstring& text);

}  // namespace zu::launcher

#include "ui/janelas/area_de_transferencia.h"

#include <cstring>

namespace zu::launcher {
namespace {

constexpr int kTentativas = 5;
constexpr DWORD kPausa = 20;  // ms

// Whoever watches the clipboard holds it for a moment after each change.
bool Abrir(HWND janela) {
    for (int i = 1; !OpenClipboard(janela); ++i) {
        if (i == kTentativas) return false;
        Sleep(kPausa);
    }
    return true;
}

}  // namespace

bool Copiar(HWND janela, const std::wstring& texto) {
    if (!Abrir(janela)) return false;
    const std::size_t bytes = (texto.size() + 1) * sizeof(wchar_t);
    HGLOBAL bloco = GlobalAlloc(GMEM_MOVEABLE, bytes);
    bool copiou = false;
    if (void* const destino = bloco == nullptr ? nullptr : GlobalLock(bloco); destino != nullptr) {
        std::memcpy(destino, texto.c_str(), bytes);
        GlobalUnlock(bloco);
        // The clipboard owns the block from here on.
        copiou = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, bloco) != nullptr;
    }
    if (!copiou) GlobalFree(bloco);
    CloseClipboard();
    return copiou;
}

}  // namespace zu::launcher

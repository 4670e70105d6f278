// A program that does nothing until it is ended, or for as many milliseconds as its argument says (a minute without
// one): stands for a running game or a file in use, and keeps Wine and its desktop up between tests.
#include <windows.h>

#include <cwchar>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR argumentos, int) {
    constexpr DWORD kUmMinuto = 60'000;
    // Who starts it may write quotes around the number.
    const DWORD pedido = std::wcstoul(argumentos + std::wcsspn(argumentos, L"\""), nullptr, 10);
    GetDesktopWindow();  // under Wine this starts the desktop, which then stays
    Sleep(pedido == 0 ? kUmMinuto : pedido);
    return 0;
}

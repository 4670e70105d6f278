// A program that does nothing until it is ended, for at most a minute: stands for a running game or a file in use.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    constexpr DWORD kUmMinuto = 60'000;
    Sleep(kUmMinuto);
    return 0;
}

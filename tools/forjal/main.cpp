// Forjal.exe: console entry.

#include <windows.h>

#include <string>
#include <vector>

#include "tools/forjal/forjal.h"

// The C runtime would otherwise replace "*" and "?" in arguments by the names of files.
extern "C" {
int _dowildcard = 0;
}

int wmain(int quantos, wchar_t** textos) {
    // First of all: no DLL is taken from the current folder or the program's own.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    const std::vector<std::wstring> argumentos(textos + (quantos > 0 ? 1 : 0), textos + quantos);
    zu::launcher::forjal::SaidaDoConsole saida;
    return zu::launcher::forjal::RodarForjal(argumentos, saida);
}

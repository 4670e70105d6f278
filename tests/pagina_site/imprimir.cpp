// Prints the launcher's page script for the selector given as the argument.
#include <cstdio>

#include "ui/site/script_site.h"

int main(int quantos, char** argumentos) {
    if (quantos != 2) return 2;
    std::fputs(zu::launcher::ScriptRecorte(argumentos[1]).c_str(), stdout);
}

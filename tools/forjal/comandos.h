// Forjal's commands. Each takes options that its syntax has let through, says what it did or why not, and
// returns a `Codigo`. A command that answers `kUsoErrado` has written nothing.
#pragma once

#include <string_view>

#include "tools/forjal/opcoes.h"
#include "tools/forjal/saida.h"

namespace zu::launcher::forjal {

int RodarChaves(const Opcoes& opcoes, Saida& saida);
int RodarSelar(const Opcoes& opcoes, Saida& saida);
int RodarAbrir(const Opcoes& opcoes, Saida& saida);
int RodarPublicar(const Opcoes& opcoes, Saida& saida);
int RodarContinuar(const Opcoes& opcoes, Saida& saida);
int RodarSoAssinar(const Opcoes& opcoes, Saida& saida);
int RodarConferir(const Opcoes& opcoes, Saida& saida);

// Says `texto` as an error and returns `codigo`.
inline int Falhar(Saida& saida, Codigo codigo, std::string_view texto) {
    saida.Erro(texto);
    return codigo;
}

}  // namespace zu::launcher::forjal

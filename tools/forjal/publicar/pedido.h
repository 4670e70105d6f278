// What the options of "Forjal publicar" ask for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "tools/forjal/opcoes.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

struct Pedido {
    std::filesystem::path cliente;    // canonical
    std::filesystem::path saida;      // canonical
    update::UpdateList lista;         // all but its files
    std::uint64_t bytesPorParte = 0;  // 0: no file is split
    bool limpar = false;
};

// False, with the option and its limit in `erro`, when the options cannot be meant. Writes nothing.
bool LerPedido(const Opcoes& opcoes, Pedido& pedido, std::string& erro);

}  // namespace zu::launcher::forjal

// What the options of "Forjal publicar" ask for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "core/assinatura.h"
#include "tools/forjal/opcoes.h"
#include "tools/forjal/publicar/exclusoes.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

struct Pedido {
    std::filesystem::path cliente;    // canonical
    std::filesystem::path saida;      // canonical
    std::filesystem::path chave;      // canonical: the private key
    update::UpdateList lista;         // all but its files
    std::uint64_t bytesPorParte = 0;  // 0: no file is split
    bool limpar = false;
    bool removerAusentes = false;
    bool muitasRemocoes = false;
    bool confiarNaData = false;
    bool simular = false;  // nothing is written
    bool blocos = true;    // large files get a block index
    Exclusoes exclusoes;
    UpdateSigningKey chaveAnterior;  // may have signed the published list; empty: none
};

// What "--validade-dias" asks for, counted from now. Empty, with no fault, when it was not given.
bool LerValidade(const Opcoes& opcoes, std::optional<update::Instante>& validade, std::string& erro);
// Reads "--chave-anterior"; stays empty when it was not given.
bool LerChaveAnterior(const Opcoes& opcoes, UpdateSigningKey& chave, std::string& erro);

// False, with the option and its limit in `erro`, when the options cannot be meant. Writes nothing.
bool LerPedido(const Opcoes& opcoes, Pedido& pedido, std::string& erro);

}  // namespace zu::launcher::forjal

// "UpdateList.txt": the signed list of the files that the client folder must hold. docs/formatos.md has the format.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "update/instante.h"

namespace zu::launcher::update {

constexpr std::uint64_t kLimiteDaLista = 0x4000000;  // 64 MiB: the launcher fetches no longer list

// One file of the list. Its texts lie with the list: good for as long as the list or a copy of it is.
struct ItemLista {
    std::string_view caminho;   // as written; normalised wherever it is used
    std::string_view sha256;    // 64 letters in lower case; empty when the list gives none
    std::uint64_t tamanho = 0;  // bytes of the whole file
    std::uint32_t crc = 0;      // CRC-32 of the whole file
    std::uint32_t partes = 0;   // 0: published whole; 1 to 999: published as that many parts
};

// The block index of a listed file, published beside it.
struct IndiceListado {
    std::string caminho;        // of the file, as written
    std::string sha256;         // of the index, 64 letters in lower case
    std::uint64_t tamanho = 0;  // bytes of the index
};

struct UpdateList {
    std::int64_t seq = 0;
    std::string versao;
    std::string chaveAssets;
    std::optional<Instante> validade;   // not to be used after it; none: it never expires
    std::vector<ItemLista> itens;       // in the list's order
    std::vector<std::string> remover;   // as written
    std::vector<IndiceListado> blocos;  // of the same path the last counts
    // What the items' texts lie in, shared by the copies of a list: hundreds of thousands of items need no memory each.
    std::shared_ptr<std::deque<std::string>> textos;

    // Takes in a text for an item of this list.
    std::string_view Guardar(std::string texto);
};

// A list taken apart. `assinados` looks into the text that was given.
struct ListaSeparada {
    bool ok = false;  // false: the text counts as unsigned
    std::string_view assinados;
    std::vector<std::uint8_t> assinatura;
};

// Splits the text at its signature line, the last line of the text. Does not check the signature.
ListaSeparada SepararAssinatura(std::string_view texto);

// Reads the signed part, which the list keeps. False at the first faulty line, whose number and fault are then in
// `erro`, and for a list without files.
bool LerLista(std::string assinados, UpdateList& lista, std::string& erro);

// The signed part of a list: what `LerLista` reads back.
std::string EscreverLista(const UpdateList& lista);

// A whole list: the signed part, which must end in a line end, and its signature line.
std::string JuntarAssinatura(std::string_view assinados, std::span<const std::uint8_t> assinatura);

}  // namespace zu::launcher::update

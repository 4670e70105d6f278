// What "Forjal conferir" has to tell, the same for a published folder and for a live server.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/forjal/saida.h"
#include "update/hash_arquivo.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

// What was found on one file, one line a difference.
struct Diferencas {
    std::vector<std::string> linhas;

    void Faltando(std::string_view nome, std::string_view motivo = {});
    void Diferente(std::string_view nome, std::string_view motivo);
};

// How a file of the list is called as a whole: its path, and in how many parts it is.
std::string NomeInteiro(const update::ItemLista& item);

// Why the bytes that were hashed are not the file's; empty when they are.
std::string DiferencaDoConteudo(const update::ItemLista& item, const ResultadoHash& hash);

// The same of an index that the list names.
std::string DiferencaDoIndice(const update::IndiceListado& listado, const ResultadoHash& hash);
ResultadoHash HashDoTexto(std::string_view texto);

// A list past its date, which no launcher uses.
void ConferirValidade(const update::UpdateList& lista, Diferencas& diferencas);

class Relatorio {
 public:
    explicit Relatorio(Saida& saida) : saida_(saida) {}

    // Says every difference.
    void Juntar(std::span<const Diferencas> diferencas);
    void Juntar(const Diferencas& diferencas) { Juntar({&diferencas, 1}); }
    // Says how many there were, or, when there were none, what was right. Returns the `Codigo` of it.
    int Encerrar(std::span<const std::string> certo);

 private:
    Saida& saida_;
    std::size_t quantas_ = 0;
};

}  // namespace zu::launcher::forjal

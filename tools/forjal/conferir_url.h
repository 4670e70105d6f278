// A live update server, proved as the internet sees it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/assinatura.h"
#include "tools/forjal/relatorio.h"

namespace zu::launcher::forjal {

struct PedidoAoServidor {
    std::string base;         // the launcher's update address; ends in "/"
    bool completo = false;    // fetch and hash every byte
    std::size_t amostra = 0;  // how many files, picked at random; 0: all
};

struct ListaDoServidor {
    std::string texto;
    update::UpdateList lista;
    Diferencas diferencas;  // between what a launcher should meet and how the list came
};

// Fetches the list, proves its signature and reads it. False with the reason in `erro`.
bool BaixarLista(const std::string& base, const UpdateSigningKey& publica, ListaDoServidor& obtida, std::string& erro);

// Asks for every file and part of the list, or for the sample, over 16 connections: by a range, which a resumed
// download needs; an example of each kind of file also whole, so that nothing that rewrites kinds of files goes
// unnoticed; all of them whole when `completo`; the indexes always whole, for they are small. What fails for a moment
// is asked three times. Last the list is fetched once more: it must be the same still. `conferidos` is how many files
// were chosen.
std::vector<Diferencas> ConferirServidor(const PedidoAoServidor& pedido, const ListaDoServidor& obtida, Saida& saida,
                                         std::size_t& conferidos);

}  // namespace zu::launcher::forjal

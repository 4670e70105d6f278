// Single questions to a live update server, asked with the launcher's own client, and what is wrong with the answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace zu::launcher::forjal {

// What is wrong with an answer. No `motivo`: nothing.
struct Achado {
    std::string motivo;
    bool falta = false;       // the server knows no such file
    bool passageiro = false;  // no answer, a broken one, or one that asks for patience: another try may go well
};

// Asks for the bytes from `inicio` on, to the end as a download that goes on does, or with `soUm` for one byte alone.
// `total` is the size that the answer gives the file.
Achado SondarFaixa(const std::wstring& url, std::uint64_t inicio, bool soUm, std::uint64_t& total);

// Asks for the whole file, as a first download does, and lets the body go once the answer's head is proved.
Achado SondarCabeca(const std::wstring& url, std::uint64_t tamanho);

// The same with every byte of the body, block by block.
using Receber = std::function<void(const char* bloco, std::size_t tamanho)>;
Achado SondarInteiro(const std::wstring& url, const Receber& receber);

// Asks for the list at an address that was never asked before, past every cache. One that answers all the same leaves
// the players with an old list.
Achado SondarLista(const std::wstring& url);

}  // namespace zu::launcher::forjal

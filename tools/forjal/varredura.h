// What a client folder holds, and whether it can be published under the names it has.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher::forjal {

constexpr std::wstring_view kNomeDaLista = L"UpdateList.txt";
constexpr std::wstring_view kNomeDoRegistro = L"Forjal.publicados";
constexpr std::uint64_t kMaisPartes = 999;

// One file to publish.
struct ArquivoDoCliente {
    std::string caminho;           // UTF-8, relative to the client folder, "/" between the parts
    std::uint64_t tamanho = 0;     // bytes
    std::uint64_t modificado = 0;  // FILETIME, as `InfoArquivo`
    std::uint32_t partes = 0;      // 0: published whole
    bool comIndice = false;        // its block index is published beside it
};

// One published file: a whole client file or one part of it.
struct Trecho {
    std::string caminho;  // relative to the published folder
    std::uint64_t inicio = 0;
    std::uint64_t tamanho = 0;
};

struct Varredura {
    std::vector<ArquivoDoCliente> arquivos;  // in the order of the list: by path, ASCII letters in lower case
    std::size_t protegidos = 0;              // files that the launcher never touches, left out
    std::set<std::string> excluidos;         // left out as well; a folder ends in "/"
    std::set<std::string> recusas;           // why the folder cannot be published, one text a fault
};

// Lists the folder and everything below it, from as many threads as there are cores; `aviso` is called from this one,
// some times a second, with the number of files so far. What `excluido` knows, by list path and asked from any thread,
// is left out, a folder with all below it. Links to other places are refused, not followed.
using Excluido = std::function<bool(const std::string& caminho, bool pasta)>;
Varredura VarrerCliente(const std::filesystem::path& cliente, const Excluido& excluido,
                        const std::function<void(std::size_t)>& aviso);

// Gives each file larger than `bytesPorParte` its number of parts; 0 splits none.
void Dividir(std::span<ArquivoDoCliente> arquivos, std::uint64_t bytesPorParte);

// Marks each file that is large enough for a block index and whose index would have a path that the list takes.
void PedirIndices(std::span<ArquivoDoCliente> arquivos);

// The path under which the index of a file is published, whole and in parts alike.
std::string NomeDoIndice(std::string_view caminho);

// The files under which one is published, its index apart.
std::vector<Trecho> TrechosDe(const ArquivoDoCliente& arquivo, std::uint64_t bytesPorParte);

// The folders above a path, the outermost first: pieces of it.
std::vector<std::string_view> PastasDe(std::string_view caminho);

// Calls `visita` for the folders of the files, as pieces of their paths, where files of one folder stand together only
// once for all of them.
template <class Visita>
void VisitarPastas(std::span<const ArquivoDoCliente> arquivos, const Visita& visita) {
    std::string_view anterior;
    for (const ArquivoDoCliente& arquivo : arquivos) {
        const std::size_t barra = arquivo.caminho.rfind('/');
        const auto pasta = std::string_view(arquivo.caminho).substr(0, barra == std::string::npos ? 0 : barra);
        if (pasta == anterior) continue;
        anterior = pasta;
        for (const std::string_view acima : PastasDe(arquivo.caminho))
            visita(acima);
    }
}

// The key under which Windows takes two names for one: letter case does not count, in any alphabet. ASCII letters are
// small in it, so names stand in the order of the list.
std::string ChaveDoNome(std::string_view caminho);

// Why these files cannot be published: names that the list or Windows does not take, too many parts, and
// names that would meet on the server or in the player's folder. Looks at no disk. `aviso` as in `EmParalelo`.
std::set<std::string> RecusarNomes(
    std::span<const ArquivoDoCliente> arquivos, const std::function<void()>& aviso = [] {});

}  // namespace zu::launcher::forjal

#include "tools/forjal/conferir_pasta.h"

#include <windows.h>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

void ConferirNome(const std::filesystem::path& pasta, const std::string& nome, std::set<std::string>& certas,
                  Diferencas& diferencas) {
    InfoArquivo info;
    NomeTrocado trocado;
    if (!LerInfoArquivo(pasta / DeUtf8(nome), info) || info.Pasta()) {
        diferencas.Faltando(nome);
    } else if (AcharNomeTrocado(pasta, nome, certas, trocado)) {
        diferencas.Diferente(nome,
                             Formatar("no disco, {} está escrito {}", trocado.caminho, ParaUtf8(trocado.noDisco)));
    }
}

void ConferirConteudo(const std::filesystem::path& pasta, const update::ItemLista& item, Andamento& andamento,
                      Diferencas& diferencas) {
    const std::filesystem::path caminho = pasta / DeUtf8(update::NormalizarCaminho(item.caminho));
    const auto somar = [&](std::uint64_t bytes) { andamento.bytes += bytes; };
    const std::string motivo = DiferencaDoConteudo(item, HashArquivo(caminho, item.partes, somar));
    if (!motivo.empty()) diferencas.Diferente(NomeInteiro(item), motivo);
}

}  // namespace

std::vector<Diferencas> ConferirPasta(const std::filesystem::path& pasta, const update::UpdateList& lista,
                                      Saida& saida) {
    std::vector<Diferencas> diferencas(lista.itens.size() + 1);
    const std::span<Diferencas> dosItens = std::span(diferencas).subspan(1);
    std::vector<std::uint64_t> tamanhos;
    std::set<std::string> certas;
    ConferirNome(pasta, ParaUtf8(kNomeDaLista), certas, diferencas.front());
    Andamento andamento;
    andamento.totalDeArquivos = lista.itens.size();
    for (std::size_t i = 0; i < lista.itens.size(); ++i) {
        for (const std::string& nome : NomesPublicados(lista.itens[i]))
            ConferirNome(pasta, nome, certas, dosItens[i]);
        tamanhos.push_back(lista.itens[i].tamanho);
        andamento.totalDeBytes += lista.itens[i].tamanho;
    }
    const auto trabalho = [&](std::size_t i) {
        // What is missing has been told already.
        if (dosItens[i].linhas.empty()) ConferirConteudo(pasta, lista.itens[i], andamento, dosItens[i]);
        ++andamento.arquivos;
    };
    EmParalelo(tamanhos, trabalho, [&] { andamento.Mostrar(saida, "Conferindo"); });
    return diferencas;
}

}  // namespace zu::launcher::forjal

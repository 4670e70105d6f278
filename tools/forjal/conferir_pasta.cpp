#include "tools/forjal/conferir_pasta.h"

#include <windows.h>

#include <optional>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/varredura.h"
#include "update/blocos_indice.h"
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

// `esperado` is the index that the file has; null: its file is not right, and has none.
void ConferirIndice(const std::filesystem::path& pasta, const update::IndiceListado& listado,
                    const std::string* esperado, Diferencas& diferencas) {
    const std::string nome = NomeDoIndice(listado.caminho);
    std::string bytes;
    std::string motivo;
    if (!LerArquivoInteiro(pasta / DeUtf8(nome), bytes)) {
        motivo = "não foi possível ler";
    } else {
        motivo = DiferencaDoIndice(listado, HashDoTexto(bytes));
        if (motivo.empty() && esperado != nullptr && bytes != *esperado) motivo = "não é o índice deste arquivo";
    }
    if (!motivo.empty()) diferencas.Diferente(nome, motivo);
}

// The index, null when the list names none, is made once more of the same reading.
void ConferirConteudo(const std::filesystem::path& pasta, const update::ItemLista& item,
                      const update::IndiceListado* indice, Andamento& andamento, Diferencas& diferencas) {
    const std::string normal = update::NormalizarCaminho(item.caminho);
    const std::filesystem::path caminho = pasta / DeUtf8(normal);
    const std::uint64_t parte = item.partes > 0 ? TamanhoDoArquivo(CaminhoDaParte(caminho, 1)) : 0;
    std::optional<update::EscritorDeIndice> escritor;
    if (indice != nullptr) escritor.emplace(item.tamanho, parte);
    const auto visitar = [&](std::span<const std::uint8_t> bloco) {
        if (escritor) escritor->Alimentar(bloco.data(), bloco.size());
        andamento.bytes += bloco.size();
    };
    const std::string motivo = DiferencaDoConteudo(item, HashArquivo(caminho, item.partes, visitar));
    if (!motivo.empty()) diferencas.Diferente(NomeInteiro(item), motivo);
    if (!escritor) return;
    const std::string esperado = escritor->Terminar();
    ConferirIndice(pasta, *indice, motivo.empty() ? &esperado : nullptr, diferencas);
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
    Fileira<update::IndiceListado> listados = IndicesDe(lista);
    std::vector<const update::IndiceListado*> indices;
    for (std::size_t i = 0; i < lista.itens.size(); ++i) {
        indices.push_back(listados.Achar(update::NormalizarCaminho(lista.itens[i].caminho)));
        if (indices.back() != nullptr) ConferirNome(pasta, NomeDoIndice(indices.back()->caminho), certas, dosItens[i]);
        for (const std::string& nome : NomesPublicados(lista.itens[i]))
            ConferirNome(pasta, nome, certas, dosItens[i]);
        tamanhos.push_back(lista.itens[i].tamanho);
        andamento.totalDeBytes += lista.itens[i].tamanho;
    }
    const auto trabalho = [&](std::size_t i) {
        // What is missing has been told already.
        if (dosItens[i].linhas.empty()) ConferirConteudo(pasta, lista.itens[i], indices[i], andamento, dosItens[i]);
        ++andamento.arquivos;
    };
    EmParalelo(tamanhos, trabalho, [&] { andamento.Mostrar(saida, "Conferindo"); });
    return diferencas;
}

}  // namespace zu::launcher::forjal

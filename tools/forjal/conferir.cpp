// "Forjal conferir": proves a published folder as the launcher will.

#include <windows.h>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/lista_publicada.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/publicar/troca.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"
#include "update/hash_arquivo.h"

namespace zu::launcher::forjal {
namespace {

using Diferencas = std::vector<std::string>;

void ConferirNomes(const std::filesystem::path& pasta, const update::ItemLista& item, std::set<std::string>& certas,
                   Diferencas& diferencas) {
    for (const std::string& nome : NomesPublicados(item)) {
        InfoArquivo info;
        NomeTrocado trocado;
        if (!LerInfoArquivo(pasta / DeUtf8(nome), info) || info.Pasta()) {
            diferencas.push_back(Formatar("faltando: {}", nome));
        } else if (AcharNomeTrocado(pasta, nome, certas, trocado)) {
            diferencas.push_back(Formatar("diferente: {} (no disco, {} está escrito {})", nome, trocado.caminho,
                                          ParaUtf8(trocado.noDisco)));
        }
    }
}

std::string DiferencaDoConteudo(const update::ItemLista& item, const ResultadoHash& hash) {
    if (!hash.ok) return "não foi possível ler";
    if (hash.bytes != item.tamanho) return Formatar("{} bytes, esperado {}", hash.bytes, item.tamanho);
    if (hash.crc != item.crc) return Formatar("CRC {:08X}, esperado {:08X}", hash.crc, item.crc);
    return item.sha256.empty() || ParaHex(hash.sha256) == item.sha256 ? "" : "SHA-256 diferente";
}

void ConferirConteudo(const std::filesystem::path& pasta, const update::ItemLista& item, Andamento& andamento,
                      Diferencas& diferencas) {
    const std::string normal = update::NormalizarCaminho(item.caminho);
    const auto somar = [&](std::uint64_t bytes) { andamento.bytes += bytes; };
    const std::string motivo = DiferencaDoConteudo(item, HashArquivo(pasta / DeUtf8(normal), item.partes, somar));
    if (motivo.empty()) return;
    const std::string partes = item.partes > 0 ? Formatar(" em {} parte(s)", item.partes) : std::string();
    diferencas.push_back(Formatar("diferente: {}{} ({})", normal, partes, motivo));
}

std::vector<Diferencas> ConferirTudo(const std::filesystem::path& pasta, const update::UpdateList& lista,
                                     Saida& saida) {
    std::vector<Diferencas> diferencas(lista.itens.size());
    std::vector<std::uint64_t> tamanhos;
    std::set<std::string> certas;
    Andamento andamento;
    andamento.totalDeArquivos = lista.itens.size();
    for (std::size_t i = 0; i < lista.itens.size(); ++i) {
        ConferirNomes(pasta, lista.itens[i], certas, diferencas[i]);
        tamanhos.push_back(lista.itens[i].tamanho);
        andamento.totalDeBytes += lista.itens[i].tamanho;
    }
    const auto trabalho = [&](std::size_t i) {
        // What is missing has been told already.
        if (diferencas[i].empty()) ConferirConteudo(pasta, lista.itens[i], andamento, diferencas[i]);
        ++andamento.arquivos;
    };
    EmParalelo(tamanhos, trabalho, [&] { andamento.Mostrar(saida, "Conferindo"); });
    return diferencas;
}

}  // namespace

int RodarConferir(const Opcoes& opcoes, Saida& saida) {
    BytesSecretos pub;
    std::string erro;
    if (!pub.Ler(opcoes.Texto(L"--pub"), kTamanhoPublica, erro)) {
        return Falhar(saida, kUsoErrado, Formatar("--pub: {}", erro));
    }
    const std::filesystem::path pasta = opcoes.Texto(L"--publicado");
    InfoArquivo info;
    if (!LerInfoArquivo(pasta, info) || !info.Pasta()) {
        return Falhar(saida, kUsoErrado, Formatar("--publicado: {} não é uma pasta", ParaUtf8(pasta.native())));
    }
    if (TrocaInterrompida(pasta)) return Falhar(saida, kRecusado, kTrocaInterrompida);
    update::UpdateList lista;
    const UpdateSigningKey publica(pub.Bytes().begin(), pub.Bytes().end());
    if (!LerListaPublicada(pasta, publica, lista, erro)) return Falhar(saida, kRecusado, erro);

    std::size_t quantas = 0;
    std::set<std::string> certas;
    NomeTrocado trocado;
    if (AcharNomeTrocado(pasta, ParaUtf8(kNomeDaLista), certas, trocado)) {
        saida.Linha(Formatar("diferente: {} (no disco está escrito {})", trocado.caminho, ParaUtf8(trocado.noDisco)));
        ++quantas;
    }
    for (const Diferencas& doItem : ConferirTudo(pasta, lista, saida)) {
        for (const std::string& diferenca : doItem)
            saida.Linha(diferenca);
        quantas += doItem.size();
    }
    if (quantas > 0) return Falhar(saida, kRecusado, Formatar("{} diferença(s)", quantas));
    saida.Linha(Formatar("Tudo confere: seq {}, {} arquivo(s)", lista.seq, lista.itens.size()));
    return kFeito;
}

}  // namespace zu::launcher::forjal

#include "tests/suporte/publicacao.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "app/selo.h"
#include "core/chaves.h"
#include "core/texto.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/relatorio.h"
#include "update/blocos_indice.h"
#include "update/hash_arquivo.h"
#include "update/url.h"

namespace zu::launcher::teste {
namespace {

// Bytes of each part; 0: it is published whole.
std::uint64_t PorParte(const update::ItemLista& item) {
    return item.partes == 0 ? 0 : (item.tamanho + item.partes - 1) / item.partes;
}

}  // namespace

std::string Assinar(std::string_view assinados) {
    forjal::ChaveDaLista chave;
    std::string erro;
    std::vector<std::uint8_t> assinatura;
    if (!chave.Ler(std::filesystem::path(ZU_PASTA_CHAVES) / "lista.chave", erro) ||
        !chave.Assinar({reinterpret_cast<const std::uint8_t*>(assinados.data()), assinados.size()}, assinatura)) {
        throw std::runtime_error("assinar " + erro);
    }
    return update::JuntarAssinatura(assinados, assinatura);
}

std::string IndiceDe(const std::string& conteudo, std::uint64_t parte) {
    update::EscritorDeIndice escritor(conteudo.size(), parte);
    escritor.Alimentar(conteudo.data(), conteudo.size());
    return escritor.Terminar();
}

update::IndiceListado Listar(const std::string& caminho, const std::string& indice) {
    return {.caminho = caminho, .sha256 = ParaHex(forjal::HashDoTexto(indice).sha256), .tamanho = indice.size()};
}

update::UpdateList Publicacao::Lista() const {
    update::UpdateList lista{.seq = seq, .versao = versao, .remover = remover};
    for (const auto& [caminho, conteudo] : arquivos) {
        const ResultadoHash hash = forjal::HashDoTexto(conteudo);
        lista.itens.push_back({.caminho = lista.Guardar(caminho),
                               .sha256 = lista.Guardar(ParaHex(hash.sha256)),
                               .tamanho = hash.bytes,
                               .crc = hash.crc,
                               .partes = partes.contains(caminho) ? partes.at(caminho) : 0});
        if (blocos) lista.blocos.push_back(Listar(caminho, IndiceDe(conteudo, PorParte(lista.itens.back()))));
    }
    return lista;
}

void Publicacao::Servir(Servidor& servidor) const {
    for (const update::ItemLista& item : Lista().itens) {
        const std::string& conteudo = arquivos.at(std::string(item.caminho));
        const std::string caminho = MontarUrl("", item.caminho).substr(1);
        const std::uint64_t porParte = PorParte(item);
        if (blocos) servidor.Definir(caminho + ".blocos", teste::Servir(IndiceDe(conteudo, porParte)));
        if (item.partes == 0) servidor.Definir(caminho, teste::Servir(conteudo));
        for (std::uint32_t i = 0; i < item.partes; ++i)
            servidor.Definir(caminho + SufixoDaParte(i + 1), teste::Servir(conteudo.substr(i * porParte, porParte)));
    }
    servidor.Definir("UpdateList.txt", teste::Servir(Assinar(update::EscreverLista(Lista()))));
    servidor.EsquecerPedidos();
}

std::string Bytes(std::size_t tamanho, unsigned semente) {
    std::mt19937 sorteio(semente);
    std::string bytes(tamanho, '\0');
    for (char& b : bytes)
        b = static_cast<char>(sorteio());
    return bytes;
}

std::string Selado(const std::string& urlUpdate, bool automatico) {
    return Selar(MontarCorpo({.nome = "Zu de teste", .updateAutomatico = automatico, .update = urlUpdate}),
                 SegredoDoSelo());
}

void Configurar(const std::filesystem::path& pasta, const std::string& urlUpdate, int conexoes) {
    DefinirConfig({.pastaJogo = pasta, .urlUpdate = urlUpdate, .conexoes = conexoes});
}

std::vector<std::string> LinhasDoLog(const PastaTemporaria& pasta) {
    constexpr std::size_t kTamanhoDaHora = std::string_view("00:00:00.000 ").size();
    std::ifstream log(pasta / "ZuLauncher.log");
    std::vector<std::string> linhas;
    for (std::string linha; std::getline(log, linha);)
        linhas.push_back(linha.substr(std::min(kTamanhoDaHora, linha.size())));
    return linhas;
}

}  // namespace zu::launcher::teste

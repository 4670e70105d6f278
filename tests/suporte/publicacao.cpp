#include "tests/suporte/publicacao.h"

#include <algorithm>
#include <random>
#include <sstream>
#include <stdexcept>

#include "app/selo.h"
#include "core/chaves.h"
#include "core/crc32.h"
#include "core/hash.h"
#include "core/texto.h"
#include "tools/forjal/chave_da_lista.h"
#include "update/blocos_indice.h"
#include "update/hash_arquivo.h"
#include "update/url.h"

namespace zu::launcher::teste {
namespace {

std::span<const std::uint8_t> ComoBytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()};
}

}  // namespace

std::string Assinar(std::string_view assinados) {
    forjal::ChaveDaLista chave;
    std::string erro;
    std::vector<std::uint8_t> assinatura;
    if (!chave.Ler(std::filesystem::path(ZU_PASTA_CHAVES) / "lista.chave", erro) ||
        !chave.Assinar(ComoBytes(assinados), assinatura)) {
        throw std::runtime_error("assinar " + erro);
    }
    return update::JuntarAssinatura(assinados, assinatura);
}

std::string Publicacao::Indice(const std::string& caminho) const {
    const std::string& conteudo = arquivos.at(caminho);
    const std::uint32_t n = partes.contains(caminho) ? partes.at(caminho) : 0;
    update::EscritorDeIndice escritor(conteudo.size(), n == 0 ? 0 : (conteudo.size() + n - 1) / n);
    escritor.Alimentar(conteudo.data(), conteudo.size());
    return escritor.Terminar();
}

update::UpdateList Publicacao::Lista() const {
    update::UpdateList lista{.seq = seq, .versao = versao, .remover = remover};
    for (const auto& [caminho, conteudo] : arquivos) {
        lista.itens.push_back({.caminho = caminho,
                               .sha256 = ParaHex(Sha256Of(ComoBytes(conteudo))),
                               .tamanho = conteudo.size(),
                               .crc = ~Crc32Update(kCrc32Inicial, conteudo.data(), conteudo.size()),
                               .partes = partes.contains(caminho) ? partes.at(caminho) : 0});
        if (!blocos) continue;
        const std::string indice = Indice(caminho);
        lista.blocos.push_back(
            {.caminho = caminho, .sha256 = ParaHex(Sha256Of(ComoBytes(indice))), .tamanho = indice.size()});
    }
    return lista;
}

void Publicacao::Servir(Servidor& servidor) const {
    for (const update::ItemLista& item : Lista().itens) {
        const std::string& conteudo = arquivos.at(item.caminho);
        const std::string caminho = MontarUrl("", item.caminho).substr(1);
        if (blocos) servidor.Definir(caminho + ".blocos", teste::Servir(Indice(item.caminho)));
        if (item.partes == 0) servidor.Definir(caminho, teste::Servir(conteudo));
        const std::size_t porParte = (conteudo.size() + item.partes - 1) / std::max(1U, item.partes);
        for (std::uint32_t i = 0; i < item.partes; ++i)
            servidor.Definir(caminho + SufixoDaParte(i + 1), teste::Servir(conteudo.substr(i * porParte, porParte)));
    }
    servidor.Definir("UpdateList.txt", teste::Servir(Assinar(update::EscreverLista(Lista()))));
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
    std::istringstream log(pasta.Ler("ZuLauncher.log"));
    std::vector<std::string> linhas;
    for (std::string linha; std::getline(log, linha);) {
        if (linha.ends_with('\r')) linha.pop_back();
        linhas.push_back(linha.substr(std::min(kTamanhoDaHora, linha.size())));
    }
    return linhas;
}

}  // namespace zu::launcher::teste

#include "update/verificacao.h"
#include "update/lista.h"

#include <set>
#include <utility>

#include "core/arquivo.h"
#include "core/log.h"
#include "core/texto.h"
#include "update/caminhos.h"
#include "update/cliente.h"
#include "update/hash_arquivo.h"
#include "update/transferencia.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kFaltando = "faltando";
constexpr std::string_view kDiferente = "diferente";

class Verificacao {
 public:
    Verificacao(Atualizador& atualizador, bool reparar) : atualizador_(atualizador), reparar_(reparar) {}

    // Empty when the file is what the list says.
    std::string_view Situacao(const update::ItemLista& item, const std::string& normal, const std::string& chave) {
        const std::filesystem::path alvo = CaminhoNoCliente(normal);
        InfoArquivo info;
        if (!LerInfoArquivo(alvo, info) || info.Pasta()) return kFaltando;
        EntradaCache entrada;
        if (!Conhecer(alvo, info, normal, chave, entrada)) return kDiferente;
        const bool igual = entrada.tamanho == item.tamanho && entrada.crc == item.crc &&
                           (item.sha256.empty() || entrada.sha256 == item.sha256);
        return igual ? std::string_view{} : kDiferente;
    }

    // The item is settled, whatever came of it.
    void Feito(const update::ItemLista& item) {
        bytesDosAnteriores_ += item.tamanho;
        atualizador_.ObterAndamento().DefinirBytes(bytesDosAnteriores_);
        atualizador_.ObterAndamento().SomarArquivo();
    }

 private:
    // What the file holds, from the cache or by reading it. False when it cannot be read, or the run was cancelled.
    bool Conhecer(const std::filesystem::path& alvo, const InfoArquivo& info, const std::string& normal,
                  const std::string& chave, EntradaCache& entrada) {
        if (!reparar_ && atualizador_.Cache().Achar(chave, info, entrada)) return true;
        atualizador_.ObterAndamento().DefinirArquivo(normal);
        std::uint64_t lidos = 0;
        const auto progresso = [&](std::span<const std::uint8_t> bloco) {
            lidos += bloco.size();
            atualizador_.ObterAndamento().DefinirBytes(bytesDosAnteriores_ + lidos);
        };
        const ResultadoHash hash = HashArquivo(alvo, 0, progresso, &atualizador_.Cancelamento());
        if (!hash.ok) return false;
        entrada = {
            .tamanho = hash.bytes, .modificado = info.modificado, .sha256 = ParaHex(hash.sha256), .crc = hash.crc};
        atualizador_.Cache().Registrar(chave, entrada);
        atualizador_.Cache().GravarDeVezEmQuando();
        return true;
    }

    Atualizador& atualizador_;
    bool reparar_;
    std::uint64_t bytesDosAnteriores_ = 0;
};

std::uint64_t SomarTamanhos(const update::UpdateList& lista) {
    std::uint64_t soma = 0;
    for (const update::ItemLista& item : lista.itens)
        soma += item.tamanho;
    return soma;
}

}  // namespace

bool VerificarArquivos(Atualizador& atualizador, const update::UpdateList& lista, bool reparar,
                       std::vector<std::size_t>& indices) {
    Andamento& andamento = atualizador.ObterAndamento();
    andamento.Comecar(StatusUpdate::kVerificando,
                      reparar ? "Reparando: conferindo todos os arquivos..." : "Verificando arquivos...",
                      lista.itens.size(), SomarTamanhos(lista));
    atualizador.Cache().Carregar();

    Verificacao verificacao(atualizador, reparar);
    std::set<std::string> pedidos;
    for (std::size_t i = 0; i < lista.itens.size() && !atualizador.Cancelado(); ++i) {
        const update::ItemLista& item = lista.itens[i];
        const std::string normal = update::NormalizarCaminho(item.caminho);
        const std::string chave = MinusculasAscii(normal);
        const bool protegida = update::ChaveProtegida(chave);
        const std::string_view situacao = protegida ? std::string_view{} : verificacao.Situacao(item, normal, chave);
        // Parts that could not be deleted once they were joined.
        if (situacao.empty() && !protegida && item.partes > 0)
            ApagarPartes(ComSufixo(CaminhoNoCliente(normal), L".upd"), item.partes);
        // A path listed twice is fetched once: two downloads would write one temporary file.
        if (!situacao.empty() && !atualizador.Cancelado() && pedidos.insert(chave).second) {
            LogLinha("[update] {}: {}", normal, situacao);
            andamento.Anotar({normal, std::string(situacao)});
            indices.push_back(i);
        }
        verificacao.Feito(item);
    }
    atualizador.Cache().Gravar();
    if (!atualizador.Cancelado()) return true;
    andamento.Definir(StatusUpdate::kErro, "Cancelado.");
    return false;
}

}  // namespace zu::launcher

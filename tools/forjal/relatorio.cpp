#include "tools/forjal/relatorio.h"

#include <chrono>

#include "core/formato.h"
#include "core/texto.h"
#include "tools/forjal/comandos.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {

void Diferencas::Faltando(std::string_view nome, std::string_view motivo) {
    linhas.push_back(motivo.empty() ? Formatar("faltando: {}", nome) : Formatar("faltando: {} ({})", nome, motivo));
}

void Diferencas::Diferente(std::string_view nome, std::string_view motivo) {
    linhas.push_back(Formatar("diferente: {} ({})", nome, motivo));
}

std::string NomeInteiro(const update::ItemLista& item) {
    const std::string normal = update::NormalizarCaminho(item.caminho);
    return item.partes > 0 ? Formatar("{} em {} parte(s)", normal, item.partes) : normal;
}

std::string DiferencaDoConteudo(const update::ItemLista& item, const ResultadoHash& hash) {
    if (!hash.ok) return "não foi possível ler";
    if (hash.bytes != item.tamanho) return Formatar("{} bytes, esperado {}", hash.bytes, item.tamanho);
    if (hash.crc != item.crc) return Formatar("CRC {:08X}, esperado {:08X}", hash.crc, item.crc);
    return item.sha256.empty() || ParaHex(hash.sha256) == item.sha256 ? "" : "SHA-256 diferente";
}

std::string DiferencaDoIndice(const update::IndiceListado& listado, const ResultadoHash& hash) {
    if (hash.bytes != listado.tamanho) return Formatar("{} bytes, esperado {}", hash.bytes, listado.tamanho);
    return ParaHex(hash.sha256) == listado.sha256 ? "" : "SHA-256 diferente";
}

ResultadoHash HashDoTexto(std::string_view texto) {
    HashCorrente hash;
    hash.Alimentar(texto.data(), texto.size());
    return hash.Terminar(true);
}

void ConferirValidade(const update::UpdateList& lista, Diferencas& diferencas) {
    if (!lista.validade || std::chrono::system_clock::now() <= *lista.validade) return;
    diferencas.Diferente("UpdateList.txt", Formatar("venceu em {}", update::TextoDoDia(*lista.validade)));
}

void Relatorio::Juntar(std::span<const Diferencas> diferencas) {
    for (const Diferencas& uma : diferencas) {
        for (const std::string& linha : uma.linhas)
            saida_.Linha(linha);
        quantas_ += uma.linhas.size();
    }
}

int Relatorio::Encerrar(std::span<const std::string> certo) {
    if (quantas_ > 0) return Falhar(saida_, kRecusado, Formatar("{} diferença(s)", quantas_));
    for (const std::string& linha : certo)
        saida_.Linha(linha);
    return kFeito;
}

}  // namespace zu::launcher::forjal

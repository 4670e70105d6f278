#include "update/registros.h"

#include <charconv>
#include <cstdlib>
#include <utility>

#include "core/formato.h"
#include "core/texto.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kVersaoDaLinha = "v2";
constexpr std::size_t kTamanhoSha256 = 64;
constexpr std::size_t kMenorEstado = 4;  // bytes

// A decimal number that a TAB must follow directly; both are taken off the front.
bool TomarNumero(std::string_view& resto, std::uint64_t& numero) {
    const std::size_t tab = resto.find('\t');
    return tab != std::string_view::npos && LerNumeroInteiro(TomarAte(resto, '\t'), numero);
}

bool LerLinhaDoCache(std::string_view linha, std::string_view& caminho, EntradaCache& entrada) {
    if (TomarAte(linha, '\t') != kVersaoDaLinha) return false;
    const std::string_view sha256 = TomarAte(linha, '\t');
    const std::string_view crc = TomarAte(linha, '\t');
    if (sha256.size() != kTamanhoSha256 || crc.empty()) return false;
    std::from_chars(crc.data(), crc.data() + crc.size(), entrada.crc, 16);
    if (!TomarNumero(linha, entrada.tamanho) || !TomarNumero(linha, entrada.modificado) || linha.empty()) return false;
    entrada.sha256 = sha256;
    caminho = linha;
    return true;
}

}  // namespace

std::string TextoDoEstado(std::int64_t seq, std::string_view versao) {
    return Formatar("seq={}\nversao={}\n", seq, versao);
}

std::int64_t SeqDoTexto(const std::string& texto) {
    constexpr std::string_view kChave = "seq=";
    const std::size_t chave = texto.find(kChave);
    if (texto.size() < kMenorEstado || chave == std::string::npos) return 0;
    return std::strtoll(texto.c_str() + chave + kChave.size(), nullptr, 10);
}

std::string TextoDoCache(const MapaCache& mapa) {
    std::string texto;
    for (const auto& [caminho, entrada] : mapa) {
        texto += Formatar("v2\t{}\t{:08X}\t{}\t{}\t{}\n", entrada.sha256, entrada.crc, entrada.tamanho,
                          entrada.modificado, caminho);
    }
    return texto;
}

MapaCache CacheDoTexto(std::string_view texto) {
    MapaCache mapa;
    while (!texto.empty()) {
        std::string_view caminho;
        EntradaCache entrada;
        if (!LerLinhaDoCache(TomarAte(texto, '\n'), caminho, entrada)) continue;
        // The file is written in the map's order, so the end is nearly always the right place.
        const auto lugar = mapa.insert_or_assign(mapa.end(), std::string(caminho), EntradaCache{});
        lugar->second = std::move(entrada);
    }
    return mapa;
}

std::string TextoDosPendentes(std::span<const LinhaPendente> linhas) {
    std::string texto;
    for (const LinhaPendente& linha : linhas) {
        texto += linha.origem.empty() ? Formatar("D\t{}\n", linha.destino)
                                      : Formatar("M\t{}\t{}\n", linha.origem, linha.destino);
    }
    return texto;
}

std::vector<LinhaPendente> PendentesDoTexto(std::string_view texto) {
    std::vector<LinhaPendente> linhas;
    while (!texto.empty()) {
        std::string_view resto = TomarAte(texto, '\n');
        const std::string_view tipo = TomarAte(resto, '\t');
        LinhaPendente linha;
        if (tipo == "M") linha.origem = TomarAte(resto, '\t');
        linha.destino = resto;
        const bool completa = !linha.destino.empty() && (tipo == "D" || (tipo == "M" && !linha.origem.empty()));
        if (completa) linhas.push_back(std::move(linha));
    }
    return linhas;
}

}  // namespace zu::launcher

#include "update/blocos_indice.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

namespace zu::launcher::update {
namespace {

constexpr std::string_view kMagica = "ZUBL";
constexpr std::uint64_t kVersao = 1;
constexpr std::size_t kCabecalho = 32;  // bytes
constexpr std::uint32_t kMenorBloco = 1024;
constexpr std::uint32_t kMaiorBloco = 1 << 20;
constexpr std::uint32_t kMenorLargura = 5;
constexpr std::uint32_t kMaiorLargura = 8;
constexpr std::uint64_t kMaximoDePartes = 999;

std::uint64_t NumeroDeBlocos(std::uint64_t tamanho, std::uint64_t bloco) {
    return tamanho / bloco + (tamanho % bloco != 0 ? 1 : 0);
}

void Escrever(std::string& saida, std::uint64_t valor, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i)
        saida += static_cast<char>(valor >> (8 * i));
}

// Little-endian; taken off the front, which must have them.
std::uint64_t Tomar(std::string_view& resto, std::size_t bytes) {
    std::uint64_t valor = 0;
    for (std::size_t i = bytes; i-- > 0;)
        valor = valor << 8 | static_cast<std::uint8_t>(resto[i]);
    resto.remove_prefix(bytes);
    return valor;
}

// The fewest bytes of which no two different sums share the upper ones.
std::uint32_t MenorLargura(std::vector<Soma> somas) {
    std::ranges::sort(somas);
    somas.erase(std::unique(somas.begin(), somas.end()), somas.end());
    std::uint32_t largura = kMenorLargura;
    for (; largura < kMaiorLargura; ++largura) {
        const auto iguais = [&](Soma a, Soma b) { return (a ^ b) >> (64 - 8 * largura) == 0; };
        if (std::ranges::adjacent_find(somas, iguais) == somas.end()) break;
    }
    return largura;
}

}  // namespace

// A quarter of the root of the size, rounded to a power of two.
std::uint32_t TamanhoDoBloco(std::uint64_t tamanhoDoArquivo) {
    std::uint32_t bloco = kMenorBloco;
    while (bloco < kMaiorBloco && tamanhoDoArquivo / bloco / bloco >= 64)
        bloco *= 2;
    return bloco;
}

std::uint64_t LimiteDoIndice(std::uint64_t tamanhoDoArquivo) {
    constexpr std::uint64_t kMaximo = 32ULL << 20;
    const std::uint64_t blocos = NumeroDeBlocos(tamanhoDoArquivo, kMenorBloco);
    return std::min(kMaximo, kCabecalho + std::min(blocos, kMaximo) * kMaiorLargura);
}

bool LerIndice(std::string_view bytes, IndiceDeBlocos& indice) {
    if (bytes.size() < kCabecalho || !bytes.starts_with(kMagica)) return false;
    bytes.remove_prefix(kMagica.size());
    const std::uint64_t versao = Tomar(bytes, 2);
    indice.largura = static_cast<std::uint32_t>(Tomar(bytes, 2));
    indice.bloco = static_cast<std::uint32_t>(Tomar(bytes, 4));
    const std::uint64_t reservado = Tomar(bytes, 4);
    indice.tamanho = Tomar(bytes, 8);
    indice.parte = Tomar(bytes, 8);
    const bool bom = versao == kVersao && reservado == 0 && indice.largura >= kMenorLargura &&
                     indice.largura <= kMaiorLargura && std::has_single_bit(indice.bloco) &&
                     indice.bloco >= kMenorBloco && indice.bloco <= kMaiorBloco && indice.tamanho != 0 &&
                     (indice.parte == 0 || NumeroDeBlocos(indice.tamanho, indice.parte) <= kMaximoDePartes);
    if (!bom || bytes.size() % indice.largura != 0 ||
        bytes.size() / indice.largura != NumeroDeBlocos(indice.tamanho, indice.bloco)) {
        return false;
    }
    indice.somas.clear();
    indice.somas.reserve(bytes.size() / indice.largura);
    while (!bytes.empty())
        indice.somas.push_back(Tomar(bytes, indice.largura));
    return true;
}

EscritorDeIndice::EscritorDeIndice(std::uint64_t tamanhoDoArquivo, std::uint64_t parte)
    : tamanho_(tamanhoDoArquivo), parte_(parte), bloco_(TamanhoDoBloco(tamanhoDoArquivo)) {}

void EscritorDeIndice::Alimentar(const void* dados, std::size_t tamanho) {
    std::string_view resto(static_cast<const char*>(dados), tamanho);
    vieram_ += tamanho;
    if (vieram_ > tamanho_) return;
    while (!resto.empty()) {
        if (aberto_.empty() && resto.size() >= bloco_) {
            somas_.push_back(SomarBloco(reinterpret_cast<const std::uint8_t*>(resto.data()), bloco_));
            resto.remove_prefix(bloco_);
            continue;
        }
        const std::size_t cabem = std::min<std::size_t>(bloco_ - aberto_.size(), resto.size());
        aberto_.append(resto.substr(0, cabem));
        resto.remove_prefix(cabem);
        if (aberto_.size() == bloco_) FecharBloco();
    }
}

void EscritorDeIndice::FecharBloco() {
    somas_.push_back(SomarBloco(reinterpret_cast<const std::uint8_t*>(aberto_.data()), aberto_.size()));
    aberto_.clear();
}

std::string EscritorDeIndice::Terminar() {
    if (vieram_ != tamanho_ || tamanho_ == 0) return {};
    if (!aberto_.empty()) FecharBloco();
    const std::uint32_t largura = MenorLargura(somas_);
    std::string indice(kMagica);
    indice.reserve(kCabecalho + somas_.size() * largura);
    Escrever(indice, kVersao, 2);
    Escrever(indice, largura, 2);
    Escrever(indice, bloco_, 4);
    Escrever(indice, 0, 4);
    Escrever(indice, tamanho_, 8);
    Escrever(indice, parte_, 8);
    for (const Soma soma : somas_)
        Escrever(indice, soma >> (64 - 8 * largura), largura);
    return indice;
}

}  // namespace zu::launcher::update

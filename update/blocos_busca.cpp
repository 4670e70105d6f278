#include "update/blocos_busca.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <deque>
#include <memory>

namespace zu::launcher::update {
namespace {

// Blocks by their sum. Of blocks that are equal the first one stands for all.
class Tabela {
 public:
    static constexpr std::uint32_t kNenhum = ~std::uint32_t{0};

    explicit Tabela(const IndiceDeBlocos& indice)
        : indice_(indice),
          bits_(static_cast<unsigned>(std::bit_width(indice.somas.size()))),
          lugares_(std::size_t{2} << bits_, kNenhum),
          mapa_((std::size_t{1} << (bits_ + kBitsPorBloco)) / 64) {
        for (std::uint32_t i = 0; i < indice.BlocosInteiros(); ++i)
            Por(i);
    }

    // Tells quickly that no block has a sum; `Passa` is true for few others. Lives no longer than the table. A sum has
    // two bits, of one word, so that it costs one look.
    struct Filtro {
        const std::uint64_t* mapa;
        unsigned desvio;
        [[nodiscard]] bool Passa(Soma soma) const {
            const std::uint64_t lugar = soma >> desvio;
            return (mapa[lugar >> 12] >> (lugar >> 6 & 63) & mapa[lugar >> 12] >> (lugar & 63) & 1) != 0;
        }
    };
    [[nodiscard]] Filtro Peneira() const { return {mapa_.data(), 64 - Filtrados()}; }

    [[nodiscard]] std::uint32_t Achar(Soma reduzida) const {
        std::size_t lugar = Lugar(reduzida);
        for (std::size_t n = 0; n < kTentativas && lugares_[lugar] != kNenhum; ++n, lugar = Depois(lugar))
            if (indice_.somas[lugares_[lugar]] == reduzida) return lugares_[lugar];
        return kNenhum;
    }

 private:
    static constexpr unsigned kBitsPorBloco = 5;  // 2^5
    // Sums spread over the table by themselves; an index that was made to crowd together costs blocks and not time.
    static constexpr std::size_t kTentativas = 16;

    // The upper bits of a sum that tell a word and two bits in it.
    [[nodiscard]] unsigned Filtrados() const { return bits_ + kBitsPorBloco + 6; }
    [[nodiscard]] std::size_t Lugar(Soma reduzida) const { return reduzida >> (8 * indice_.largura - bits_ - 1); }
    [[nodiscard]] std::size_t Depois(std::size_t lugar) const { return (lugar + 1) & (lugares_.size() - 1); }

    void Por(std::uint32_t bloco) {
        const Soma reduzida = indice_.somas[bloco];
        std::size_t lugar = Lugar(reduzida);
        for (std::size_t n = 0; n < kTentativas; ++n, lugar = Depois(lugar)) {
            if (lugares_[lugar] == kNenhum) {
                lugares_[lugar] = bloco;
                const std::uint64_t noFiltro = reduzida >> (8 * indice_.largura - Filtrados());
                mapa_[noFiltro >> 12] |= std::uint64_t{1} << (noFiltro >> 6 & 63) | std::uint64_t{1} << (noFiltro & 63);
                return;
            }
            if (indice_.somas[lugares_[lugar]] == reduzida) return;
        }
    }

    const IndiceDeBlocos& indice_;
    unsigned bits_;
    std::vector<std::uint32_t> lugares_;
    std::vector<std::uint64_t> mapa_;
};

// A block and the offset in the old file at which it is due.
struct Esperado {
    std::uint64_t onde = 0;
    std::uint32_t bloco = 0;
};

// The old file goes by in a window. Where the block that is due matches, the search leaps over it; elsewhere the sum
// rolls on byte by byte until some block has it, whose follower must then match in its turn.
class Busca {
 public:
    Busca(const IndiceDeBlocos& indice, const LeitorEmOrdem& ler, std::vector<std::uint64_t>& onde)
        : indice_(indice),
          ler_(ler),
          onde_(onde),
          tabela_(indice),
          rolante_(indice.bloco),
          bloco_(indice.bloco),
          cabem_(kLeitura + 4 * bloco_),
          janela_(std::make_unique_for_overwrite<std::uint8_t[]>(cabem_)) {
        onde_.assign(indice.somas.size(), kNaoAchado);
    }

    bool Rodar() {
        while (Ter(bloco_)) {
            if (!Continuar(SomarBloco(Aqui(), bloco_))) Rolar(SomarBloco(Aqui(), bloco_));
        }
        if (!falhou_) AcharNoFim();
        if (!falhou_) RepetirIguais();
        return !falhou_;
    }

 private:
    static constexpr std::size_t kLeitura = 1 << 20;

    [[nodiscard]] const std::uint8_t* Aqui() const { return janela_.get() + (aqui_ - inicio_); }

    // At least that many bytes from here on are in the window. False at the end of the file.
    bool Ter(std::size_t bytes) {
        if (fim_ - aqui_ >= bytes) return true;
        if (acabou_) return false;
        std::memmove(janela_.get(), Aqui(), fim_ - aqui_);
        inicio_ = aqui_;
        const std::span<std::uint8_t> livre = std::span(janela_.get(), cabem_).subspan(fim_ - inicio_);
        std::size_t lidos = 0;
        falhou_ = !ler_(livre, lidos);
        acabou_ = falhou_ || lidos < livre.size();
        if (!falhou_) fim_ += lidos;
        return !falhou_ && fim_ - aqui_ >= bytes;
    }

    [[nodiscard]] bool Confere(std::uint32_t bloco, Soma soma) const {
        return indice_.somas[bloco] == indice_.Reduzir(soma);
    }

    // The block that is due right behind the last one found.
    bool Continuar(Soma soma) {
        if (devido_.onde != aqui_ || devido_.bloco >= indice_.BlocosInteiros() || !Confere(devido_.bloco, soma))
            return false;
        Saltar(devido_.bloco, aqui_);
        return true;
    }

    // Found: the search goes on behind it.
    void Saltar(std::uint32_t bloco, std::uint64_t onde) {
        onde_[bloco] = onde;
        aqui_ = onde + bloco_;
        devido_ = {aqui_, bloco + 1};
        seguidores_.clear();
        const std::size_t ultimo = bloco + 1;
        if (ultimo < indice_.BlocosInteiros() || ultimo >= onde_.size()) return;
        const auto curto = static_cast<std::size_t>(indice_.Comprimento(ultimo));
        if (Ter(curto) && Confere(static_cast<std::uint32_t>(ultimo), SomarBloco(Aqui(), curto))) onde_[ultimo] = aqui_;
    }

    // From here on byte by byte, until something is found or the file ends. `soma`: of the block here.
    void Rolar(Soma soma) {
        AnotarSeguidor(soma);
        while (Ter(bloco_ + 1)) {
            const std::uint64_t ate = seguidores_.empty() ? kNaoAchado : seguidores_.front().onde;
            soma = RolarAte(soma, std::min(fim_ - bloco_, ate));
            if (ConferirSeguidor(soma)) return;
            AnotarSeguidor(soma);
        }
        aqui_ = fim_;
    }

    // Stops at `ate`, or before, where some block has the sum.
    Soma RolarAte(Soma soma, std::uint64_t ate) {
        const std::uint8_t* sai = Aqui();
        const std::uint8_t* const fim = sai + (ate - aqui_);
        const Tabela::Filtro filtro = tabela_.Peneira();
        bool achou = false;
        while (!achou && fim - sai >= 2) {
            const Soma antes = soma;
            Soma doMeio = 0;
            rolante_.RolarDois(soma, doMeio, sai, sai + bloco_);
            sai += 2;
            if (filtro.Passa(doMeio) && Achar(doMeio) != Tabela::kNenhum) {
                sai -= 2;
                soma = antes;
                break;
            }
            achou = filtro.Passa(soma) && Achar(soma) != Tabela::kNenhum;
        }
        if (!achou && sai < fim) {
            soma = rolante_.Rolar(soma, *sai, sai[bloco_]);
            ++sai;
        }
        aqui_ = ate - static_cast<std::uint64_t>(fim - sai);
        return soma;
    }

    [[nodiscard]] std::uint32_t Achar(Soma soma) const { return tabela_.Achar(indice_.Reduzir(soma)); }

    void AnotarSeguidor(Soma soma) {
        const std::uint32_t bloco = Achar(soma);
        if (bloco != Tabela::kNenhum && bloco + 1 < indice_.BlocosInteiros())
            seguidores_.push_back({aqui_ + bloco_, bloco + 1});
    }

    bool ConferirSeguidor(Soma soma) {
        if (seguidores_.empty() || seguidores_.front().onde != aqui_) return false;
        const std::uint32_t bloco = seguidores_.front().bloco;
        seguidores_.pop_front();
        if (!Confere(bloco, soma)) return false;
        onde_[bloco - 1] = aqui_ - bloco_;
        Saltar(bloco, aqui_);
        return true;
    }

    // The new file's end at the old one's.
    void AcharNoFim() {
        const std::size_t ultimo = onde_.size() - 1;
        const auto tamanho = static_cast<std::size_t>(indice_.Comprimento(ultimo));
        if (onde_[ultimo] != kNaoAchado || fim_ - inicio_ < tamanho) return;
        const std::uint64_t onde = fim_ - tamanho;
        if (Confere(static_cast<std::uint32_t>(ultimo), SomarBloco(janela_.get() + (onde - inicio_), tamanho)))
            onde_[ultimo] = onde;
    }

    // What was found for one of several equal blocks serves them all.
    void RepetirIguais() {
        const std::span inteiros = std::span(onde_).first(indice_.BlocosInteiros());
        if (std::ranges::find(inteiros, kNaoAchado) == inteiros.end()) return;
        const auto primeiro = [&](std::size_t i) { return tabela_.Achar(indice_.somas[i]); };
        for (std::size_t i = 0; i < inteiros.size(); ++i) {
            const std::uint32_t igual = inteiros[i] != kNaoAchado ? primeiro(i) : Tabela::kNenhum;
            if (igual != Tabela::kNenhum && inteiros[igual] == kNaoAchado) inteiros[igual] = inteiros[i];
        }
        for (std::size_t i = 0; i < inteiros.size(); ++i) {
            const std::uint32_t igual = inteiros[i] == kNaoAchado ? primeiro(i) : Tabela::kNenhum;
            if (igual != Tabela::kNenhum) inteiros[i] = inteiros[igual];
        }
    }

    const IndiceDeBlocos& indice_;
    const LeitorEmOrdem& ler_;
    std::vector<std::uint64_t>& onde_;
    Tabela tabela_;
    SomaRolante rolante_;
    std::size_t bloco_;
    std::size_t cabem_;  // bytes in the window
    std::unique_ptr<std::uint8_t[]> janela_;

    // Offsets in the old file.
    std::uint64_t inicio_ = 0;  // of the window
    std::uint64_t fim_ = 0;     // of what the window holds
    std::uint64_t aqui_ = 0;
    bool acabou_ = false;
    bool falhou_ = false;

    Esperado devido_;                  // right behind the last one found; at first the beginning
    std::deque<Esperado> seguidores_;  // of blocks found alone, in order, at most one for each byte of a block
};

}  // namespace

bool BuscarBlocos(const IndiceDeBlocos& indice, const LeitorEmOrdem& ler, std::vector<std::uint64_t>& onde) {
    return Busca(indice, ler, onde).Rodar();
}

bool ContarIguais(const IndiceDeBlocos& indice, const LeitorEmOrdem& ler, std::uint64_t& iguais) {
    constexpr std::size_t kLeitura = 1 << 20;  // whole blocks of any size
    const auto janela = std::make_unique_for_overwrite<std::uint8_t[]>(kLeitura);
    iguais = 0;
    for (std::size_t lidos = kLeitura; lidos == kLeitura;) {
        if (!ler({janela.get(), kLeitura}, lidos)) return false;
        for (std::size_t i = 0; i < lidos; i += indice.bloco) {
            const auto bloco = static_cast<std::size_t>(iguais / indice.bloco);
            const std::size_t tamanho = std::min<std::size_t>(indice.bloco, lidos - i);
            if (tamanho == indice.bloco && bloco < indice.BlocosInteiros() &&
                indice.Reduzir(SomarBloco(janela.get() + i, tamanho)) != indice.somas[bloco]) {
                return true;
            }
            iguais += tamanho;
        }
    }
    return true;
}

}  // namespace zu::launcher::update

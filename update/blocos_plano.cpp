#include "update/blocos_plano.h"

#include <algorithm>
#include <utility>

namespace zu::launcher::update {
namespace {

constexpr std::uint64_t kPedido = 16ULL * 1024;  // bytes that would come while the answer to a request is waited for
constexpr std::size_t kMaximoDePedidos = 4096;
constexpr std::size_t kMaximoDeTrechos = 65536;  // bounds the memory that a plan takes while its file comes

// The pieces in order, neighbours of one kind as one, ranges with no more than `folga` bytes between them too.
class Costura {
 public:
    explicit Costura(std::uint64_t folga) : folga_(folga) {}

    void Juntar(const Trecho& trecho) {
        if (trecho.DaRede()) Engolir();
        if (!trechos_.empty() && Continua(trechos_.back(), trecho)) {
            trechos_.back().tamanho += trecho.tamanho;
        } else {
            trechos_.push_back(trecho);
        }
    }

    std::vector<Trecho> Tirar() { return std::move(trechos_); }

 private:
    static bool Continua(const Trecho& antes, const Trecho& depois) {
        return antes.DaRede() ? depois.DaRede() : antes.velho + antes.tamanho == depois.velho;
    }

    // Before another range: what was little since the last one comes with it.
    void Engolir() {
        std::size_t ultimo = trechos_.size();
        std::uint64_t entre = 0;
        while (ultimo > 0 && !trechos_[ultimo - 1].DaRede() && entre <= folga_)
            entre += trechos_[--ultimo].tamanho;
        if (ultimo == 0 || entre > folga_ || !trechos_[ultimo - 1].DaRede()) return;
        trechos_[ultimo - 1].tamanho += entre;
        trechos_.resize(ultimo);
    }

    std::uint64_t folga_;
    std::vector<Trecho> trechos_;
};

std::vector<Trecho> Costurar(const IndiceDeBlocos& indice, std::span<const std::uint64_t> onde, std::uint64_t presentes,
                             std::uint64_t folga) {
    Costura costura(folga);
    for (auto i = static_cast<std::size_t>(presentes / indice.bloco); i < onde.size(); ++i) {
        const std::uint64_t inicio = std::max(indice.Inicio(i), presentes);
        const std::uint64_t pulados = inicio - indice.Inicio(i);
        const std::uint64_t tamanho = indice.Comprimento(i) - pulados;
        if (tamanho != 0) costura.Juntar({inicio, tamanho, onde[i] == kNaoAchado ? kNaoAchado : onde[i] + pulados});
    }
    return costura.Tirar();
}

// Ranges cut at the borders of the parts.
std::vector<Trecho> Cortar(const std::vector<Trecho>& trechos, std::uint64_t parte) {
    std::vector<Trecho> cortados;
    for (Trecho t : trechos) {
        while (parte != 0 && t.DaRede() && t.inicio % parte + t.tamanho > parte) {
            const std::uint64_t ate = parte - t.inicio % parte;
            cortados.push_back({t.inicio, ate, kNaoAchado});
            t.inicio += ate;
            t.tamanho -= ate;
        }
        cortados.push_back(t);
    }
    return cortados;
}

}  // namespace

bool Plano::ValeAPena() const {
    const double custo = static_cast<double>(daRede) + static_cast<double>(pedidos) * kPedido;
    return trechos.size() <= kMaximoDeTrechos && custo <= 0.8 * static_cast<double>(daRede + doDisco);
}

Plano Planejar(const IndiceDeBlocos& indice, std::span<const std::uint64_t> onde, std::uint64_t presentes) {
    Plano plano;
    std::uint64_t folga = kPedido;
    do {
        plano.trechos = Costurar(indice, onde, presentes, folga);
        folga *= 2;
    } while (std::cmp_greater(std::ranges::count_if(plano.trechos, &Trecho::DaRede), kMaximoDePedidos));
    plano.trechos = Cortar(plano.trechos, indice.parte);
    for (const Trecho& t : plano.trechos) {
        (t.DaRede() ? plano.daRede : plano.doDisco) += t.tamanho;
        if (t.DaRede()) ++plano.pedidos;
    }
    return plano;
}

bool Montar(const Plano& plano, const FontesDaMontagem& fontes) {
    constexpr std::uint64_t kPedaco = 256ULL * 1024;
    std::vector<std::uint8_t> pedaco(kPedaco);
    for (const Trecho& trecho : plano.trechos) {
        if (trecho.DaRede() && !fontes.buscar(trecho)) return false;
        const std::uint64_t doVelho = trecho.DaRede() ? 0 : trecho.tamanho;
        for (std::uint64_t feitos = 0; feitos < doVelho;) {
            const auto bytes = std::span(pedaco).first(std::min(kPedaco, doVelho - feitos));
            if (!fontes.lerVelho(trecho.velho + feitos, bytes) || !fontes.escrever(bytes)) return false;
            feitos += bytes.size();
        }
    }
    return true;
}

}  // namespace zu::launcher::update

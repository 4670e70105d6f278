// Items by path, found by the name as Windows compares it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/forjal/varredura.h"

namespace zu::launcher::forjal {

// They stand in the order of `ChaveDoNome`, each name once. Whoever goes through a client asks for them in that order
// too, so the one behind the last answer is tried first: that reads the memory in a row, which is what counts with
// hundreds of thousands. For one thread.
template <class Item, auto kCaminho = &Item::caminho>
class Fileira {
 public:
    Fileira() = default;
    // In any order; of two with one name the later one stays.
    explicit Fileira(std::vector<Item> itens) { Juntar(std::move(itens)); }

    // The pointer is good until the row changes. Null: there is none of this name.
    Item* Achar(std::string_view caminho) {
        if (proximo_ < itens_.size() && itens_[proximo_].*kCaminho == caminho) return &itens_[proximo_++];
        const std::string chave = ChaveDoNome(caminho);
        const auto achado = std::ranges::lower_bound(itens_, chave, {}, ChaveDe);
        if (achado == itens_.end() || ChaveDe(*achado) != chave) return nullptr;
        proximo_ = static_cast<std::size_t>(achado - itens_.begin()) + 1;
        return &*achado;
    }

    void Juntar(std::vector<Item> mais) {
        itens_.insert(itens_.end(), std::move_iterator(mais.begin()), std::move_iterator(mais.end()));
        if (!EmOrdem()) Ordenar();
    }

    template <class Condicao>
    void TirarSe(const Condicao& condicao) {
        std::erase_if(itens_, condicao);
    }

    [[nodiscard]] const std::vector<Item>& Itens() const { return itens_; }

 private:
    static std::string ChaveDe(const Item& item) { return ChaveDoNome(item.*kCaminho); }

    [[nodiscard]] bool EmOrdem() const {
        std::string anterior;
        return std::ranges::all_of(itens_, [&](const Item& item) {
            std::string chave = ChaveDe(item);
            const bool depois = &item == &itens_.front() || anterior < chave;
            anterior = std::move(chave);
            return depois;
        });
    }

    void Ordenar() {
        std::vector<std::pair<std::string, Item>> comChave;
        comChave.reserve(itens_.size());
        for (Item& item : itens_)
            comChave.emplace_back(ChaveDe(item), std::move(item));
        itens_.clear();
        std::ranges::stable_sort(comChave, {}, &std::pair<std::string, Item>::first);
        for (std::size_t i = 0; i < comChave.size(); ++i) {
            if (i + 1 == comChave.size() || comChave[i].first != comChave[i + 1].first) {
                itens_.push_back(std::move(comChave[i].second));
            }
        }
    }

    std::vector<Item> itens_;
    std::size_t proximo_ = 0;  // behind the one found last
};

}  // namespace zu::launcher::forjal

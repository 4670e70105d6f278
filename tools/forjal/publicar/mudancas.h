// What a new list means for a player who has the published one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "update/lista.h"

namespace zu::launcher::forjal {

struct Mudancas {
    std::size_t novos = 0;
    std::size_t mudados = 0;
    std::size_t sumidos = 0;  // no longer in the list
    std::uint64_t bytes = 0;  // that the player will fetch

    [[nodiscard]] std::string Texto() const;
};

Mudancas Comparar(update::UpdateList publicada, const update::UpdateList& nova);

}  // namespace zu::launcher::forjal

// Ownership of COM objects.
#pragma once

#include "core/handle.h"

namespace zu::launcher {

template <class Interface>
struct TracosCom {
    using Tipo = Interface*;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo objeto) noexcept { objeto->Release(); }
};
template <class Interface>
using Com = Handle<TracosCom<Interface>>;

}  // namespace zu::launcher

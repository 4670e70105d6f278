// Points in time as the update list gives them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace zu::launcher::update {

using Instante = std::chrono::sys_seconds;

// Reads "2027-01-31T00:00:00Z": RFC 3339, always in UTC and whole seconds. None for any
// other text.
std::optional<Instante> LerInstante(std::string_view texto);
std::string TextoDoInstante(Instante instante);
// Its day, as a player reads it: "31/01/2027".
std::string TextoDoDia(Instante instante);

}  // namespace zu::launcher::update

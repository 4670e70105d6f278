// System error codes of the HTTP client in words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zu::launcher {

// "stage: phrase" for a code with a phrase of its own, "stage: erro N" for every other.
std::string TextoDoErroHttp(std::string_view etapa, std::uint32_t codigo);

}  // namespace zu::launcher

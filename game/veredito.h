// What the requirements window says about this computer: a level, a headline and one sentence. Pure; any thread.
#pragma once

#include <cstdint>
#include <string>

#include "game/resultado.h"

namespace zu::launcher {

enum class NivelVeredito : std::int32_t {
    kOk = 0,
    kAviso = 1,
    kFalha = 2,
};

struct VereditoRequisitos {
    NivelVeredito nivel = NivelVeredito::kOk;
    std::wstring titulo;
    std::wstring texto;
};

// The verdict on a concluded run. `titulo` is the report's headline in the window's form of text; the two are apart
// because this module makes no system call (`ObterVeredito` joins them).
VereditoRequisitos JulgarRequisitos(const ResultadoRequisitos& resultado, std::wstring titulo);

// The graphics interface to use in place of `api`: the other one ("d3d12" or "vulkan") when only that runs here, else
// the same. Only "vulkan" itself counts as that; without a report nothing changes.
std::string ApiQueRoda(const std::string& api, const SituacaoRequisitos& situacao);

}  // namespace zu::launcher

// The requirements probe: the game itself is asked what this computer can do. It writes a report into the temporary
// folder, which is read and published for whoever polls. Nobody waits for a probe.
#pragma once

#include <chrono>
#include <cstdint>

#include "game/resultado.h"
#include "game/veredito.h"

namespace zu::launcher {

constexpr std::chrono::milliseconds kLimiteDoDiagnostico{30'000};

// Publishes a fresh result and starts a probe on a thread of its own; returns at once. A game that has not ended by
// `limite` is ended. Of several probes the newest is the one whose result is published. When the thread cannot be
// started, the log says so and the result is published as concluded without a report.
void IniciarRequisitos(std::chrono::milliseconds limite = kLimiteDoDiagnostico);

// One probe from start to end, on the calling thread. `geracao` is its number; its result is dropped when
// `IniciarRequisitos` has given out a newer one.
void RodarRequisitos(std::uint32_t geracao, std::chrono::milliseconds limite = kLimiteDoDiagnostico);

// A copy of the published result. Any thread.
ResultadoRequisitos ObterRequisitos();

// The verdict on a result, its headline included. Any thread.
VereditoRequisitos ObterVeredito(const ResultadoRequisitos& resultado);

}  // namespace zu::launcher

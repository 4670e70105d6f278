// The requirements probe: the game itself is asked what this computer can do. It writes a report into the temporary
// folder, which is read and published for whoever polls. Nobody waits for a probe.
#pragma once

#include <chrono>
#include <cstdint>

#include "game/resultado.h"
#include "game/veredito.h"

namespace zu::launcher {

constexpr std::chrono::milliseconds kLimiteDoDiagnostico{30'000};

// Publishes a fresh result and returns the number of a run to come. What older runs find is dropped from here on, so
// nobody takes an answer for its own that somebody else has asked for.
std::uint32_t RenovarRequisitos();

// Does the same and starts that run on a thread of its own; returns at once. A game that has not ended by `limite` is
// ended. Throws std::system_error when the thread cannot be made; the result is then concluded, without a report.
void IniciarRequisitos(std::chrono::milliseconds limite = kLimiteDoDiagnostico);

// The run of that number from start to end, on the calling thread. Its result is dropped when there is a newer number
// by the end; when there is one at the start, the game is not asked. Trouble is logged.
void RodarRequisitos(std::uint32_t geracao, std::chrono::milliseconds limite = kLimiteDoDiagnostico);

// Of the published result no more than its four answers; and a copy of all of it, report included. Any thread.
SituacaoRequisitos ObterSituacaoRequisitos();
ResultadoRequisitos ObterRequisitos();

// The verdict on a result, its headline included. Any thread.
VereditoRequisitos ObterVeredito(const ResultadoRequisitos& resultado);

}  // namespace zu::launcher

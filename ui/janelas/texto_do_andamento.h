// What is going on, in words: for the tool tip over the bars.
#pragma once

#include <chrono>
#include <string>

#include "update/status.h"

namespace zu::launcher {

// UTF-8, a line for each thing that is known: the status sentence; the file in work; bytes and files, done and in all;
// the speed and the time left. `desde`: for how long the stage has been going on. Only the sentence when no run is
// under way.
std::string TextoDoAndamento(const EstadoAtualizacao& estado, bool atualizando, std::chrono::milliseconds desde);

}  // namespace zu::launcher

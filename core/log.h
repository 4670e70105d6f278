// "ZuLauncher.log" in the game folder: this run's lines, with the run before it kept as "ZuLauncher.anterior.log".
#pragma once

#include <filesystem>
#include <string_view>

#include "core/formato.h"

namespace zu::launcher {

// Writes one line, given in UTF-8 without its end: "HH:MM:SS.mmm message" in local time. The file is opened and closed
// for every line and the line is one write, so a reader sees whole lines only. Any thread; never fails as a call.
void LogLinha(std::string_view mensagem);

// The same for a message with placeholders.
template <class Argumento, class... Argumentos>
void LogLinha(FormatoDe<std::type_identity_t<Argumento>, std::type_identity_t<Argumentos>...> formato,
              const Argumento& argumento, const Argumentos&... argumentos) {
    LogLinha(std::string_view(Formatar<Argumento, Argumentos...>(formato, argumento, argumentos...)));
}

// The line form on its own, for a program that keeps another log: appends one line to the file. Not serialised.
void AnexarLinhaDeLog(const std::filesystem::path& arquivo, std::string_view mensagem);

}  // namespace zu::launcher

// What an exception has to say to a player: the one place that puts it into words. Texts of `what()` are English and
// the library's own, so they go neither on the screen nor into the log.
#pragma once

#include <exception>
#include <string>

namespace zu::launcher {

// A Portuguese phrase (UTF-8, lower case, no full stop), to stand behind "{}: ". Trouble with the system carries its
// number as "(erro {})", trouble with a file its path, too.
std::string TextoDaExcecao(const std::exception& falha);

}  // namespace zu::launcher

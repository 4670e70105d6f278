// The one way between the program's two forms of text: UTF-16 for paths, system calls and windows, UTF-8 for the rest.
#pragma once

#include <string>
#include <string_view>

namespace zu::launcher {

// Sequences that are invalid in the source are converted by the system's default rules (U+FFFD); neither call fails.
std::string ParaUtf8(std::wstring_view texto);
std::wstring DeUtf8(std::string_view texto);

}  // namespace zu::launcher

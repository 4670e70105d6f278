// The helper's command line, as the launcher writes it: every text in double quotes, nothing escaped.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zu::launcher {

struct ArgumentosDoHelper {
    std::uint32_t pid = 0;                 // of the launcher to wait for; 0: none
    std::filesystem::path lista;           // the pending list
    std::filesystem::path reabrir;         // the program to start at the end
    std::vector<std::wstring> argumentos;  // and what to pass to it
};

// The first text of the command line is the helper itself.
ArgumentosDoHelper LerArgumentosDoHelper(std::wstring_view linhaDeComando);

// The command line that gives a program these arguments by the system's own splitting rules (CommandLineToArgvW).
std::wstring MontarLinhaDeComando(const std::filesystem::path& programa, const std::vector<std::wstring>& argumentos);

}  // namespace zu::launcher

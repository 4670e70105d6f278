// The swaps that the launcher could not make while it, or another program, held the files.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string_view>

namespace zu::launcher {

using LogDeTrocas = std::function<void(std::string_view)>;

struct RegrasDeTroca {
    std::chrono::milliseconds limitePorLinha{15'000};  // antivirus and indexers hold files for seconds
    std::chrono::milliseconds intervalo{100};
};

// Makes the swaps of the pending list, in its order. Only paths below the game folder, the parent of the list's
// "Config" folder, are touched. Lines that fail stay in the list; a list without lines is removed. A swap that was made
// before counts as done, so the call may be repeated after an interruption at any point. Returns how many lines are
// left.
std::size_t AplicarTrocas(const std::filesystem::path& lista, const RegrasDeTroca& regras, const LogDeTrocas& log);

}  // namespace zu::launcher

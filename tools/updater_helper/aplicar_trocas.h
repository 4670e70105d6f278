// The swaps that the launcher could not make while it, or another program, held the files.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string_view>

namespace zu::launcher {

using LogDeTrocas = std::function<void(std::string_view)>;

struct RegrasDeTroca {
    std::chrono::milliseconds limite{30'000};  // for all lines together; antivirus and indexers hold files for seconds
    std::chrono::milliseconds intervalo{100};
};

// Makes the swaps of the pending list: every line is tried once, in the list's order, and those that fail again and
// again until the limit is over, so no line waits for another. Only paths below the game folder, the parent of the
// list's "Config" folder, are touched. Lines that fail stay in the list; a list without lines is removed; a list that
// somebody else wrote meanwhile stays as it is. A swap that was made before counts as done, so the call may be repeated
// after an interruption at any point. The running program itself is replaced, too: the system lets its file be renamed,
// so it becomes "NAME.tmp" until ApagarProgramaTrocado.
// True when every swap is made and the list is gone.
bool AplicarTrocas(const std::filesystem::path& lista, const RegrasDeTroca& regras, const LogDeTrocas& log);

// Deletes the file that this program had before it replaced itself.
void ApagarProgramaTrocado();

}  // namespace zu::launcher

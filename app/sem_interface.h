// The run without any window.
#pragma once

namespace zu::launcher {

// Brings the game folder up to date, with `--jogar` starts the game then, and returns the exit code: 0 when it ended up
// to date; 3 when the launcher has to quit, for the swap helper, which opens it again, or for a game that was started
// with close-on-play; and 1 for every other end.
int RodarSemInterface();

}  // namespace zu::launcher

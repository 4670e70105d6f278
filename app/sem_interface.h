// The run without any window.
#pragma once

namespace zu::launcher {

// Brings the game folder up to date and returns the exit code: 0 when it ended up to date, 3 when the launcher has to
// quit for the swap helper, which opens it again, and 1 for every other end.
int RodarSemInterface();

}  // namespace zu::launcher

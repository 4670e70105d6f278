// The launcher with windows.
#pragma once

namespace zu::launcher {

// Runs until the player or the controller ends it. Returns 0; 1 when the main window could not be made or, in a capture
// run, when a picture could not be written.
int RodarInterface();

}  // namespace zu::launcher

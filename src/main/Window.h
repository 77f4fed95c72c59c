#pragma once

namespace brisko {

/// Whether there is a display that a window could be shown on.
bool displayIsAvailable();

/// Runs the window until the user quits and returns the process's exit status.
int runWindow(int argc, char** argv);

}  // namespace brisko

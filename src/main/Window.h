#pragma once

namespace brisko {

/// Runs the window until the user quits and returns the process's exit status.
int runWindow(int argc, char** argv);

}  // namespace brisko

#pragma once

#include <functional>

namespace brisko {

/// Opens the window; gets what the command line left to it, the program's name first.
using WindowEntry = std::function<int(int argc, char** argv)>;

/// Reads the command line, installs the host for its root, and runs the command, or `openWindow`
/// when there is none. Without a command and with an empty `openWindow`, which is to say without a
/// display, it runs "junk" and says so.
///
/// Returns the process's exit status: 0 done, 1 something asked for could not be done, 2 wrong
/// usage (one line on standard error, nothing touched), 130 interrupted, with what was done
/// reported.
int runTerminal(int argc, char** argv, const WindowEntry& openWindow);

}  // namespace brisko

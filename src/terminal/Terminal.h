#pragma once

namespace brisko {

/// Runs the command line and returns the process's exit status: 0 done, 1 something asked for could
/// not be done, 2 wrong usage, 130 interrupted.
int runTerminal(int argc, char** argv);

}  // namespace brisko

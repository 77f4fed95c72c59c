#pragma once

namespace brisko {

/// Whether there is a display that a window could be shown on.
bool displayIsAvailable();

/// Puts the window's program in the place of this process, on the same root. Returns only when that
/// cannot be started, with the exit status for it.
///
/// The window is a program of its own so that a command in the terminal does not load the window
/// toolkit, which would cost it about 20 MiB and 20 ms.
int launchWindow(int argc, char** argv);

}  // namespace brisko

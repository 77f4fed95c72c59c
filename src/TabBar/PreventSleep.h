#pragma once

#include <string>

namespace brisko {

// Keeping the machine awake is one matter for the whole process, whoever asks for it. All of this
// can be called from any thread; taking the assertion can block for some seconds.

/// Keeps the machine awake until `ReleasePreventObj` or the end of the process: by a power
/// assertion on systems above version 1007, by a timer that reports activity on older ones. Nothing
/// more when it is kept awake already. Empty, or why it cannot be kept awake.
std::string PreventSleep();

void ReleasePreventObj();

bool isSleepPrevented();

/// Reports user activity to the system and prints the local time as "%02d:%02d:%02d ".
void MyTimerCallback();

}  // namespace brisko

#pragma once

#include "BrowerObj.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brisko {

/// Browsers that run and must be closed first, in launch-list order.
struct RunningBrowsers {
  struct Process {
    int identifier = 0;
    std::uint64_t beginning = 0;  ///< as the workspace tells it, to know the process again
  };
  std::vector<Process> processes;
  std::string names;  ///< joined by ","

  bool isEmpty() const { return processes.empty(); }

  /// Before a scan: an application whose name contains "Safari" or is exactly "Google Chrome",
  /// "Opera" or "Firefox", and one with the desktop entry of a browser in the table.
  static RunningBrowsers beforeScan(const std::vector<BrowserRule>& desktopRules);
  /// Before cleaning: those that are called as a browser of which something is ticked, or have its
  /// desktop entry.
  static RunningBrowsers beforeCleaning(const Browsers& browsers);
};

/// Why the browser's data must not be touched just now: it runs, or holds a profile. Empty when it
/// may be. Any thread.
std::string inUseReason(const BrowerObj& browser);

/// Sends the process the default termination signal through "/bin/kill", in the background. Not
/// when its number belongs to another one by now.
void doCloseWithPID(const RunningBrowsers::Process& process);

}  // namespace brisko

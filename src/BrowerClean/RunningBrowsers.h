#pragma once

#include "BrowerObj.h"

#include <string>
#include <vector>

namespace brisko {

/// Browsers that run and must be closed first, in launch-list order.
struct RunningBrowsers {
  std::vector<int> processes;  ///< each recorded identifier
  std::string names;           ///< joined by ","

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

/// Sends the process the default termination signal through "/bin/kill".
void doCloseWithPID(int process);

}  // namespace brisko

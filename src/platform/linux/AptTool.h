#pragma once

#include "InstalledApplications.h"

#include <functional>
#include <string>
#include <vector>

namespace brisko {

/// The system's package manager, /usr/bin/apt-get and nothing else, started without a shell, with
/// an environment of its own, in a session of its own: a key pressed on the terminal does not stop
/// it half-way, nor does the end of this program.
class AptTool {
 public:
  /// What removing the package would do now. Changes nothing, needs no rights.
  static UninstallPlan plan(const std::string& package);

  /// Removes `packages`: the first with what goes with it, which must be exactly the others. Takes
  /// the package manager's lock, makes the plan anew, and does nothing when it is refused or
  /// another. Needs to be root. `progress` gets values from 0 to 1. Returns the reason why they are
  /// not gone; empty when they are.
  static std::string remove(const std::vector<std::string>& packages,
                            const std::function<void(double)>& progress);
};

/// How far apt-get is, from 0 to 1, by the last whole line of what it wrote to its status stream;
/// negative when there is none yet.
double aptProgress(std::string_view status);

}  // namespace brisko

#pragma once

#include "InstalledApplications.h"

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

class DpkgDatabase;

/// What apt-get said that it would do.
struct AptSimulation {
  std::vector<std::string> removes;       ///< in name order
  std::vector<std::string> leavesUnused;  ///< what it calls no longer required
  std::vector<std::string> broken;  ///< what would lack something it needs, when apt-get gave up
  std::string problem;  ///< why nothing may be done on the strength of it; empty when all is well
};

/// Reads what "apt-get -s remove" printed in the C locale, and its exit status. Whatever is not
/// plainly a removal is a problem: installing, configuring or purging anything, changing held
/// packages, counts that do not add up, an error, a line of actions that is not understood.
AptSimulation parseAptSimulation(std::string_view output, int status);

/// The plan for removing `package`, with a refusal for what this program never removes: essential
/// and protected packages, the running kernel (of `kernelRelease`, "6.1.0-18-amd64"), the init
/// system and this program.
UninstallPlan aptPlan(const std::string& package, const AptSimulation& simulation,
                      const DpkgDatabase& database, const std::string& kernelRelease);

}  // namespace brisko

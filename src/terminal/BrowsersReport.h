#pragma once

#include "InternetModel.h"
#include "Json.h"

#include <string>
#include <vector>

namespace brisko {

/// What "brisko browsers" has to tell: the browsers as they are now, and what a cleaning did.
struct BrowsersReport {
  Json browsers = Json::array();
  Json wouldErase = Json::array();  ///< the plan, for a dry run
  std::size_t planCount = 0;
  std::vector<std::string> losses;
  std::string table;
  bool isDryRun = false;

  bool wasCleaned = false;  ///< the rest says what happened
  std::size_t cleanedCount = 0;
  std::vector<BrowserFailure> failed;
  bool wasStopped = false;

  void takeScan(const InternetModel& model);
  void takeCleaning(const InternetModel& model);

  std::string document() const;
  /// The browsers with their kinds as a table; with `isPlan`, and what would be erased.
  std::string overview(bool isPlan) const;
  std::string outcome() const;  ///< what cleaning did; empty before
};

}  // namespace brisko

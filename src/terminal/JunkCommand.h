#pragma once

#include "Command.h"
#include "FastCleanScanFile.h"

#include <array>
#include <string>
#include <vector>

namespace brisko {

class FastCleanModel;
struct JunkReport;

/// "brisko junk": scans the six categories, and removes what is ticked when it is asked to.
class JunkCommand : public Command {
 public:
  const char* name() const override { return "junk"; }
  const char* summary() const override {
    return "Find junk files in six categories, and remove the ticked ones";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  using Wanted = std::array<bool, kJunkCategoryCount>;

  Wanted wantedCategories() const;
  static void scan(FastCleanModel& model);
  /// Ticks what was named and takes over what the scan found.
  JunkReport reportOf(FastCleanModel& model, bool isDryRun) const;
  bool showScan(const JunkReport& report, bool isRemoving) const;
  int clean(FastCleanModel& model, JunkReport& report, const GlobalOptions& global) const;

  bool details_ = false;
  bool clean_ = false;
  std::vector<std::string> categories_;
};

}  // namespace brisko

#pragma once

#include "FileDescriptor.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisko::test {

/// Debian packages made for a test and installed on the machine. Nothing else of it is touched:
/// they depend on each other only, and each owns one desktop entry of its own. What is left of them
/// at the end is purged.
class TrialPackages {
 public:
  TrialPackages();
  ~TrialPackages();
  TrialPackages(const TrialPackages&) = delete;
  TrialPackages& operator=(const TrialPackages&) = delete;

  /// Builds "zz-trial-NAME" 1.2-3 with further control fields ("Depends: …\n") and installs it.
  /// Why that is not possible on this machine; empty when it was done.
  std::string install(const std::string& name, const std::string& fields = "");
  void purge(const std::string& name);

  static std::string full(const std::string& name) { return "zz-trial-" + name; }
  static bool isInstalled(const std::string& name);
  /// All packages of the machine with their versions, a line each.
  static std::string all();

 private:
  FileDescriptor turn_;
  TemporaryFolder folder_;
  std::vector<std::string> installed_;
};

/// Tests with the trial package "application" installed; skipped where none can be.
class WithTrialPackage : public testing::Test {
 protected:
  void SetUp() override {
    const std::string why = packages.install("application");
    if (!why.empty()) GTEST_SKIP() << "because no package can be installed: " << why;
  }

  const std::string application = TrialPackages::full("application");
  TrialPackages packages;
};

}  // namespace brisko::test

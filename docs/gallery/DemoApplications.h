#pragma once

#include "FakeInstalledApplications.h"

#include <string>

namespace brisko::test {

/// Fills the made system below `root` with applications, widgets and plug-ins, and with what two of
/// them left.
void makeDemoApplications(const std::string& root);

/// Applications of a package manager that takes its time, so that it can be seen at work.
struct DemoInstalledApplications : FakeInstalledApplications {
  DemoInstalledApplications();
  std::string remove(const InstalledApplication& application, const UninstallPlan& shown,
                     const std::function<void(double)>& progress) override;
};

}  // namespace brisko::test

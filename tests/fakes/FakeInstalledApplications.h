#pragma once

#include "InstalledApplications.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace brisko::test {

/// Applications that the test writes down, and what was asked to be removed.
struct FakeInstalledApplications : InstalledApplications {
  std::vector<InstalledApplication> applications;
  std::map<std::string, UninstallPlan> plans;   ///< by desktop id; others remove their own package
  std::map<std::string, std::string> failures;  ///< by desktop id
  std::vector<double> steps = {0.5, 1};         ///< of the progress
  std::vector<std::string> removed;             ///< packages, with what went along

  std::vector<InstalledApplication> list() override { return applications; }
  UninstallPlan plan(const InstalledApplication& application) override {
    const auto isGone = [this](const std::string& package) {
      return std::find(removed.begin(), removed.end(), package) != removed.end();
    };
    const auto found = plans.find(application.desktopID);
    UninstallPlan made = found != plans.end() ? found->second : UninstallPlan();
    std::erase_if(made.alsoRemoves, isGone);
    if (isGone(application.packageName)) made.refusal = "It is not installed any more.";
    made.removes = application.kind == InstalledApplication::Kind::files
                       ? application.files
                       : std::vector<std::string>{application.packageName};
    return made;
  }
  std::string remove(const InstalledApplication& application, const UninstallPlan& shown,
                     const std::function<void(double)>& progress) override {
    const UninstallPlan now = plan(application);
    if (!now.refusal.empty()) return now.refusal;
    if (!now.isSameAs(shown)) return "It would remove something else now.";
    for (double step : steps)
      progress(step);
    const auto failure = failures.find(application.desktopID);
    if (failure != failures.end()) return failure->second;
    removed.push_back(application.packageName);
    removed.insert(removed.end(), now.alsoRemoves.begin(), now.alsoRemoves.end());
    std::erase_if(applications,
                  [&](const auto& other) { return other.desktopID == application.desktopID; });
    return "";
  }
};

}  // namespace brisko::test

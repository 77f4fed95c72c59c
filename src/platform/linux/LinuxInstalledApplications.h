#pragma once

#include "Authorization.h"
#include "FlatpakApplications.h"
#include "InstalledApplications.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace brisko {

class HostFolders;

/// Applications with a desktop entry: Debian packages, Flatpaks, snaps, and programs in the user's
/// own folders. An entry that belongs to none of these (a web page's, a script's for an installed
/// program) is no application that can be removed, and is left out.
///
/// Below a root everything is read from there; only files can be removed then, because the package
/// managers act on the running system.
class LinuxInstalledApplications : public InstalledApplications {
 public:
  explicit LinuxInstalledApplications(const HostFolders& folders) : folders_(folders) {}

  std::vector<InstalledApplication> list() override;
  UninstallPlan plan(const InstalledApplication& application) override;
  std::string remove(const InstalledApplication& application, const UninstallPlan& shown,
                     const std::function<void(double)>& progress) override;

 private:
  std::vector<FlatpakInstallation> flatpaks() const;
  UninstallPlan flatpakPlan(const InstalledApplication& application) const;
  std::string removePackages(const std::vector<std::string>& packages,
                             const std::function<void(double)>& progress);

  int obtainRight(Authorization& authorization);

  const HostFolders& folders_;
  std::mutex removal_;  // one after the other
  // Kept to the end of the run, so that the user is asked once for all packages.
  Authorization::Reference right_ = 0;
};

}  // namespace brisko

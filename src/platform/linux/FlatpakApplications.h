#pragma once

#include "InstalledApplications.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// An application that Flatpak has installed, as its installation's folder tells it.
struct FlatpakDeployment {
  std::string id;
  std::string ref;  ///< "app/ID/arch/branch"
  std::string version;
  std::string runtime;      ///< "ID/arch/branch"
  std::uint64_t bytes = 0;  ///< installed size; 0 unknown
  std::int64_t date = 0;    ///< when this version was deployed, seconds since 1970
};

/// One Flatpak installation ("/var/lib/flatpak", the user's own): read as files, because asking the
/// program takes longer for one application than this for all.
class FlatpakInstallation {
 public:
  FlatpakInstallation(std::string folder, bool isForUser)
      : folder_(std::move(folder)), isForUser_(isForUser) {}

  bool isForUser() const { return isForUser_; }
  /// The folder of desktop entries that it exports.
  std::string exports() const { return folder_ + "/exports/share/applications"; }

  /// The current deployment of an application; nothing when it is not installed here.
  std::optional<FlatpakDeployment> deployment(const std::string& id) const;
  std::vector<FlatpakDeployment> deployments() const;

  /// What uninstalling `ref` would do: its translations and debugging symbols go with it, its
  /// runtime stays, unused when none of `others` (every deployment of every installation) needs it.
  UninstallPlan plan(const std::string& ref, const std::vector<FlatpakDeployment>& others) const;

 private:
  std::string folder_;
  bool isForUser_;
};

/// Version and size in the file "deploy" that Flatpak writes: serialised "(ssasta{sv})", its number
/// big-endian. What does not look like that gives empty and 0.
void readFlatpakDeploy(std::string_view bytes, std::string& version, std::uint64_t& size);

}  // namespace brisko

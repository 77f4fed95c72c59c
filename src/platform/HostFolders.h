#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// Where the system keeps things. Every absolute location is asked for here and put together
/// nowhere else, so that a mounted disk or a backup can stand in for "/".
///
/// With a root, all locations lie below it. Paths have no trailing slash and are not checked for
/// existence.
class HostFolders {
 public:
  enum class Domain { user, local, network };

  virtual ~HostFolders() = default;

  /// The folder that stands for "/"; empty for the running system.
  virtual std::string root() const = 0;
  bool hasRoot() const { return !root().empty(); }

  /// The root + `absolute`, which begins with "/".
  std::string path(std::string_view absolute) const { return root() + std::string(absolute); }

  /// The user's home folder. With a root: HOME when that lies below the root, else "Users/" + the
  /// user's name below it.
  virtual std::string home() const = 0;

  /// The folder named after the user in the folder that holds all homes ("/Users/NAME").
  virtual std::string userFolder() const = 0;

  /// The folder in which volumes are mounted: "/Volumes" below a root, the desktop's media folder
  /// of the user on the running system.
  virtual std::string volumes() const = 0;

  /// The temporary folder of this user, fit for files with fixed names: made with mode 0700 and
  /// owned by the user; empty when no such folder can be made.
  virtual std::string temporary() const = 0;

  /// What a placeholder of a location table stands for on this host: HOME, USER, UID, and the base
  /// folders of the host's own conventions (XDG_CACHE_HOME, XDG_CONFIG_HOME, XDG_DATA_HOME,
  /// XDG_STATE_HOME). Nothing for an unknown name.
  virtual std::optional<std::string> variable(std::string_view name) const = 0;

  /// The library folder: home + "/Library", "/Library" or "/Network/Library".
  std::string library(Domain domain) const { return domainFolder(domain) + "/Library"; }
  std::string applications(Domain domain) const { return domainFolder(domain) + "/Applications"; }
  std::string developerApplications() const { return path("/Developer/Applications"); }
  std::string caches(Domain domain) const { return library(domain) + "/Caches"; }
  std::string applicationSupport(Domain domain) const {
    return library(domain) + "/Application Support";
  }
  std::string preferencePanes(Domain domain) const { return library(domain) + "/PreferencePanes"; }
  std::string inputMethods(Domain domain) const { return library(domain) + "/Input Methods"; }

 private:
  /// What the domain's folders stand in: the home, the root, or the root's "/Network".
  std::string domainFolder(Domain domain) const {
    switch (domain) {
      case Domain::user:
        return home();
      case Domain::local:
        return root();
      case Domain::network:
        return path("/Network");
    }
    return root();
  }
};

}  // namespace brisko

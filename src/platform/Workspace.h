#pragma once

#include "FileIdentity.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brisko {

/// A running application, as the desktop knows it.
struct LaunchedApplication {
  std::string bundleIdentifier;  ///< the desktop entry's id on hosts without bundles
  std::string name;              ///< empty for a part of the session that is in no menu
  std::string path;              ///< the application's bundle or executable
  std::string iconName;
  int processIdentifier = 0;
};

/// A mounted volume as the file-system layer tells it.
struct MountedVolume {
  enum class Place { fixed, externalBus, optical, network, removable };

  std::string root;            ///< where it is mounted
  std::string device;          ///< device node or remote address
  std::string fileSystemName;  ///< "ext4", "vfat", "nfs4" …
  std::string name;            ///< label, else what people call it
  std::uint64_t totalBytes = 0;
  std::uint64_t freeBytes = 0;  ///< free to this user
  Place place = Place::fixed;
  bool isEjectable = false;
  bool isReadOnly = false;
};

/// What the desktop and the file-system layer know of the running session.
class Workspace {
 public:
  using Observer = std::function<void(const MountedVolume& volume, bool mounted)>;

  virtual ~Workspace() = default;

  /// Applications of this user that run now. Empty when that cannot be found out.
  virtual std::vector<LaunchedApplication> launchedApplications() = 0;

  /// When a process began, in the kernel's own count; 0 when there is none of that number. Two with
  /// one number never began at the same time.
  virtual std::uint64_t processBeginning(int /*processIdentifier*/) { return 0; }

  /// Volumes that hold files of people: no pseudo file systems, each device once, "/" first, then
  /// in mount order.
  virtual std::vector<MountedVolume> mountedVolumes() = 0;

  /// Calls `observer` on the main queue for each volume that is mounted or unmounted from now on.
  /// One observer per token; `stopObserving` ends it.
  virtual int observeVolumes(Observer observer) = 0;
  virtual void stopObserving(int token) = 0;

  /// The name of the icon that suits what `path` names, in the icon-naming convention of desktops
  /// ("folder", "text-x-generic" …). Goes by kind and name and opens no file, but for a desktop
  /// entry, whose application's icon it gives (a name, or an absolute path).
  virtual std::string iconName(const std::string& path) = 0;
  /// The same for an item that was looked at already. Long lists ask this: it makes no system call.
  virtual std::string iconNameOfKind(const std::string& path, FileKind /*kind*/) {
    return iconName(path);
  }

  /// What people call the item at `path` where that is not its file's name: an application's name
  /// for its desktop entry. Empty otherwise.
  virtual std::string displayName(const std::string& /*path*/) { return {}; }

  /// Opens a web or settings address in the program that the user set for it. False when none could
  /// be started.
  virtual bool openAddress(const std::string& address) = 0;

  /// Shows `path` selected in its folder in the user's file browser, or just that folder where the
  /// browser cannot select. Returns at once; false when no program for it could be started, and
  /// always on hosts without a file browser.
  virtual bool reveal(const std::string& /*path*/) { return false; }
};

}  // namespace brisko

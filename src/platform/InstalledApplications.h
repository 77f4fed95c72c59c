#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brisko {

/// An application that the desktop shows in its menus, and how it is removed.
struct InstalledApplication {
  enum class Kind {
    package,  ///< of the system's package manager
    flatpak,
    snap,
    files,  ///< of no package manager: an image or a folder in the user's own places
  };

  Kind kind = Kind::files;
  std::string desktopID;    ///< the desktop entry's id, without ".desktop"
  std::string name;         ///< in the user's language
  std::string iconName;     ///< of the icon theme, or an absolute path; may be empty
  std::string version;      ///< empty when nothing tells it
  std::string path;         ///< the desktop entry's file; with Kind::files the program's own item
  std::string packageName;  ///< package, Flatpak reference ("app/ID/arch/branch") or snap
  bool isForUser = false;   ///< a Flatpak of the user's own installation
  std::uint64_t bytes = 0;  ///< as the package manager accounts it; 0 when it does not
  std::int64_t date = 0;    ///< when it was installed, seconds since 1970; 0 unknown

  /// What goes with Kind::files: the program's item, then its desktop entry. Empty for the others.
  std::vector<std::string> files;

  /// Names under which it may keep its files, the most telling first, none twice: the desktop id
  /// without a vendor's folder, the executable's name, the Flatpak id, the snap, the package.
  std::vector<std::string> keys;
};

/// What removing an application would do, by a dry run of its package manager.
struct UninstallPlan {
  std::vector<std::string> removes;       ///< the application's own package, reference or files
  std::vector<std::string> alsoRemoves;   ///< what goes with it because it needs it, in name order
  std::vector<std::string> leavesUnused;  ///< stays, though nothing else needs it afterwards
  std::uint64_t bytes =
      0;                ///< of everything that goes, as the package manager accounts it; 0 unknown
  std::string refusal;  ///< why it must not or cannot go, for people; empty when it may
  std::string command;  ///< the command that does it, for people; empty for files

  bool mayGo() const { return refusal.empty(); }
  /// Whether exactly the same would go. What is only told beside it does not count.
  bool isSameAs(const UninstallPlan& other) const {
    return removes == other.removes && alsoRemoves == other.alsoRemoves && refusal == other.refusal;
  }
};

/// The host's applications behind the ones in bundles. Hosts whose applications are all bundles
/// have none. To be called from background threads: each operation may start programs and waits for
/// them.
class InstalledApplications {
 public:
  virtual ~InstalledApplications() = default;

  /// What is installed for this user, by name. Parts of the system (no desktop entry, or one that
  /// is not to be displayed) are left out; two entries with one id count as one, the user's first.
  /// Starts no program on behalf of a single application. Below a root only reads.
  virtual std::vector<InstalledApplication> list() = 0;

  /// What removing `application` would do at this moment. Changes nothing, needs no rights.
  virtual UninstallPlan plan(const InstalledApplication& application) = 0;

  /// Removes it through its package manager, which may ask the user for the administrator's right.
  /// Makes the plan anew and does nothing when it is not the one that was `shown`. `progress` gets
  /// values from 0 to 1, on the calling thread. Returns the reason why it is not gone; empty when
  /// it is. Never removes Kind::files: the removal engine does.
  virtual std::string remove(const InstalledApplication& application, const UninstallPlan& shown,
                             const std::function<void(double)>& progress) = 0;
};

}  // namespace brisko

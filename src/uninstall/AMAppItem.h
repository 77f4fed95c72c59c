#pragma once

#include "FileIdentity.h"
#include "PropertyList.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

struct InstalledApplication;
struct UninstallPlan;

/// One application, widget or plug-in of the list, or one entry of a review.
///
/// Made in the background and handed to the main thread, which alone changes it afterwards; what
/// describes it (all but sizes and ticks) is never changed again.
struct AMAppItem {
  bool isSystemApp = false;  ///< the identifier begins with "com.apple."
  bool bIsSelected = false;  ///< not used: what is ticked is kept in lists of its own
  bool bIsGetSize = false;   ///< its size was asked for; never reset
  std::string image;         ///< name of the icon that the desktop shows for the path
  std::string name;
  std::string path;
  std::string bundleID;
  std::string bundleVersion;
  std::int64_t date = 0;  ///< of creation, seconds since 1970, UTC; 0 when nothing tells it
  std::string isSystemAppStr = "NO";
  std::string size = "0KB";  ///< as people read it; "0KB" until it is known

  // Beside that, what reviews and the host's applications need.

  /// What an entry of a review is.
  enum class Role : int {
    bundle,        ///< the item itself, a file or folder
    relatedFile,   ///< found by its name
    package,       ///< removed through the host's package manager
    packageAlong,  ///< another package that would go with it
  };
  Role role = Role::bundle;
  std::uint64_t bytes = 0;               ///< of `size`, exactly
  std::optional<FileIdentity> identity;  ///< which item the path named; nothing when none
  std::string sharedWith;    ///< another installed application to whose name it fits too
  std::string note;          ///< one more thing to be said of it, for people
  bool startsTicked = true;  ///< in a review
  bool canBeTicked = true;   ///< in a review; false for what must stay
  std::shared_ptr<const InstalledApplication> host;  ///< an application with a desktop entry
  std::shared_ptr<const UninstallPlan> plan;         ///< with Role::package
  /// The host's application that it belongs to. It stays when that cannot go.
  std::shared_ptr<const InstalledApplication> owner;

  /// All fields of the first part from its arguments; nothing is kept of the dictionary.
  static AMAppItem initWithInfoDictionary(const PropertyList& info, std::string name,
                                          std::string path, std::string bundleID,
                                          std::string bundleVersion, std::int64_t date,
                                          std::string isSystemAppStr, std::string size);

  /// Takes a measured size.
  void setBytes(std::uint64_t measured);
};

using AppItem = std::shared_ptr<AMAppItem>;
using AppItems = std::vector<AppItem>;

}  // namespace brisko

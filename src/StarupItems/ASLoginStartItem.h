#pragma once

#include <cstdint>
#include <string>

namespace brisko {

/// One row of the login items.
struct ASLoginStartItem {
  bool isSystemApp = false;
  bool bIsSelected = false;  ///< starts hidden
  std::string image;         ///< icon name of the path
  std::string name;          ///< display name, else the path's last component
  std::string subName;       ///< the path's extension, shown as the kind
  std::string path;
  std::string bundleID;
  std::string bundleVersion;
  std::string fileSize;
  std::int64_t date = 0;  ///< when the item was made, in seconds since 1970
  std::string isSystemAppStr;
  std::uint64_t fileSizeNum = 0;  ///< bytes

  /// A row for the login item at `path`; looks at the path, not into it.
  static ASLoginStartItem loginItem(const std::string& path, bool isHidden);

  /// The same with what a bundle's Info.plist and the file system tell besides.
  static ASLoginStartItem constructLoginItem(const std::string& path, bool hide);
};

}  // namespace brisko

#pragma once

#include "FileIdentity.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brisko {

/// A moment: seconds since 1970, UTC, and nanoseconds (0 to 999,999,999).
struct FileDate {
  std::int64_t seconds = 0;
  std::int32_t nanoseconds = 0;

  friend auto operator<=>(const FileDate&, const FileDate&) = default;
};

/// One candidate file of a search.
struct fileAttrbItem {
  std::string filePathName;    ///< absolute
  std::string fileName;        ///< last path component
  std::uint64_t fileSize = 0;  ///< bytes; a link's is its own
  std::uint64_t md5 = 0;       ///< CRC-64 of the whole content; 0 when not computed
  std::uint64_t md5_1k = 0;    ///< digest of the first 1024 bytes; 0 when not computed
  FileDate ModificationDate;
  FileIdentity identity;  ///< which item the path named when it was listed

  /// Whether both have a digest of their content and it is the same. Null equals nothing.
  static bool isEqual(const fileAttrbItem* item, const fileAttrbItem* otherObject) {
    return item != nullptr && otherObject != nullptr && item->md5 != 0 && otherObject->md5 != 0 &&
           item->md5 == otherObject->md5;
  }
};

/// The last component of a path; the path itself when it has none.
std::string lastPathComponent(const std::string& path);

/// What follows the last dot of a path's last component, without the dot; empty when there is none,
/// or when the dot stands first. A part of `path`.
std::string_view pathExtension(std::string_view path);

}  // namespace brisko

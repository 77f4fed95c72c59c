#pragma once

#include <string>

namespace brisko {

/// The places that the table SystemFile numbers: "0", "1", "2" and so on.
class SystemFolder {
 public:
  /// Whether `path` is exactly one of them. False too when the table is missing or empty. The
  /// table is read once in a run.
  static bool isSystemFileWithFilePath(const std::string& path);
};

}  // namespace brisko

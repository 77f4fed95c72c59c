#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// Where things are mounted in this process's view of the file system.
class MountTable {
 public:
  /// Looks now. `isKnown` is false when the kernel's table cannot be read or makes no sense, and
  /// then nothing may be taken for free of mounts.
  static MountTable read(const std::string& table = "/proc/self/mountinfo");

  bool isKnown() const { return known_; }

  /// The first mount at `path` or below it; empty for none. `path` is absolute and free of links.
  std::string firstWithin(std::string_view path) const;

 private:
  std::vector<std::string> points_;
  bool known_ = false;
};

}  // namespace brisko

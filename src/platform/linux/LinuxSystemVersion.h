#pragma once

#include "SystemVersion.h"

#include <string>

namespace brisko {

/// The version that version-dependent rules go by: 10.13.0, unless the root carries a system of its
/// own that says otherwise.
class LinuxSystemVersion : public SystemVersion {
 public:
  /// `file` is the root's SystemVersion.plist; it is read at each call and need not exist.
  explicit LinuxSystemVersion(std::string file);

  long read(Selectors& selectors) override;

 private:
  std::string file_;
};

}  // namespace brisko

#pragma once

#include <cstdint>

namespace brisko {

/// The version of the system, as its version selectors give it.
class SystemVersion {
 public:
  struct Selectors {
    std::uint32_t packed = 0;  ///< binary-coded decimal: two digits major, one minor, one bug fix
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t bugFix = 0;
  };

  virtual ~SystemVersion() = default;

  /// Reads the selectors. 0 for success, else the error for the log.
  virtual long read(Selectors& selectors) = 0;
};

}  // namespace brisko

#pragma once

#include <string>
#include <vector>

namespace brisko {

/// Where the developer tools keep what they can build again.
class GetXcodeJunks {
 public:
  /// The six locations below the user's folder, in scan order. Not checked for existence; some end
  /// with a slash, which entries' paths keep.
  static std::vector<std::string> getXcodeJunks();
};

}  // namespace brisko

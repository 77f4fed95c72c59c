#pragma once

#include "LIAELoginItems.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// Login items for the rest of the program. Blocks its caller while the store does not answer: for
/// up to a minute when listing.
class UKLoginItemRegistry {
 public:
  /// All of them, tried up to 61 times, a second apart, while the store's answer times out. Nothing
  /// on failure. Logs "Get login items error -1712 occur." for each such try, after the last one
  /// "Get login items error -1712 and timeout.", and "Couldn't list login items error %d" for any
  /// other status.
  static std::optional<std::vector<LoginItemRecord>> allLoginItems();

  /// False, and "Couldn't add login item error %d" in the log, when it was not added.
  static bool addLoginItemWithURL(const std::string& url, bool hideIt);
  static bool addLoginItemWithPath(const std::string& path, bool hideIt);

  /// False, and "Couldn't remove login item error %d" in the log, when it was not removed.
  static bool removeLoginItemAtIndex(std::size_t index);

  /// From 0; -1 when there is none.
  static int indexForLoginItemWithURL(const std::string& url);
  static int indexForLoginItemWithPath(const std::string& path);

  /// False, too, when there is none.
  static bool removeLoginItemWithURL(const std::string& url);
  static bool removeLoginItemWithPath(const std::string& path);

  /// What waits between two tries; tests put another in its place. Returns the one before.
  using Wait = std::function<void(std::chrono::milliseconds)>;
  static Wait setWait(Wait wait);
};

}  // namespace brisko

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// The table of links and settings, "StringMessage.plist": per language a dictionary of link keys
/// and addresses. Read afresh each time.
class ZKLinkUrl {
 public:
  static constexpr const char* kTable = "StringMessage.plist";

  /// The address under `key` in the user's preferred language; where that has none or an empty one,
  /// the English address. Nothing when there is none either.
  static std::optional<std::string> GetUrl(std::string_view key);
};

}  // namespace brisko

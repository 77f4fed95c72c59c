#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The text of a desktop entry, changed key by key. Comments, order, other groups and keys that
/// nobody here knows stay as they are.
class DesktopEntryText {
 public:
  explicit DesktopEntryText(std::string_view text);

  /// Whether it has the group that makes it a desktop entry.
  bool isEntry() const { return group_ != kNone; }

  /// The value under `key` of that group, its escapes resolved; nothing without the key.
  std::optional<std::string> value(std::string_view key) const;
  bool isTrue(std::string_view key) const { return value(key) == "true"; }

  /// Changes the key's line, or adds one behind the group's last.
  void set(std::string_view key, std::string_view value);
  void remove(std::string_view key);

  std::string text() const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t lineOf(std::string_view key) const;
  std::size_t endOfGroup() const;

  std::vector<std::string> lines_;
  std::size_t group_ = kNone;  ///< the line with the group's name
};

/// `word` as one word of an Exec line, whatever it holds.
std::string execWord(std::string_view word);

}  // namespace brisko

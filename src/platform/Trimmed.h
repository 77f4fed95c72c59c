#pragma once

#include <string_view>

namespace brisko {

/// `text` without the blanks, line breaks and NUL bytes at its ends.
inline std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks(" \t\r\n\v\f\0", 7);
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace brisko

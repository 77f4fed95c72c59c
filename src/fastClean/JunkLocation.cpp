#include "JunkLocation.h"

#include <algorithm>

namespace brisko {
namespace {

// One "[…]" at `pattern`, whose length comes back in `length`; 0 when it has no end and so is a
// plain "[".
bool classMatches(std::string_view pattern, unsigned char byte, std::size_t& length) {
  std::size_t i = 1;
  const bool negated = i < pattern.size() && (pattern[i] == '!' || pattern[i] == '^');
  if (negated) ++i;
  bool matches = false;
  for (const std::size_t first = i; i < pattern.size(); ++i) {
    if (pattern[i] == ']' && i > first) {
      length = i + 1;
      return matches != negated;
    }
    const auto low = static_cast<unsigned char>(pattern[i]);
    auto high = low;
    if (i + 2 < pattern.size() && pattern[i + 1] == '-' && pattern[i + 2] != ']') {
      high = static_cast<unsigned char>(pattern[i + 2]);
      i += 2;
    }
    matches = matches || (low <= byte && byte <= high);
  }
  length = 0;
  return false;
}

// How many bytes of `pattern` match the one byte; 0 when they do not.
std::size_t matchOne(std::string_view pattern, char byte) {
  if (pattern.empty() || pattern[0] == '*') return 0;
  if (pattern[0] == '?') return 1;
  if (pattern[0] == '[') {
    std::size_t length = 0;
    const bool matches = classMatches(pattern, static_cast<unsigned char>(byte), length);
    if (length != 0) return matches ? length : 0;
  }
  return pattern[0] == byte ? 1 : 0;
}

}  // namespace

bool nameMatches(std::string_view pattern, std::string_view name) {
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t afterStar = std::string_view::npos;
  std::size_t starTook = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      afterStar = ++p;
      starTook = n;
    } else if (const std::size_t length = matchOne(pattern.substr(p), name[n])) {
      p += length;
      ++n;
    } else if (afterStar != std::string_view::npos) {
      p = afterStar;
      n = ++starTook;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& byte : lower) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return lower;
}

bool matchesAny(const std::vector<std::string>& patterns, std::string_view name) {
  return std::any_of(patterns.begin(), patterns.end(),
                     [&](const std::string& pattern) { return nameMatches(pattern, name); });
}

bool JunkLocation::takes(const std::string& name, FileKind kind) const {
  if (!kinds.empty() && std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) return false;
  if (!include.empty() && !matchesAny(include, name)) return false;
  if (!exclude.empty() && matchesAny(exclude, lowerCase(name))) return false;
  if (claimed.empty()) return true;
  const std::string entry = path + "/" + name;
  return std::none_of(claimed.begin(), claimed.end(), [&](const std::string& other) {
    return other == entry || other.starts_with(entry + "/");
  });
}

}  // namespace brisko

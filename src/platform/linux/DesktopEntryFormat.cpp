#include "DesktopEntryFormat.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brisko {
namespace {

constexpr std::pair<char, char> kEscapes[] = {
    {'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};

}  // namespace

std::string_view trimmedOfBlanks(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

std::string unescapedValue(std::string_view value) {
  std::string plain;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char next = value[i] == '\\' && i + 1 < value.size() ? value[i + 1] : '\0';
    const auto* escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                      [next](const auto& each) { return each.first == next; });
    if (escape == std::end(kEscapes)) {
      plain += value[i];
    } else {
      plain += escape->second;
      ++i;
    }
  }
  return plain;
}

std::string escapedValue(std::string_view text) {
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isInner = i > 0 && i + 1 < text.size();
    const auto* escape =
        std::find_if(std::begin(kEscapes), std::end(kEscapes), [&](const auto& each) {
          // A blank needs it only where it would be taken for none.
          return each.second == text[i] && !(text[i] == ' ' && isInner);
        });
    if (escape != std::end(kEscapes)) {
      value += '\\';
      value += escape->first;
    } else {
      value += text[i];
    }
  }
  return value;
}

}  // namespace brisko

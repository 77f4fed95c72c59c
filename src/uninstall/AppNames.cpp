#include "AppNames.h"

#include "Utf8.h"
#include "fileAttrbItem.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

#include <locale.h>

namespace brisko {
namespace {

// Letters of every script, whatever the user's own locale is.
locale_t allLetters() {
  static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char32_t decoded(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first;
  char32_t code = first & (0xFFU >> (character.size() + 1));
  for (const char c : character.substr(1))
    code = code << 6U | (static_cast<unsigned char>(c) & 0x3FU);
  return code;
}

void append(std::string& text, char32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | code >> 6U);
    text += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    if (code < 0x10000) {
      text += static_cast<char>(0xE0U | code >> 12U);
    } else {
      text += static_cast<char>(0xF0U | code >> 18U);
      text += static_cast<char>(0x80U | (code >> 12U & 0x3FU));
    }
    text += static_cast<char>(0x80U | (code >> 6U & 0x3FU));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

}  // namespace

std::string lowerCased(std::string_view text) {
  std::string lower;
  lower.reserve(text.size());
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text.front());
    const std::size_t length = byte < 0x80 ? 1 : utf8SequenceLength(text);
    if (length <= 1) {
      lower += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : text.front();
      text.remove_prefix(1);
      continue;
    }
    const char32_t code = decoded(text.substr(0, length));
    const locale_t letters = allLetters();
    append(lower, letters == nullptr
                      ? code
                      : static_cast<char32_t>(::towlower_l(static_cast<wint_t>(code), letters)));
    text.remove_prefix(length);
  }
  return lower;
}

std::string withoutBlanks(std::string_view text) {
  std::string rest(text);
  std::erase(rest, ' ');
  return rest;
}

std::string bundleDisplayName(const std::string& path) {
  std::string name = lastPathComponent(path);
  if (pathExtension(path) == "app") name.resize(name.size() - 4);
  return name;
}

}  // namespace brisko

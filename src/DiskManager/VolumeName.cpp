#include "VolumeName.h"

#include "Utf8.h"

#include <algorithm>
#include <clocale>
#include <cwctype>

namespace brisko::VolumeName {
namespace {

char32_t codePoint(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  static constexpr unsigned kFirst[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t code = byte(0) & kFirst[character.size()];
  for (std::size_t i = 1; i < character.size(); ++i)
    code = code << 6U | (byte(i) & 0x3FU);
  return code;
}

void append(std::string& text, char32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  static constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLead[more] | code >> (6 * more));
  for (int i = more - 1; i >= 0; --i)
    text += static_cast<char>(0x80U | (code >> (6 * i) & 0x3FU));
}

// The rules for capitals of all languages, whatever the process's own are.
locale_t allLanguages() {
  static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char32_t capital(char32_t code) {
  if (allLanguages() == nullptr)
    return code < 0x80 ? static_cast<char32_t>(std::toupper(static_cast<int>(code))) : code;
  return static_cast<char32_t>(::towupper_l(static_cast<wint_t>(code), allLanguages()));
}

}  // namespace

std::size_t characterLength(std::string_view text) {
  return std::max<std::size_t>(utf8SequenceLength(text), 1);
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count)
    text.remove_prefix(characterLength(text));
  return count;
}

std::string upperCase(std::string_view text) {
  std::string upper;
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    if (length == 0) {
      upper += text.front();
    } else {
      append(upper, capital(codePoint(text.substr(0, length))));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return upper;
}

std::string forType(std::string_view name, std::string_view type) {
  if (type != kFat) return std::string(name);
  const std::string upper = upperCase(name);
  std::size_t length = 0;
  for (std::size_t count = 0; count < kFatCharacters && length < upper.size(); ++count)
    length += characterLength(std::string_view(upper).substr(length));
  return upper.substr(0, length);
}

bool isGiven(std::string_view name) {
  return !name.empty() && name != " ";
}

}  // namespace brisko::VolumeName

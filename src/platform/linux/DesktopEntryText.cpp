#include "DesktopEntryText.h"

namespace brisko {
namespace {

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

constexpr std::pair<char, char> kEscapes[] = {
    {'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};

std::string unescaped(std::string_view value) {
  std::string plain;
  for (std::size_t i = 0; i < value.size(); ++i) {
    bool isEscape = false;
    for (const auto& [code, character] : kEscapes) {
      if (value[i] == '\\' && i + 1 < value.size() && value[i + 1] == code) {
        plain += character;
        isEscape = true;
      }
    }
    if (isEscape) {
      ++i;
    } else {
      plain += value[i];
    }
  }
  return plain;
}

std::string escaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool isInner = i > 0 && i + 1 < value.size();
    char code = '\0';
    for (const auto& [escape, character] : kEscapes) {
      // A blank needs it only where it would be taken for none.
      if (value[i] == character && !(character == ' ' && isInner)) code = escape;
    }
    if (code != '\0') {
      text += '\\';
      text += code;
    } else {
      text += value[i];
    }
  }
  return text;
}

}  // namespace

DesktopEntryText::DesktopEntryText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines_.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (group_ == kNone && trimmed(lines_.back()) == "[Desktop Entry]") group_ = lines_.size() - 1;
  }
}

std::size_t DesktopEntryText::endOfGroup() const {
  std::size_t end = group_ + 1;
  while (end < lines_.size() && !trimmed(lines_[end]).starts_with('['))
    ++end;
  return end;
}

std::size_t DesktopEntryText::lineOf(std::string_view key) const {
  if (!isEntry()) return kNone;
  const std::size_t end = endOfGroup();
  for (std::size_t line = group_ + 1; line < end; ++line) {
    const std::string_view text = lines_[line];
    const std::size_t equals = text.find('=');
    if (equals != std::string_view::npos && trimmed(text.substr(0, equals)) == key) return line;
  }
  return kNone;
}

std::optional<std::string> DesktopEntryText::value(std::string_view key) const {
  const std::size_t line = lineOf(key);
  if (line == kNone) return std::nullopt;
  const std::string_view text = lines_[line];
  return unescaped(trimmed(text.substr(text.find('=') + 1)));
}

void DesktopEntryText::set(std::string_view key, std::string_view value) {
  if (!isEntry()) return;
  std::string text = std::string(key) + "=" + escaped(value);
  if (const std::size_t line = lineOf(key); line != kNone) {
    lines_[line] = std::move(text);
    return;
  }
  std::size_t place = endOfGroup();
  while (trimmed(lines_[place - 1]).empty())
    --place;  // the blank lines before the next group
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), std::move(text));
}

void DesktopEntryText::remove(std::string_view key) {
  if (const std::size_t line = lineOf(key); line != kNone) {
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(line));
  }
}

std::string DesktopEntryText::text() const {
  std::string text;
  for (const std::string& line : lines_)
    text += line + "\n";
  return text;
}

std::string execWord(std::string_view word) {
  std::string quoted = "\"";
  for (const char character : word) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) quoted += '\\';
    quoted += character;
    if (character == '%') quoted += '%';
  }
  return quoted + "\"";
}

}  // namespace brisko

#include "DesktopEntryText.h"

#include "DesktopEntryFormat.h"

namespace brisko {

DesktopEntryText::DesktopEntryText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines_.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (group_ == kNone && trimmedOfBlanks(lines_.back()) == "[Desktop Entry]")
      group_ = lines_.size() - 1;
  }
}

std::size_t DesktopEntryText::endOfGroup() const {
  std::size_t end = group_ + 1;
  while (end < lines_.size() && !trimmedOfBlanks(lines_[end]).starts_with('['))
    ++end;
  return end;
}

std::size_t DesktopEntryText::lineOf(std::string_view key) const {
  if (!isEntry()) return kNone;
  const std::size_t end = endOfGroup();
  for (std::size_t line = group_ + 1; line < end; ++line) {
    const std::string_view text = lines_[line];
    const std::size_t equals = text.find('=');
    if (equals != std::string_view::npos && trimmedOfBlanks(text.substr(0, equals)) == key)
      return line;
  }
  return kNone;
}

std::optional<std::string> DesktopEntryText::value(std::string_view key) const {
  const std::size_t line = lineOf(key);
  if (line == kNone) return std::nullopt;
  const std::string_view text = lines_[line];
  return unescapedValue(trimmedOfBlanks(text.substr(text.find('=') + 1)));
}

void DesktopEntryText::set(std::string_view key, std::string_view value) {
  if (!isEntry()) return;
  std::string text = std::string(key) + "=" + escapedValue(value);
  if (const std::size_t line = lineOf(key); line != kNone) {
    lines_[line] = std::move(text);
    return;
  }
  std::size_t place = endOfGroup();
  while (trimmedOfBlanks(lines_[place - 1]).empty())
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

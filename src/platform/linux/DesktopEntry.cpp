#include "DesktopEntry.h"

#include "Utf8.h"

#include <algorithm>
#include <array>
#include <map>

namespace brisko {
namespace {

using Strings = std::vector<std::string>;

std::string_view trimmed(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

std::string_view nextPart(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return part;
}

// The escapes of the file format. In the Exec key they come before those of its own.
std::string unescaped(std::string_view value) {
  std::string plain;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      plain += value[i];
      continue;
    }
    switch (const char code = value[++i]) {
      case 's':
        plain += ' ';
        break;
      case 'n':
        plain += '\n';
        break;
      case 't':
        plain += '\t';
        break;
      case 'r':
        plain += '\r';
        break;
      case '\\':
        plain += '\\';
        break;
      default:
        plain += '\\';
        plain += code;
    }
  }
  return plain;
}

// For people: control characters become blanks. Empty when it is no UTF-8.
std::string textOf(std::string_view value) {
  std::string text = unescaped(value);
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = utf8SequenceLength(std::string_view(text).substr(i));
    if (length == 0) return "";
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
    i += length;
  }
  return std::string(trimmed(text));
}

Strings listOf(std::string_view value) {
  Strings parts;
  while (!value.empty()) {
    std::string part = textOf(nextPart(value, ';'));
    if (!part.empty()) parts.push_back(std::move(part));
  }
  return parts;
}

// The locales of keys that suit one of the user's, the best first.
Strings suitableLocales(std::string_view locale) {
  std::string_view modifier;
  if (const std::size_t at = locale.find('@'); at != std::string_view::npos) {
    modifier = locale.substr(at);
    locale = locale.substr(0, at);
  }
  locale = locale.substr(0, locale.find('.'));
  const std::string_view language = locale.substr(0, locale.find('_'));
  Strings all;
  for (const std::string_view base : {locale, language}) {
    if (base.empty()) continue;
    if (!modifier.empty()) all.push_back(std::string(base) + std::string(modifier));
    all.emplace_back(base);
  }
  return all;
}

using Values = std::map<std::string_view, std::string_view>;

// The keys of the one group that counts, each with its "[locale]"; the first of a name holds.
Values valuesIn(std::string_view text) {
  Values values;
  bool isInGroup = false;
  while (!text.empty()) {
    const std::string_view line = trimmed(nextPart(text, '\n'));
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      if (isInGroup) break;
      isInGroup = line == "[Desktop Entry]";
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos) continue;
    values.emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
  }
  return values;
}

std::string_view valueOf(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string_view() : found->second;
}

std::string localizedText(const Values& values, std::string_view key, std::string_view locale) {
  for (const std::string& suitable : suitableLocales(locale)) {
    std::string text = textOf(valueOf(values, std::string(key) + "[" + suitable + "]"));
    if (!text.empty()) return text;
  }
  return textOf(valueOf(values, key));
}

// In quotes a backslash takes the next character's meaning away, outside it has none of its own.
// False when the quotes are never closed.
bool takeQuoted(std::string_view& rest, std::string& word) {
  while (!rest.empty()) {
    char c = rest.front();
    rest.remove_prefix(1);
    if (c == '"') return true;
    if (c == '\\') {
      if (rest.empty()) return false;
      c = rest.front();
      rest.remove_prefix(1);
    }
    word += c;
  }
  return false;
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

bool isSetting(const std::string& word) {
  const std::size_t equals = word.find('=');
  return equals != std::string::npos && equals > 0 && word.find('/') > equals;
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  const Values values = valuesIn(text);
  if (valueOf(values, "Type") != "Application") return std::nullopt;
  DesktopEntry entry;
  entry.name = localizedText(values, "Name", locale);
  if (entry.name.empty()) return std::nullopt;
  entry.icon = localizedText(values, "Icon", locale);
  entry.exec = unescaped(valueOf(values, "Exec"));
  entry.tryExec = textOf(valueOf(values, "TryExec"));
  entry.windowClass = textOf(valueOf(values, "StartupWMClass"));
  entry.flatpak = textOf(valueOf(values, "X-Flatpak"));
  entry.snap = textOf(valueOf(values, "X-SnapInstanceName"));
  entry.version = textOf(valueOf(values, "X-AppImage-Version"));
  entry.noDisplay = valueOf(values, "NoDisplay") == "true";
  entry.hidden = valueOf(values, "Hidden") == "true";
  entry.onlyShowIn = listOf(valueOf(values, "OnlyShowIn"));
  entry.notShowIn = listOf(valueOf(values, "NotShowIn"));
  return entry;
}

std::vector<std::string> execWords(std::string_view exec) {
  Strings words;
  std::string word;
  bool isWord = false;
  const auto finish = [&] {
    if (isWord) words.push_back(std::move(word));
    word.clear();
    isWord = false;
  };
  while (!exec.empty()) {
    const char c = exec.front();
    exec.remove_prefix(1);
    if (c == ' ' || c == '\t' || c == '\n') {
      finish();
    } else if (c == '"') {
      isWord = true;
      if (!takeQuoted(exec, word)) return {};
    } else if (c == '%' && !exec.empty()) {
      // What stands for files and addresses is no part of the command itself.
      if (exec.front() == '%') {
        word += '%';
        isWord = true;
      }
      exec.remove_prefix(1);
    } else {
      word += c;
      isWord = true;
    }
  }
  finish();
  return words;
}

bool isInterpreter(std::string_view name) {
  constexpr std::array<std::string_view, 24> kNames = {
      "bash",    "cmd",  "dash", "electron", "env",   "flatpak", "gjs",    "gksu",
      "java",    "ksh",  "lua",  "mono",     "node",  "perl",    "php",    "pkexec",
      "pythonw", "ruby", "sh",   "snap",     "steam", "sudo",    "wine64", "zsh"};
  if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) return true;
  // These carry a version: "python3.11".
  for (const std::string_view family : {"python", "wine", "qml"}) {
    if (!name.starts_with(family)) continue;
    const std::string_view rest = name.substr(family.size());
    if (rest.find_first_not_of("0123456789.") == std::string_view::npos) return true;
  }
  return false;
}

std::string programOf(const std::vector<std::string>& words) {
  std::size_t at = 0;
  if (at < words.size() && nameOf(words[at]) == "env") {
    ++at;
    while (at < words.size() && (words[at].starts_with("-") || isSetting(words[at]))) {
      // "-u NAME" and "-C FOLDER" take the word after them.
      at += words[at] == "-u" || words[at] == "-C" ? 2 : 1;
    }
  }
  if (at >= words.size()) return "";
  if (!isInterpreter(nameOf(words[at]))) return words[at];
  const auto script = std::find_if(words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end(),
                                   [](const std::string& word) { return word.starts_with('/'); });
  return script == words.end() ? words[at] : *script;
}

bool isShownIn(const DesktopEntry& entry, std::string_view desktops) {
  if (entry.hidden || entry.noDisplay) return false;
  if (desktops.empty()) return true;
  while (!desktops.empty()) {
    const std::string_view desktop = nextPart(desktops, ':');
    const auto has = [&](const Strings& list) {
      return std::find(list.begin(), list.end(), desktop) != list.end();
    };
    if (has(entry.onlyShowIn)) return true;
    if (has(entry.notShowIn)) return false;
  }
  return entry.onlyShowIn.empty();
}

}  // namespace brisko

#include "DesktopEntry.h"

#include "DesktopEntryFormat.h"
#include "Utf8.h"

#include <algorithm>
#include <array>

namespace brisko {
namespace {

using Strings = std::vector<std::string>;

std::string_view nextPart(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return part;
}

// For people: control characters become blanks. Empty when it is no UTF-8.
std::string textOf(std::string_view value) {
  std::string text = unescapedValue(value);
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = utf8SequenceLength(std::string_view(text).substr(i));
    if (length == 0) return "";
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
    i += length;
  }
  return std::string(trimmedOfBlanks(text));
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

constexpr std::array<std::string_view, 13> kKeys = {"Exec",
                                                    "Hidden",
                                                    "Icon",
                                                    "Name",
                                                    "NoDisplay",
                                                    "NotShowIn",
                                                    "OnlyShowIn",
                                                    "StartupWMClass",
                                                    "TryExec",
                                                    "Type",
                                                    "X-AppImage-Version",
                                                    "X-Flatpak",
                                                    "X-SnapInstanceName"};

/// The keys of the one group that counts, as far as they are of interest, in the languages that
/// suit. A menu's worth of entries holds a hundred thousand lines, most of them in other ones.
class Values {
 public:
  Values(std::string_view text, const Strings& locales) {
    bool isInGroup = false;
    while (!text.empty()) {
      const std::string_view line = trimmedOfBlanks(nextPart(text, '\n'));
      if (line.empty() || line.front() == '#') continue;
      if (line.front() == '[') {
        if (isInGroup) break;
        isInGroup = line == "[Desktop Entry]";
      } else if (isInGroup) {
        take(line, locales);
      }
    }
  }

  /// In no particular language; the first of several with one key holds.
  std::string_view operator[](std::string_view key) const { return find(key, kNoRank); }
  /// In the language of that rank only: 0 is the best, kNoRank the one without.
  std::string_view find(std::string_view key, std::size_t rank) const {
    for (const Value& value : values_) {
      if (value.key == key && value.rank == rank) return value.text;
    }
    return {};
  }

  static constexpr std::size_t kNoRank = ~std::size_t{0};

 private:
  struct Value {
    std::string_view key;
    std::size_t rank;
    std::string_view text;
  };

  void take(std::string_view line, const Strings& locales) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    std::string_view key = trimmedOfBlanks(line.substr(0, equals));
    std::size_t rank = kNoRank;
    if (key.ends_with(']')) {
      const std::size_t bracket = key.find('[');
      if (bracket == std::string_view::npos) return;
      const std::string_view locale = key.substr(bracket + 1, key.size() - bracket - 2);
      const auto found = std::find(locales.begin(), locales.end(), locale);
      if (found == locales.end()) return;
      rank = static_cast<std::size_t>(found - locales.begin());
      key = key.substr(0, bracket);
    }
    if (!std::binary_search(kKeys.begin(), kKeys.end(), key)) return;
    values_.push_back({key, rank, trimmedOfBlanks(line.substr(equals + 1))});
  }

  std::vector<Value> values_;
};

std::string localizedText(const Values& values, std::string_view key, const Strings& locales) {
  for (std::size_t rank = 0; rank < locales.size(); ++rank) {
    std::string text = textOf(values.find(key, rank));
    if (!text.empty()) return text;
  }
  return textOf(values[key]);
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  const Strings locales = suitableLocales(locale);
  const Values values(text, locales);
  if (values["Type"] != "Application") return std::nullopt;
  DesktopEntry entry;
  entry.name = localizedText(values, "Name", locales);
  if (entry.name.empty()) return std::nullopt;
  entry.icon = localizedText(values, "Icon", locales);
  // Its own escapes are resolved later.
  entry.exec = unescapedValue(values["Exec"]);
  entry.tryExec = textOf(values["TryExec"]);
  entry.windowClass = textOf(values["StartupWMClass"]);
  entry.flatpak = textOf(values["X-Flatpak"]);
  entry.snap = textOf(values["X-SnapInstanceName"]);
  entry.version = textOf(values["X-AppImage-Version"]);
  entry.noDisplay = values["NoDisplay"] == "true";
  entry.hidden = values["Hidden"] == "true";
  entry.onlyShowIn = listOf(values["OnlyShowIn"]);
  entry.notShowIn = listOf(values["NotShowIn"]);
  return entry;
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

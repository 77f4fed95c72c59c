// Reads and writes preferences, as the system tool of this name does:
//
//     defaults [-currentHost] read DOMAIN [KEY]
//     defaults [-currentHost] write DOMAIN KEY [-TYPE] VALUE
//     defaults [-currentHost] delete DOMAIN [KEY]
//
// A preference that stands for a setting of the desktop is carried there and read from there; where
// the desktop has no such setting, that is said and nothing is stored.

#include "PreferenceDomain.h"
#include "StoredKeys.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace brisko;

using Words = std::vector<std::string>;

int refuse(const std::string& text) {
  std::fprintf(stderr, "defaults: %s\n", text.c_str());
  return 1;
}

int wrongUsage() {
  return refuse(
      "usage: defaults [-currentHost] read DOMAIN [KEY] | write DOMAIN KEY [-bool|-int|-float|"
      "-date|-string] VALUE | delete DOMAIN [KEY]");
}

// In the words of the tool that this stands in for, which callers may look for.
int missing(const PreferenceDomain& domain, const std::string& key) {
  if (key.empty()) {
    std::fprintf(stderr, "Domain %s does not exist\n", domain.name().c_str());
  } else {
    std::fprintf(stderr, "The domain/default pair of (%s, %s) does not exist\n",
                 domain.name().c_str(), key.c_str());
  }
  return 1;
}

template <typename Number>
std::optional<PropertyList> numberFrom(const std::string& text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return PropertyList(number);
}

std::optional<PropertyList> dateFrom(const std::string& text) {
  constexpr double kEpoch = 978307200;  // 2001-01-01 00:00 UTC, in seconds since 1970
  std::tm parts{};
  const char* rest = ::strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &parts);
  // Dates are told in UTC; a zone that says so is let pass, another one is not.
  if (rest == nullptr) return std::nullopt;
  const std::string zone = rest;
  if (!zone.empty() && zone != " +0000" && zone != " +000" && zone != "Z") return std::nullopt;
  return PropertyList(PropertyList::Date{static_cast<double>(::timegm(&parts)) - kEpoch});
}

std::optional<PropertyList> typedValue(const std::string& type, const std::string& text) {
  if (type == "-string") return PropertyList(text);
  if (type == "-int" || type == "-integer") return numberFrom<std::int64_t>(text);
  if (type == "-float" || type == "-real") return numberFrom<double>(text);
  if (type == "-date") return dateFrom(text);
  if (type != "-bool" && type != "-boolean") return std::nullopt;
  for (const char* word : {"true", "TRUE", "yes", "YES", "1"})
    if (text == word) return PropertyList(true);
  for (const char* word : {"false", "FALSE", "no", "NO", "0"})
    if (text == word) return PropertyList(false);
  return std::nullopt;
}

int readKey(const PreferenceDomain& domain, const std::string& key) {
  PropertyList stored = domain.read()[key];
  if (const StoredKey* known = storedKey(domain.settingsDomain(), key);
      known != nullptr && !known->isCompanion) {
    std::string reason;
    const std::optional<bool> isOn = DesktopSettings::read(known->setting, reason);
    if (!isOn) return refuse(reason);
    // The desktop can be changed elsewhere. Whoever reads the stored list finds it right again.
    if (meansOn(stored) != *isOn) {
      stored = known->valueFor(*isOn);
      if (const std::string failure = domain.write(key, stored); !failure.empty())
        return refuse(failure);
    }
    if (stored.isNull()) stored = known->valueFor(*isOn);
  }
  if (stored.isNull()) return missing(domain, key);
  std::printf("%s\n", printedValue(stored).c_str());
  return 0;
}

int read(const PreferenceDomain& domain, const Words& words) {
  if (words.size() == 1) return readKey(domain, words[0]);
  if (!words.empty()) return wrongUsage();
  const PropertyList content = domain.read();
  if (!content.isDictionary()) return missing(domain, "");
  std::printf("%s\n", printedValue(content).c_str());
  return 0;
}

int store(const PreferenceDomain& domain, const std::string& key, PropertyList value, bool isOn) {
  if (const StoredKey* known = storedKey(domain.settingsDomain(), key)) {
    std::string reason;
    const bool isDone = known->isCompanion
                            ? DesktopSettings::read(known->setting, reason).has_value()
                            : DesktopSettings::write(known->setting, isOn, reason);
    if (!isDone) return refuse(reason);
  }
  const std::string failure = domain.write(key, std::move(value));
  return failure.empty() ? 0 : refuse(failure);
}

int write(const PreferenceDomain& domain, const Words& words) {
  if (words.size() < 2 || words.size() > 3) return wrongUsage();
  PropertyList value = words[1];
  if (words.size() == 3) {
    const std::optional<PropertyList> typed = typedValue(words[1], words[2]);
    if (!typed) return refuse(fmt::format("{} \"{}\" is no value", words[1], words[2]));
    value = *typed;
  }
  const bool isOn = meansOn(value);
  return store(domain, words[0], std::move(value), isOn);
}

int remove(const PreferenceDomain& domain, const Words& words) {
  if (words.size() > 1) return wrongUsage();
  const PropertyList content = domain.read();
  if (words.empty()) {
    if (!content.isDictionary()) return missing(domain, "");
    const std::string failure = domain.clear();
    return failure.empty() ? 0 : refuse(failure);
  }
  if (content[words[0]].isNull()) return missing(domain, words[0]);
  const StoredKey* known = storedKey(domain.settingsDomain(), words[0]);
  return store(domain, words[0], {}, known != nullptr && known->untouched);
}

}  // namespace

int main(int argc, char** argv) {
  Words words(argv + 1, argv + argc);
  const bool isOfThisHost = !words.empty() && words[0] == "-currentHost";
  if (isOfThisHost) words.erase(words.begin());
  if (words.size() < 2 || words[1].empty()) return wrongUsage();
  const std::string verb = words[0];
  const PreferenceDomain domain(words[1], isOfThisHost);
  words.erase(words.begin(), words.begin() + 2);
  if (verb == "read") return read(domain, words);
  if (verb == "write") return write(domain, words);
  if (verb == "delete") return remove(domain, words);
  return wrongUsage();
}

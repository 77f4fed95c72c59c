#include "PreferenceDomain.h"

#include "LinuxPreferences.h"
#include "RegularFile.h"
#include "StoredKeys.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string_view>

namespace brisko {
namespace {

constexpr std::string_view kSuffix = ".plist";
constexpr std::time_t kEpoch = 978307200;  // 2001-01-01 00:00 UTC

std::string globalName(std::string given) {
  const bool isGlobal = given == "-g" || given == "-globalDomain" || given == "Apple Global Domain";
  return isGlobal ? Preferences::kGlobalDomain : given;
}

std::string printedText(const std::string& text, bool isNested) {
  const bool isPlain = !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '_' || c == '.' || c == '/' || c == '-';
  });
  if (!isNested || isPlain) return text;
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') quoted += '\\';
    if (character == '\n') {
      quoted += "\\n";
    } else {
      quoted += character;
    }
  }
  return quoted + '"';
}

std::string printed(const PropertyList& value, std::size_t depth) {
  const std::string inner((depth + 1) * 4, ' ');
  const std::string outer(depth * 4, ' ');
  if (value.isDictionary()) {
    std::string lines = "{\n";
    for (const auto& [key, each] : value.dictionary())
      lines += fmt::format("{}{} = {};\n", inner, printedText(key, true), printed(each, depth + 1));
    return lines + outer + "}";
  }
  if (value.isArray()) {
    std::string lines = "(\n";
    const auto& items = value.array();
    for (std::size_t i = 0; i < items.size(); ++i)
      lines += inner + printed(items[i], depth + 1) + (i + 1 < items.size() ? ",\n" : "\n");
    return lines + outer + ")";
  }
  if (value.isString()) return printedText(value.string(), depth > 0);
  if (value.isBool()) return value.boolean() ? "1" : "0";
  const PropertyList integer(value.integer());
  if (value == integer || value == PropertyList(value.unsignedInteger()))
    return value == integer ? std::to_string(value.integer())
                            : std::to_string(value.unsignedInteger());
  if (value.isNumber()) return fmt::format("{}", value.real());
  if (value == PropertyList(PropertyList::Date{value.date()})) {
    const std::time_t seconds = kEpoch + static_cast<std::time_t>(value.date());
    std::tm parts{};
    char text[64];
    gmtime_r(&seconds, &parts);
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &parts);
    return printedText(text, depth > 0);
  }
  std::string bytes = "<";
  for (const unsigned char byte : value.dataBytes())
    bytes += fmt::format("{:02x}", byte);
  return bytes + ">";
}

}  // namespace

PreferenceDomain::PreferenceDomain(std::string given, bool isOfThisHost)
    : given_(globalName(std::move(given))), isOfThisHost_(isOfThisHost) {}

std::string PreferenceDomain::file() const {
  return given_.ends_with(kSuffix) ? given_ : given_ + std::string(kSuffix);
}

std::string PreferenceDomain::settingsDomain() const {
  if (!isFile()) return given_;
  const std::string path = file();
  const std::string name = path.substr(path.rfind('/') + 1);
  return name.substr(0, name.size() - kSuffix.size());
}

PropertyList PreferenceDomain::read() const {
  if (isFile()) return PropertyList::read(file());
  LinuxPreferences preferences(isOfThisHost_ ? hostPreferencesFolder() : userPreferencesFolder());
  return preferences.persistentDomain(given_);
}

std::string PreferenceDomain::writeFile(const PropertyList& content) const {
  std::error_code made;
  std::filesystem::create_directories(std::filesystem::path(file()).parent_path(), made);
  const int error = replaceFile(file(), content.xml());
  return error == 0 ? "" : fmt::format("cannot write {}: {}", file(), std::strerror(error));
}

std::string PreferenceDomain::write(const std::string& key, PropertyList value) const {
  PropertyList content = read();
  std::error_code error;
  // What is no property list is somebody's file of another kind.
  if (isFile() && !content.isDictionary() && std::filesystem::exists(file(), error))
    return fmt::format("{} is no property list", file());
  if (isFile()) {
    content.set(key, std::move(value));
    return writeFile(content.isDictionary() ? content : PropertyList(PropertyList::Dictionary()));
  }
  LinuxPreferences preferences(isOfThisHost_ ? hostPreferencesFolder() : userPreferencesFolder());
  preferences.setValue(given_, key, std::move(value));
  return preferences.synchronize() ? "" : fmt::format("cannot write the domain {}", given_);
}

std::string PreferenceDomain::clear() const {
  if (isFile()) return writeFile(PropertyList(PropertyList::Dictionary()));
  LinuxPreferences preferences(isOfThisHost_ ? hostPreferencesFolder() : userPreferencesFolder());
  preferences.setPersistentDomain(given_, PropertyList(PropertyList::Dictionary()));
  return preferences.synchronize() ? "" : fmt::format("cannot write the domain {}", given_);
}

std::string printedValue(const PropertyList& value) {
  return printed(value, 0);
}

}  // namespace brisko

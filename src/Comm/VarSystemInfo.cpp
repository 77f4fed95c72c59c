#include "VarSystemInfo.h"

#include "Host.h"
#include "Resources.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <vector>

namespace brisko {
namespace {

constexpr int kFirstNamed = 6;
constexpr const char* kSystemNames[] = {
    "OS X Snow Leopard", "OS X Lion",    "OS X Mountain Lion", "OS X Mavericks", "OS X Yosemite",
    "OS X El Capitan",   "macOS Sierra", "macOS High Sierra",  "macOS Mojave"};

std::string lowerCased(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// Bytes beyond ASCII belong to letters of other scripts.
bool isLetterOrDigit(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || std::isalnum(byte) != 0;
}

// Signs such as "+" and "~" are none.
bool isPunctuation(char c) {
  return std::string_view("!\"#%&'()*,-./:;?@[\\]_{}").find(c) != std::string_view::npos;
}

template <typename Separator>
std::vector<std::string_view> split(std::string_view text, Separator separates) {
  std::vector<std::string_view> pieces;
  auto begin = text.begin();
  while (true) {
    const auto end = std::find_if(begin, text.end(), separates);
    pieces.emplace_back(begin, end);
    if (end == text.end()) return pieces;
    begin = end + 1;
  }
}

// A release in its parts; none when the kernel does not tell it.
struct Release {
  int major = 0;
  std::string minor;
};

std::optional<Release> kernelRelease() {
  const auto text = VarSystemInfo::_strControlEntry("kern.osrelease");
  if (!text || text->empty()) return std::nullopt;
  const auto parts = split(*text, isPunctuation);
  Release release;
  std::from_chars(parts[0].data(), parts[0].data() + parts[0].size(), release.major);
  release.minor = parts.size() > 1 ? std::string(parts[1]) : "0";
  return release;
}

int minorVersion(const Release& release) {
  constexpr int kKernelAhead = 4;
  return release.major - kKernelAhead;
}

}  // namespace

void VarSystemInfo::setupSystemInformation() {
  const auto model = _strControlEntry("hw.model");
  if (!model) return;
  sysModelID = *model;
  sysModelName = _modelNameFromID(sysModelID);
}

std::optional<std::string> VarSystemInfo::_strControlEntry(std::string_view name) {
  NamedValue value;
  if (Host::current().statistics->namedValue(name, value) != 0) return std::nullopt;
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::uint64_t VarSystemInfo::_numControlEntry(std::string_view name) {
  NamedValue value;
  if (Host::current().statistics->namedValue(name, value) != 0) return 0;
  const auto* number = std::get_if<std::uint64_t>(&value);
  return number != nullptr ? *number : 0;
}

std::optional<std::string> VarSystemInfo::_strIORegistryEntry(std::string_view name) {
  return Host::current().statistics->platformProperty(name);
}

std::string VarSystemInfo::_modelNameFromID(const std::string& identifier) {
  const std::string name = Resources::table("MachineNames.plist")[identifier].string();
  if (!name.empty()) return name;
  // No identifier has a blank, so only the first ever matches; the others are kept for makers who
  // put a name there.
  const std::string lower = lowerCased(identifier);
  for (const char* family : {"iMac", "Mac mini", "MacBook Air", "MacBook Pro", "Mac Pro"}) {
    if (lower.starts_with(lowerCased(family))) return family;
  }
  return identifier;
}

std::string VarSystemInfo::_parseBrandName(std::string_view brand) {
  std::string name;
  for (std::string_view piece : split(brand, [](char c) { return !isLetterOrDigit(c); })) {
    if (piece == "CPU") break;
    const std::string lower = lowerCased(piece);
    if (piece.empty() || lower == "r" || lower == "tm") continue;
    if (std::isdigit(static_cast<unsigned char>(piece[0])) != 0) continue;
    if (!name.empty()) name += ' ';
    name += piece;
  }
  return name;
}

std::optional<std::string> VarSystemInfo::getOSVersionInfo() {
  const auto release = kernelRelease();
  const auto build = _strControlEntry("kern.osversion");
  if (!release || !build) return std::nullopt;
  return fmt::format("10.{}.{} ({})", minorVersion(*release), release->minor, *build);
}

std::optional<std::string> VarSystemInfo::getMinorVer() {
  const auto release = kernelRelease();
  if (!release) return std::nullopt;
  const int number = minorVersion(*release);
  const int row = number - kFirstNamed;
  if (row < 0 || row >= static_cast<int>(std::size(kSystemNames))) return std::to_string(number);
  return kSystemNames[row];
}

}  // namespace brisko

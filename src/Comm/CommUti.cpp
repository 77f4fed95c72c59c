#include "CommUti.h"

#include "Host.h"
#include "ProgramFiles.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>

namespace brisko {
namespace {

constexpr std::uint64_t kKB = 1000;
constexpr std::uint64_t kMB = 1000 * kKB;
constexpr std::uint64_t kGB = 1000 * kMB;
constexpr std::uint64_t kTB = 1000 * kGB;

std::string inUnit(std::uint64_t bytes, std::uint64_t unit, std::string_view name) {
  const auto quotient = static_cast<float>(static_cast<double>(bytes) / static_cast<double>(unit));
  return fmt::format("{:.2f} {}", quotient, name);
}

// A number at the front of `text`, blanks before it skipped; 0 when there is none.
float leadingNumber(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first);
  if (text.starts_with('+')) text.remove_prefix(1);
  const std::size_t digit = text.starts_with('-') ? 1 : 0;
  const bool isNumber = text.size() > digit && (text[digit] == '.' || std::isdigit(text[digit]));
  if (!isNumber) return 0;  // "inf" and "nan" are words here
  float number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// Truncates; a negative number wraps round as its 64 bits do, what does not fit stops at the end.
std::uint64_t truncated(float number) {
  constexpr float kWords = 18446744073709551616.0F;  // 2^64
  if (number >= kWords) return std::numeric_limits<std::uint64_t>::max();
  if (number >= 0) return static_cast<std::uint64_t>(number);
  if (number <= -kWords / 2) return std::uint64_t{1} << 63U;
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
}

}  // namespace

std::string CommUti::longlongDiskSize(std::uint64_t bytes) {
  if (bytes < kKB) return fmt::format("{} byte", bytes);
  if (bytes < kMB) return inUnit(bytes, kKB, "KB");
  if (bytes < kGB) return inUnit(bytes, kMB, "MB");
  if (bytes < kTB) return inUnit(bytes, kGB, "GB");
  return inUnit(bytes, kTB, "TB");
}

std::string CommUti::longlongConvertVolSpace(std::uint64_t bytes) {
  return longlongDiskSize(bytes);
}

std::string CommUti::convertVolSpace(std::uint64_t bytes) {
  // Narrowed before it is divided, unlike in longlongDiskSize.
  const auto count = static_cast<float>(bytes);
  if (bytes < kMB) return fmt::format("{:.2f} KB", count / 1e3F);
  if (bytes < kGB) return fmt::format("{:.2f} MB", count / 1e6F);
  return fmt::format("{:.2f} GB", count / 1e9F);
}

std::uint64_t CommUti::volSpaceFromString(std::string_view text) {
  constexpr std::size_t kUnitLength = 3;  // a blank and two letters
  if (text.size() < kUnitLength) return 0;
  const float number = leadingNumber(text.substr(0, text.size() - kUnitLength));
  if (number == 0) return 0;
  if (text.ends_with("KB")) return truncated(number < 0 ? number : number * 1e3F);
  if (text.ends_with("MB")) return truncated(number * 1e6F);
  if (text.ends_with("GB")) return truncated(number * 1e9F);
  if (text.ends_with("TB"))
    return truncated(number * 1e12F);  // the float nearest to it is 999,999,995,904
  return 0;
}

void CommUti::getSystemVersionMajor(std::uint32_t* major, std::uint32_t* minor,
                                    std::uint32_t* bugFix) {
  // Up to here the packed number says all; above, a part may have outgrown its one digit.
  constexpr std::uint32_t kLastPacked = 0x103F;
  SystemVersion::Selectors version;
  const long error = Host::current().systemVersion->read(version);
  if (error != 0) {
    SystemLog::line("Unable to obtain system version: {}", error);
    version = {0, 10, 0, 0};
  } else if (version.packed <= kLastPacked) {
    version.major = (version.packed >> 12U & 0xFU) * 10 + (version.packed >> 8U & 0xFU);
    version.minor = version.packed >> 4U & 0xFU;
    version.bugFix = version.packed & 0xFU;
  }
  if (major != nullptr) *major = version.major;
  if (minor != nullptr) *minor = version.minor;
  if (bugFix != nullptr) *bugFix = version.bugFix;
}

int CommUti::getSystemVersion() {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  getSystemVersionMajor(&major, &minor, nullptr);
  const std::string text = fmt::format("{}{:02}", major, minor);
  SystemLog::line("verSion----------{}", text);
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

int CommUti::getMinorVersion() {
  std::uint32_t minor = 0;
  getSystemVersionMajor(nullptr, &minor, nullptr);
  return static_cast<int>(minor);
}

std::string CommUti::userName() {
  const char* name = std::getenv("USER");
  return name != nullptr ? name : "";
}

std::string CommUti::getLocalPath() {
  return ProgramFiles::program();
}

bool CommUti::isBelongRunningApp(std::string_view bundleIdentifier) {
  Workspace* workspace = Host::current().workspace.get();
  if (workspace == nullptr) return false;
  for (const LaunchedApplication& application : workspace->launchedApplications()) {
    if (application.bundleIdentifier == bundleIdentifier) return true;
  }
  return false;
}

}  // namespace brisko

#include "FullDiskAccessAuthorizer.h"

#include "CommUti.h"
#include "Host.h"
#include "SystemLog.h"

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kSettingsAddress =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";
constexpr int kFirstVersionWithProtection = 1014;

std::string homeInDatabase() {
  std::vector<char> buffer(1 << 16);
  passwd entry;
  passwd* found = nullptr;
  if (getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 ||
      found == nullptr) {
    return {};
  }
  return found->pw_dir;
}

// The names in a folder as one text; nothing when it cannot be listed.
std::optional<std::string> listing(const std::string& folder) {
  DIR* open = ::opendir(folder.c_str());
  if (open == nullptr) return std::nullopt;
  std::string names;
  errno = 0;
  while (const dirent* entry = ::readdir(open)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.append(names.empty() ? "" : ", ").append(name);
  }
  const bool complete = errno == 0;
  ::closedir(open);
  if (!complete) return std::nullopt;
  return "(" + names + ")";
}

}  // namespace

FullDiskAccessAuthorizer& FullDiskAccessAuthorizer::sharedInstance() {
  static FullDiskAccessAuthorizer instance;
  return instance;
}

FullDiskAccessAuthorizer::Status FullDiskAccessAuthorizer::authorizationStatus() {
  const bool isSandboxed = std::getenv("APP_SANDBOX_CONTAINER_ID") != nullptr;
  const std::string home = isSandboxed ? homeInDatabase() : Host::current().folders->home();
  const std::string path = home + "/Library/Safari";
  SystemLog::line("isSandboxed : {}", isSandboxed ? 1 : 0);
  SystemLog::line("userHomePath : {}, path : {}", home, path);
  struct stat status;
  const bool exists = !home.empty() && ::stat(path.c_str(), &status) == 0;
  const auto names = exists ? listing(path) : std::nullopt;
  SystemLog::line("paths : {}", names.value_or("(null)"));
  if (!exists) return Status::notDetermined;
  return names ? Status::authorized : Status::denied;
}

FullDiskAccessAuthorizer::Status FullDiskAccessAuthorizer::getAuthorization() {
  const Status status = authorizationStatus();
  return status == Status::denied || status == Status::authorized ? status : Status::notDetermined;
}

void FullDiskAccessAuthorizer::requestAuthorization() {
  if (CommUti::getSystemVersion() < kFirstVersionWithProtection) return;
  Host::current().workspace->openAddress(kSettingsAddress);
}

}  // namespace brisko

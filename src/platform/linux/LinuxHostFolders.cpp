#include "LinuxHostFolders.h"

#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

struct UserEntry {
  std::string name;
  std::string home;
};

UserEntry userEntry() {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
    return {found->pw_name, found->pw_dir};
  }
  return {std::to_string(getuid()), "/"};
}

// USER becomes one component of a path, so it has to be one.
bool isComponent(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

// Without the last component's link followed: whoever can plant one in a shared folder could lead
// our files elsewhere.
bool isPrivateFolder(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid() && (status.st_mode & 0077) == 0;
}

// Whether nobody else can replace what this user makes in the folder.
bool isSafeParent(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
  const bool isTrusted = status.st_uid == geteuid() || status.st_uid == 0;
  const bool isShared = (status.st_mode & 0022) != 0;
  return isTrusted && (!isShared || (status.st_mode & S_ISVTX) != 0);
}

}  // namespace

LinuxHostFolders::LinuxHostFolders(std::string root) : root_(std::move(root)) {
  const UserEntry entry = userEntry();
  user_ = environment("USER");
  if (!isComponent(user_)) user_ = entry.name;
  home_ = withoutTrailingSlashes(environment("HOME"));
  if (!home_.starts_with('/')) home_ = withoutTrailingSlashes(entry.home);
  if (!isBelowRoot(home_)) home_ = path("/Users/" + user_);
}

bool LinuxHostFolders::isBelowRoot(std::string_view path) const {
  if (root_.empty()) return true;
  const bool climbs = (std::string(path) + "/").find("/../") != std::string::npos;
  return path.starts_with(root_ + "/") && !climbs;
}

std::string LinuxHostFolders::volumes() const {
  if (hasRoot()) return path("/Volumes");
  const std::string run = "/run/media/" + user_;
  return access(run.c_str(), F_OK) == 0 ? run : "/media/" + user_;
}

std::string LinuxHostFolders::temporary() const {
  const std::string name = "/brisko-" + std::to_string(geteuid());
  for (const std::string& parent :
       {environment("XDG_RUNTIME_DIR"), environment("TMPDIR"), std::string("/tmp")}) {
    if (!parent.starts_with('/') || !isSafeParent(parent)) continue;
    const std::string folder = withoutTrailingSlashes(parent) + name;
    if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) continue;
    if (isPrivateFolder(folder)) return folder;
  }
  return "";
}

std::string LinuxHostFolders::baseFolder(const char* variable, std::string_view below) const {
  const std::string given = withoutTrailingSlashes(environment(variable));
  if (given.starts_with('/') && isBelowRoot(given)) return given;
  return home_ + std::string(below);
}

std::optional<std::string> LinuxHostFolders::variable(std::string_view name) const {
  if (name == "HOME") return home_;
  if (name == "USER") return user_;
  if (name == "UID") return std::to_string(getuid());
  if (name == "XDG_CACHE_HOME") return baseFolder("XDG_CACHE_HOME", "/.cache");
  if (name == "XDG_CONFIG_HOME") return baseFolder("XDG_CONFIG_HOME", "/.config");
  if (name == "XDG_DATA_HOME") return baseFolder("XDG_DATA_HOME", "/.local/share");
  if (name == "XDG_STATE_HOME") return baseFolder("XDG_STATE_HOME", "/.local/state");
  return std::nullopt;
}

}  // namespace brisko

#include "UserPrograms.h"

#include "HostFolders.h"
#include "PathNames.h"

#include <algorithm>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

// In the home; each holds things of many programs, and so is none's own.
constexpr std::string_view kShared[] = {"",
                                        "/.cache",
                                        "/.config",
                                        "/.local",
                                        "/.local/bin",
                                        "/.local/lib",
                                        "/.local/opt",
                                        "/.local/share",
                                        "/.local/state",
                                        "/.opt",
                                        "/.var",
                                        "/.var/app",
                                        "/AppImages",
                                        "/Apps",
                                        "/Applications",
                                        "/Desktop",
                                        "/Documents",
                                        "/Downloads",
                                        "/Games",
                                        "/Music",
                                        "/Pictures",
                                        "/Programs",
                                        "/Projects",
                                        "/Public",
                                        "/Software",
                                        "/Templates",
                                        "/Tools",
                                        "/Videos",
                                        "/apps",
                                        "/bin",
                                        "/code",
                                        "/dev",
                                        "/games",
                                        "/git",
                                        "/opt",
                                        "/programs",
                                        "/projects",
                                        "/snap",
                                        "/software",
                                        "/src",
                                        "/tools",
                                        "/work"};

std::string parentOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

bool isThere(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0;
}

bool isProgram(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isNormal(const std::string& path) {
  return path.starts_with('/') && !path.ends_with('/') && path.find("//") == std::string::npos &&
         (path + "/").find("/../") == std::string::npos &&
         (path + "/").find("/./") == std::string::npos;
}

// Letters and digits only, in lower case: "Tor Browser" and "tor-browser" are one name.
std::string plainName(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c >= 'A' && c <= 'Z') {
      plain += static_cast<char>(c - 'A' + 'a');
    } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      plain += c;
    }
  }
  return plain;
}

// Not the other way round: "music-player" in "~/music" has not got all of that to itself.
bool isCalledLike(const std::string& folder, const std::string& name) {
  constexpr std::size_t kTelling = 3;  // letters
  return name.size() >= kTelling && folder.find(name) != std::string::npos;
}

// The folder that is the program's own, else empty. It has to be called like the program: in
// "~/Tools" may stand anything besides. Programs keep what is started in a folder "bin" of theirs.
std::string ownFolder(const std::string& program, const DesktopEntry& entry,
                      const std::vector<std::string>& shared) {
  const std::string file = plainName(lastName(program));
  if (file.ends_with("appimage")) return "";
  std::string folder = parentOf(program);
  if (lastName(folder) == "bin" || lastName(folder) == "sbin") {
    if (std::find(shared.begin(), shared.end(), folder) != shared.end()) return "";
    folder = parentOf(folder);
  }
  if (std::find(shared.begin(), shared.end(), folder) != shared.end()) return "";
  const std::string name = plainName(lastName(folder));
  const std::string stem = plainName(lastName(program).substr(0, lastName(program).find('.')));
  const std::string last = plainName(entry.id.substr(entry.id.rfind('.') + 1));
  if (!isCalledLike(name, stem) && !isCalledLike(name, last) &&
      !isCalledLike(name, plainName(entry.name))) {
    return "";
  }
  for (const char* control : {"/.git", "/.hg", "/.svn"}) {
    if (isThere(folder + control)) return "";
  }
  return folder;
}

}  // namespace

std::vector<std::string> userProgramFiles(const DesktopEntry& entry, const HostFolders& folders) {
  const std::string home = folders.home();
  const std::string optional = folders.path("/opt");
  std::string program = programOf(execWords(entry.exec));
  // Below a root an entry's paths are those of the system that is kept there.
  if (folders.hasRoot() && !isBelow(program, folders.root())) program = folders.path(program);
  if (!isNormal(program) || !isProgram(program)) return {};
  const bool isInHome = home.size() > 1 && isBelow(program, home);
  const bool isInOptional =
      isBelow(program, optional) && ::geteuid() != 0 && ::access(optional.c_str(), W_OK) == 0;
  if (!isInHome && !isInOptional) return {};
  std::vector<std::string> shared = {optional};
  for (const std::string_view name : kShared)
    shared.push_back(home + std::string(name));
  for (const char* name :
       {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    shared.push_back(folders.variable(name).value_or(""));
  }
  const std::string folder = ownFolder(program, entry, shared);
  return {folder.empty() ? program : folder, entry.path};
}

bool hasTryExec(const DesktopEntry& entry, const HostFolders& folders) {
  if (entry.tryExec.empty()) return true;
  if (entry.tryExec.find('/') != std::string::npos) {
    return isProgram(entry.tryExec) || isProgram(folders.path(entry.tryExec));
  }
  for (const char* place : {"/usr/local/sbin/", "/usr/local/bin/", "/usr/sbin/", "/usr/bin/",
                            "/sbin/", "/bin/", "/usr/local/games/", "/usr/games/", "/snap/bin/"}) {
    if (isProgram(folders.path(place) + entry.tryExec)) return true;
  }
  return isProgram(folders.home() + "/.local/bin/" + entry.tryExec) ||
         isProgram(folders.home() + "/bin/" + entry.tryExec);
}

}  // namespace brisko

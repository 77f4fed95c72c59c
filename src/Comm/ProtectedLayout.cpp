// Which machine, homes and program the protected places are formed for.

#include "Host.h"
#include "ProgramFiles.h"
#include "ProtectedPaths.h"
#include "Resources.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <mutex>

#include <pwd.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kTable = "SystemFile.plist";
constexpr auto kLifetime = std::chrono::seconds(1);
constexpr const char* kVariables[] = {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                      "XDG_STATE_HOME"};

std::string homeInDatabase(uid_t uid) {
  std::vector<char> buffer(1 << 16);
  passwd entry;
  passwd* found = nullptr;
  if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return {};
  }
  return found->pw_dir;
}

void addHome(ProtectedPaths::Layout& layout, const std::string& home) {
  if (home.starts_with("/")) layout.homes.push_back(home);
}

// The program's own file, and its tools with everything below their folder.
void addProgram(ProtectedPaths::Layout& layout) {
  const std::string program = ProgramFiles::program();
  if (program.empty()) return;
  layout.places.push_back(program);
  layout.tools.push_back(ProgramFiles::tools());
}

// The user's standard folders under the names that the desktop gave them in the user's language:
// lines of the form XDG_DOCUMENTS_DIR="$HOME/Dokumente".
void addStandardFolders(ProtectedPaths::Layout& layout, const std::string& home,
                        const std::string& configuration) {
  constexpr std::size_t kMaximumLines = 200;
  std::ifstream file(configuration + "/user-dirs.dirs");
  std::string line;
  for (std::size_t lines = 0; lines < kMaximumLines && std::getline(file, line); ++lines) {
    const std::size_t begin = line.find("_DIR=\"");
    const std::size_t end = line.rfind('"');
    if (!line.starts_with("XDG_") || begin == std::string::npos || end < begin + 6) continue;
    const std::string value = line.substr(begin + 6, end - begin - 6);
    if (value.starts_with("$HOME/")) layout.places.push_back(home + value.substr(5));
    if (value.starts_with("/")) layout.places.push_back(value);
  }
}

PropertyList builtInTable() {
  const auto bytes = Resources::builtIn(kTable);
  return bytes ? PropertyList::parse(*bytes, kTable) : PropertyList();
}

struct Current {
  std::mutex mutex;
  std::string key;
  std::chrono::steady_clock::time_point made;
  std::shared_ptr<const ProtectedPaths> paths;
};

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::shared_ptr<const ProtectedPaths> makeCurrent(const HostFolders& folders) {
  ProtectedPaths::Layout layout;
  layout.roots = {""};
  if (folders.hasRoot()) layout.roots.push_back(folders.root());
  addHome(layout, folders.home());
  addHome(layout, homeInDatabase(::getuid()));
  for (const char* name : kVariables) {
    const auto value = folders.variable(name);
    if (value && value->starts_with("/")) layout.variables.emplace(name, *value);
  }
  const auto configuration = layout.variables.find("XDG_CONFIG_HOME");
  if (configuration != layout.variables.end()) {
    addStandardFolders(layout, folders.home(), configuration->second);
  }
  addProgram(layout);
  auto paths = std::make_shared<ProtectedPaths>(builtInTable(), layout);
  if (!environment("BRISKO_RESOURCES").empty()) paths->add(Resources::table(kTable));
  return paths;
}

}  // namespace

std::shared_ptr<const ProtectedPaths> ProtectedPaths::current() {
  static auto* current = new Current;
  const HostFolders& folders = *Host::current().folders;
  const std::string key =
      folders.root() + '\0' + folders.home() + '\0' + environment("BRISKO_RESOURCES");
  const auto now = std::chrono::steady_clock::now();
  const std::lock_guard lock(current->mutex);
  if (!current->paths || current->key != key || now - current->made > kLifetime) {
    current->paths = makeCurrent(folders);
    current->key = key;
    current->made = now;
  }
  return current->paths;
}

ProtectedPaths ProtectedPaths::forUser(uid_t uid) {
  Layout layout;
  layout.roots = {""};
  addHome(layout, homeInDatabase(uid));
  addHome(layout, homeInDatabase(0));
  addProgram(layout);
  return ProtectedPaths(builtInTable(), layout);
}

}  // namespace brisko

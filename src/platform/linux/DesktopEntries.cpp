#include "DesktopEntries.h"

#include "HostFolders.h"
#include "RegularFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string_view>
#include <utility>

namespace brisko {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumEntry = 1 << 20;
constexpr int kMaximumDepth = 8;  // of folders below an applications folder
constexpr std::string_view kSuffix = ".desktop";

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

void add(std::vector<std::string>& all, std::string data) {
  while (data.size() > 1 && data.back() == '/')
    data.pop_back();
  if (!data.starts_with('/')) return;
  std::string folder = std::move(data) + "/applications";
  if (std::find(all.begin(), all.end(), folder) == all.end()) all.push_back(std::move(folder));
}

class Reader {
 public:
  explicit Reader(const std::string& locale) : locale_(locale) {}

  void read(const std::string& folder) { walk(folder, "", 0); }
  std::vector<DesktopEntry> take() {
    std::vector<DesktopEntry> all;
    for (auto& [id, entry] : entries_)
      all.push_back(std::move(entry));
    return all;
  }

 private:
  // Folders that are links are not entered: they may lead back.
  void walk(const std::string& folder, const std::string& prefix, int depth) {
    std::error_code error;
    fs::directory_iterator iterator(folder, error);
    for (; !error && iterator != fs::directory_iterator(); iterator.increment(error)) {
      const std::string path = iterator->path();
      const std::string name = iterator->path().filename();
      std::error_code unknown;
      if (iterator->symlink_status(unknown).type() == fs::file_type::directory) {
        if (depth < kMaximumDepth) walk(path, prefix + name + "-", depth + 1);
      } else if (name.size() > kSuffix.size() && name.ends_with(kSuffix)) {
        take(path, prefix + name.substr(0, name.size() - kSuffix.size()));
      }
    }
  }

  void take(const std::string& path, const std::string& id) {
    const auto known = entries_.find(id);
    if (known != entries_.end()) {
      known->second.shadowed.push_back(path);
      return;
    }
    int error = 0;
    const auto text = readFile(path, kMaximumEntry, error);
    auto entry = text ? parseDesktopEntry(*text, locale_) : std::nullopt;
    if (!entry) return;
    entry->id = id;
    entry->path = path;
    entries_.emplace(id, *std::move(entry));
  }

  const std::string& locale_;
  std::map<std::string, DesktopEntry> entries_;
};

}  // namespace

std::vector<std::string> applicationFolders(const HostFolders& folders) {
  std::vector<std::string> all;
  const std::string own = folders.variable("XDG_DATA_HOME").value_or("");
  add(all, own);
  std::string system = folders.hasRoot() ? "" : environment("XDG_DATA_DIRS");
  if (system.empty()) {
    add(all, folders.path("/usr/local/share"));
    add(all, folders.path("/usr/share"));
  }
  for (std::string_view rest = system; !rest.empty();) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    add(all, std::string(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  add(all, own + "/flatpak/exports/share");
  add(all, folders.path("/var/lib/flatpak/exports/share"));
  add(all, folders.path("/var/lib/snapd/desktop"));
  return all;
}

std::string messageLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = environment(name);
    if (!value.empty()) return value;
  }
  return "";
}

std::vector<DesktopEntry> readDesktopEntries(const std::vector<std::string>& folders,
                                             const std::string& locale) {
  Reader reader(locale);
  for (const std::string& folder : folders)
    reader.read(folder);
  return reader.take();
}

}  // namespace brisko

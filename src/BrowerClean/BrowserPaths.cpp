#include "BrowserPaths.h"

#include "Host.h"
#include "NSFileManager.h"
#include "ProtectedPaths.h"

#include <algorithm>

#include <sys/stat.h>

namespace brisko::BrowserPaths {
namespace {

using Strings = std::vector<std::string>;

bool isThere(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

bool isRealFolder(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string withUser(std::string text) {
  const std::size_t at = text.find("%@");
  return at == std::string::npos ? text : text.replace(at, 2, userName());
}

void walk(const std::string& path, const std::string& rest, Strings& found) {
  if (rest.empty()) {
    if (isThere(path)) found.push_back(path);
    return;
  }
  const std::size_t end = std::min(rest.find('/', 1), rest.size());
  const std::string name = rest.substr(1, end - 1);
  const std::string after = rest.substr(end);
  if (name.find('*') == std::string::npos) {
    const std::string next = path + "/" + name;
    if (after.empty() || isRealFolder(next)) walk(next, after, found);
    return;
  }
  for (const std::string& entry : getAllFileWithPath(path)) {
    const std::string next = path + "/" + entry;
    if (matchesPattern(entry, name) && isRealFolder(next)) walk(next, after, found);
  }
}

}  // namespace

std::string userName() {
  return Host::current().folders->variable("USER").value_or("");
}

std::string formatted(const std::string& pathTemplate) {
  return Host::current().folders->path(withUser(pathTemplate));
}

std::vector<std::string> resolved(const std::string& pathTemplate, const std::string& holds) {
  const HostFolders& folders = *Host::current().folders;
  Strings found;
  if (!pathTemplate.starts_with("${")) {
    walk(folders.root(), withUser(pathTemplate), found);
  } else {
    const std::size_t end = pathTemplate.find('}');
    if (end == std::string::npos) return {};
    const auto base = folders.variable(pathTemplate.substr(2, end - 2));
    if (!base || !base->starts_with("/")) return {};
    walk(*base, withUser(pathTemplate.substr(end + 1)), found);
  }
  if (!holds.empty()) {
    std::erase_if(found, [&](const std::string& path) {
      return !isRealFolder(path) || !isThere(path + "/" + holds);
    });
  }
  return found;
}

std::vector<std::string> getAllFileWithPath(const std::string& path) {
  Strings names;
  if (path.empty() || path == " ") return names;
  int error = 0;
  const auto folder = Host::current().catalog->open(path, error);
  if (!folder) return names;
  CatalogBatch batch;
  while (folder->read(batch, 0)) {
    for (const CatalogItem& item : batch.items)
      names.emplace_back(item.name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> entriesContaining(const std::string& path, const std::string& word) {
  Strings paths;
  for (const std::string& name : getAllFileWithPath(path)) {
    if (name.find(word) != std::string::npos) paths.push_back(path + "/" + name);
  }
  return paths;
}

std::string getDefaultWithPath(const std::string& path) {
  std::string found;
  for (const std::string& name : getAllFileWithPath(path)) {
    if (name.ends_with(".default")) found = path + name;
  }
  return found;
}

std::uint64_t fileSizeWithPath(const std::string& path) {
  return NSFileManager::fileSize(path);
}

}  // namespace brisko::BrowserPaths

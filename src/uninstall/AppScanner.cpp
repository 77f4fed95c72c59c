#include "AppScanner.h"

#include "CommUti.h"
#include "Host.h"
#include "RelatedAppFilesScanner.h"
#include "fileAttrbItem.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

constexpr std::string_view kPluginExtensions[] = {"app",        "plugin",     "webplugin",
                                                  "component",  "mdimporter", "qlgenerator",
                                                  "dictionary", "safariextz"};

struct Entry {
  std::string name;
  FileKind kind;
};

// A folder that is being gone through: its entries, and how far.
struct Level {
  std::vector<Entry> entries;
  std::size_t next = 0;
  std::size_t pathLength = 0;  // of the folder, in the path that all levels share
};

std::vector<Entry> entriesOf(const std::string& folder) {
  std::vector<Entry> entries;
  int error = 0;
  const auto opened = Host::current().catalog->open(folder, error);
  CatalogBatch batch;
  while (opened && opened->read(batch, 0)) {
    for (const CatalogItem& item : batch.items)
      entries.push_back({std::string(item.name), item.kind});
  }
  return entries;
}

bool isFolderBehindLink(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool hasExtension(int type, std::string_view path) {
  const std::string_view extension = pathExtension(path);
  if (type == 0) return extension == "app";
  if (type == 1) return extension == "wdgt";
  return std::find(std::begin(kPluginExtensions), std::end(kPluginExtensions), extension) !=
         std::end(kPluginExtensions);
}

// Only applications have to be folders.
bool isListed(int type, const std::string& path, FileKind kind) {
  if (!hasExtension(type, path)) return false;
  return type != 0 || kind == FileKind::directory ||
         (kind == FileKind::symbolicLink && isFolderBehindLink(path));
}

}  // namespace

void AppScanner::search(int type, const std::string& path, const Sink& found) const {
  std::string at = path;
  std::vector<Level> levels;
  levels.push_back({entriesOf(path), 0, path.size()});
  while (!levels.empty() && !cancel_) {
    Level& level = levels.back();
    at.resize(level.pathLength);
    if (level.next == level.entries.size()) {
      levels.pop_back();
      continue;
    }
    Entry& entry = level.entries[level.next++];
    at += '/' + entry.name;
    if (entry.kind == FileKind::unknown) {
      entry.kind = Host::current().catalog->information(at).kind;
    }
    if (isListed(type, at, entry.kind)) {
      AppItem item = RelatedAppFilesScanner::constructItem(at, 1);
      if (type != 0 || !item->isSystemApp) found(std::move(item));
    } else if (entry.kind == FileKind::directory) {
      levels.push_back({entriesOf(at), 0, at.size()});
    }
  }
}

void AppScanner::applicationsInPath(const std::string& path, const Sink& found) const {
  search(0, path, found);
}

void AppScanner::widgetsInPath(const std::string& path, const Sink& found) const {
  search(1, path, found);
}

void AppScanner::pluginsInPath(const std::string& path, const Sink& found) const {
  search(2, path, found);
}

bool AppScanner::isItem(int type, const std::string& path) {
  const CatalogItem facts = Host::current().catalog->information(path);
  return facts.hasInformation && isListed(type, path, facts.kind);
}

std::vector<std::string> appSearchPaths(int type) {
  if (type == 0) return CommUti::applicationPaths();
  return type == 1 ? CommUti::widgetPaths() : CommUti::pluginPaths();
}

}  // namespace brisko

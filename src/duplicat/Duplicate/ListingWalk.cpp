#include "ListingWalk.h"

#include "Host.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace brisko {
namespace {

struct Level {
  std::string path;
  std::vector<std::string> names;
  std::size_t next = 0;
};

bool list(const std::string& path, Level& level, int& error) {
  // The dot makes a link that stands for the folder lead to it.
  const auto folder = Host::current().catalog->open(path + "/.", error);
  if (!folder) return false;
  level.path = path;
  CatalogBatch batch;
  while (folder->read(batch, 0)) {
    for (const CatalogItem& item : batch.items)
      level.names.emplace_back(item.name);
  }
  error = folder->error();
  return error == 0;
}

bool look(const std::string& path, ListedEntry& entry) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return false;
  entry.path = path;
  entry.identity = FileIdentity::of(status);
  entry.size = static_cast<std::uint64_t>(status.st_size);
  return true;
}

}  // namespace

bool ListingWalk::run(const std::string& path, const std::atomic<bool>& stop) const {
  std::vector<Level> levels;
  const auto descend = [&](const std::string& into) {
    Level below;
    int error = 0;
    if (!list(into, below, error)) return unreadable(into, error);
    levels.push_back(std::move(below));
    return true;
  };
  const auto visitIfThere = [&](const std::string& at, bool enters) {
    ListedEntry entry;
    if (!look(at, entry)) return errno == ENOENT || unreadable(at, errno);
    if (enters && entry.identity.kind == FileKind::directory) return descend(at);
    return visit(entry);
  };

  if (!descend(path)) return false;
  while (!levels.empty()) {
    if (stop) return false;
    Level& level = levels.back();
    if (level.next < level.names.size()) {
      const std::string at = level.path + "/" + level.names[level.next++];
      if (!visitIfThere(at, true)) return false;
      continue;
    }
    const std::string ended = std::move(level.path);
    levels.pop_back();
    if (!levels.empty() && !visitIfThere(ended, false)) return false;
  }
  return true;
}

}  // namespace brisko

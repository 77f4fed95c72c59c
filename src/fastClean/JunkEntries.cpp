#include "JunkEntries.h"

#include "FolderSize.h"
#include "Host.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace brisko {
namespace {

// Whether the folder holds an entry of one of these names, itself or one folder down.
bool contains(Catalog::Folder& folder, const std::vector<std::string>& names, int levels) {
  CatalogBatch batch;
  std::vector<std::string> folders;
  while (folder.read(batch, 0)) {
    for (const CatalogItem& item : batch.items) {
      if (matchesAny(names, lowerCase(item.name))) return true;
      const bool mayBeFolder = item.kind == FileKind::directory || item.kind == FileKind::unknown;
      if (levels > 0 && mayBeFolder) folders.emplace_back(item.name);
    }
  }
  // What cannot be read to its end cannot be called clean.
  if (folder.error() != 0) return true;
  int error = 0;
  return std::any_of(folders.begin(), folders.end(), [&](const std::string& name) {
    auto below = folder.open(name, error);
    return below ? contains(*below, names, levels - 1) : error == EACCES;
  });
}

// Why a location gave nothing, when that is worth telling: a missing one is not, nor is a plain
// file.
std::optional<std::string> reasonForSkipping(const std::string& path, int error) {
  if (error == 0 || error == ENOENT) return std::nullopt;
  if (error != ENOTDIR && error != ELOOP) return std::string(std::strerror(error));
  const auto identity = FileIdentity::at(path);
  if (identity && identity->kind == FileKind::symbolicLink) return "It is a symbolic link";
  return std::nullopt;
}

FileIdentity identityOf(const CatalogItem& item) {
  FileIdentity identity;
  identity.device = item.device;
  identity.inode = item.inode;
  identity.kind = item.kind;
  if (item.kind == FileKind::regular) {
    identity.size = item.dataSize;
    identity.modificationSeconds = item.modificationSeconds;
    identity.modificationNanoseconds = item.modificationNanoseconds;
  }
  return identity;
}

}  // namespace

JunkEntries::JunkEntries(const JunkLocation& location, std::vector<SkippedPath>& skipped)
    : location_(location) {
  int error = 0;
  folder_ = Host::current().catalog->open(location.path, error);
  if (!folder_) {
    if (auto reason = reasonForSkipping(location.path, error)) {
      skipped.push_back({location.path, std::move(*reason)});
    }
    return;
  }
  CatalogBatch batch;
  while (folder_->read(batch, 0)) {
    for (CatalogItem& item : batch.items) {
      if (item.kind == FileKind::unknown && !location.kinds.empty()) {
        folder_->information({&item, 1});
      }
      std::string name(item.name);
      if (!location.takes(name, item.kind)) continue;
      JunkEntry& entry = entries_.emplace_back();
      entry.path = location.path + "/" + name;
      entry.name = std::move(name);
    }
  }
  if (folder_->error() != 0) {
    skipped.push_back({location.path, std::strerror(folder_->error())});
  }
}

void JunkEntries::measure(JunkEntry& entry, const std::atomic<bool>& cancel) const {
  CatalogItem item;
  item.name = entry.name;
  folder_->information({&item, 1});
  if (!item.hasInformation) {
    const bool isGone = !FileIdentity::at(entry.path) && errno == ENOENT;
    entry.isLeftOut = isGone;
    entry.problem = isGone ? "" : "It could not be looked at";
    return;
  }
  entry.identity = identityOf(item);
  entry.isLeftOut = item.isMountPoint || keepsMoreThanCache(entry);
  if (item.isMountPoint) entry.problem = "Another file system is mounted there";
  if (entry.isLeftOut) return;
  if (item.kind == FileKind::directory) {
    measureTree(entry, cancel);
  } else {
    entry.bytes = item.dataSize;
  }
  entry.icon = Host::current().workspace->iconNameOfKind(entry.path, item.kind);
}

// As CommUti::sizeOfFileRef, and says how many folders it could not look into.
void JunkEntries::measureTree(JunkEntry& entry, const std::atomic<bool>& cancel) const {
  int error = 0;
  auto folder = folder_->open(entry.name, error);
  if (!folder) {
    entry.problem = std::strerror(error);
    return;
  }
  const FolderSize size = folderSize(*folder, &cancel);
  entry.bytes = size.dataSize;
  if (size.skippedFolders > 0) {
    entry.problem = fmt::format("{} folder{} in it could not be looked into", size.skippedFolders,
                                size.skippedFolders == 1 ? "" : "s");
  }
}

bool JunkEntries::keepsMoreThanCache(const JunkEntry& entry) const {
  const std::vector<std::string>& names = location_.keepIfContains;
  if (names.empty() || entry.identity->kind != FileKind::directory) return false;
  int error = 0;
  auto folder = folder_->open(entry.name, error);
  return !folder || contains(*folder, names, 1);
}

}  // namespace brisko

// What the walk makes of the entries of a folder: candidates, folders to enter, and bundles.

#include "CandidateWalkParts.h"
#include "Host.h"
#include "ListingWalk.h"
#include "SystemLog.h"

#include <algorithm>
#include <span>
#include <utility>

#include <sys/stat.h>

namespace brisko {

bool CandidateWalk::leavesOut(std::string_view name) const {
  return !owner_.m_bSearchHiddenFile && name.starts_with('.');
}

void CandidateWalk::examine(Worker& worker, Folder& folder, const Handle& handle, Segment& segment,
                            CatalogBatch& batch, ReaderCrew::Member& member) {
  auto item = batch.items.begin();
  const auto end = batch.items.end();
  while (item != end) {
    if (owner_.m_bStopSearch) return;
    // What is known to be no file needs no look-up.
    auto last = item;
    const auto needsLook = [](const CatalogItem& entry) {
      return entry.kind == FileKind::regular || entry.kind == FileKind::unknown;
    };
    constexpr std::ptrdiff_t kAtATime = 64;
    while (last != end && last - item < kAtATime && needsLook(*last))
      ++last;
    if (last != item) {
      handle->information(std::span(item, last));
      member.unitDone();
    } else {
      ++last;
    }
    for (; item != last; ++item) {
      if (leavesOut(item->name)) continue;
      if (item->kind == FileKind::directory) {
        addFolder(worker, folder, segment, item->name, handle, false);
      } else if (item->kind == FileKind::regular) {
        addFile(worker, folder, segment, *item);
      }
    }
  }
}

void CandidateWalk::examineTopLevel(Worker& worker, Folder& root, const Handle& handle,
                                    Segment& segment, CatalogBatch& batch) {
  if (isHidden_ || isInBundle_) return;
  handle->information(batch.items);
  for (const CatalogItem& item : batch.items) {
    if (owner_.m_bStopSearch) return;
    const std::string path = CandidateStore::path(*root.facts);
    const std::string full = (path == "/" ? "" : path) + "/" + std::string(item.name);
    struct stat target;
    if (!item.hasInformation || stat(full.c_str(), &target) != 0) {
      SystemLog::line("directory not exsts:{}", full);
      continue;
    }
    if (leavesOut(item.name)) continue;
    if (!S_ISDIR(target.st_mode)) {
      addFile(worker, root, segment, item);
    } else if (!isSystemRoot_ || owner_.m_bSearchSystemDirectory ||
               !getFileList::IsSystemDirectory(full)) {
      addFolder(worker, root, segment, item.name, handle, item.kind == FileKind::symbolicLink);
    }
  }
}

void CandidateWalk::addFile(Worker& worker, Folder& folder, Segment& segment,
                            const CatalogItem& item) {
  if (!item.hasInformation || item.dataSize <= limit_) return;
  if (getFileList::IsAppDirectory(item.name)) {
    // Named like a bundle: no candidate, and no bundle that could be listed either.
    Folder& named = newFolder(worker, folder, segment, item.name);
    named.isBundle = true;
    named.qualifies = true;
    return;
  }
  Candidate made;
  made.name = worker.arena.keep(item.name);
  made.folder = folderOnDevice(worker, *folder.facts, item.device);
  made.fileSize = item.dataSize;
  made.inode = item.inode;
  made.modificationSeconds = item.modificationSeconds;
  made.modificationNanoseconds = static_cast<std::uint32_t>(item.modificationNanoseconds);
  made.isLink = item.kind == FileKind::symbolicLink;
  Candidate* candidate = worker.arena.make(made);
  ++worker.candidates;
  auto& items = segment.items;
  const bool continues = !items.empty() && items.back().folder == nullptr &&
                         items.back().first + items.back().count == candidate;
  if (continues) {
    ++items.back().count;
  } else {
    items.push_back({candidate, 1, nullptr});
  }
}

// A single file can be a mount of another device: it gets a folder record of its own.
const CandidateFolder* CandidateWalk::folderOnDevice(Worker& worker, const CandidateFolder& folder,
                                                     std::uint64_t device) {
  if (folder.device == device) return &folder;
  CandidateFolder* other = worker.arena.make(folder);
  other->device = device;
  return other;
}

CandidateWalk::Folder& CandidateWalk::newFolder(Worker& worker, const Folder& parent,
                                                Segment& segment, std::string_view name) {
  Folder& made = worker.folders.emplace_back();
  made.facts = worker.arena.makeFolder(parent.facts, name, 0);
  segment.items.push_back({nullptr, 0, &made});
  return made;
}

void CandidateWalk::addFolder(Worker& worker, Folder& folder, Segment& segment,
                              std::string_view name, const Handle& handle, bool isLink) {
  Folder& made = newFolder(worker, folder, segment, name);
  made.isBundle = getFileList::IsAppDirectory(name);
  Task task;
  task.folder = &made;
  task.parent = handle;
  task.isThroughLink = isLink;
  worker.found.push_back(std::move(task));
}

bool CandidateWalk::bundleQualifies(const std::string& path, Counts counts) {
  bool found = false;
  bool isReadable = true;
  ListingWalk walk;
  walk.visit = [&](const ListedEntry& entry) {
    const std::string_view below = std::string_view(entry.path).substr(path.size());
    if (!owner_.m_bSearchHiddenFile && getFileList::IsHiddenFile(below)) return true;
    const bool isTop =
        counts == Counts::allButTopFolders && below.find('/', 1) == std::string_view::npos;
    const FileKind kind = entry.identity.kind;
    if (kind == (isTop ? FileKind::directory : FileKind::symbolicLink)) return true;
    found = entry.size > limit_;
    return !found;
  };
  walk.unreadable = [&](const std::string& at, int error) {
    if (at == path) isReadable = false;
    skip(at, error);
    return true;
  };
  walk.run(path, owner_.m_bStopSearch);
  if (found || !isReadable || counts != Counts::itself) return found;
  const auto itself = Host::current().catalog->information(path);
  struct stat status;
  return itself.hasInformation && lstat(path.c_str(), &status) == 0 &&
         static_cast<std::uint64_t>(status.st_size) > limit_;
}

}  // namespace brisko

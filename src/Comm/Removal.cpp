#include "Removal.h"

#include "MountTable.h"
#include "PathResolution.h"
#include "ProtectedPaths.h"
#include "RemovalWalk.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brisko {
namespace {

RemovalReport refused(RemovalOutcome outcome, std::string reason) {
  RemovalReport report;
  report.outcome = outcome;
  report.reason = std::move(reason);
  return report;
}

RemovalReport changed() {
  return refused(RemovalOutcome::changed, "It is not the item that was shown any more.");
}

RemovalReport reportOf(const ParentFolder& parent) {
  if (parent.throughLink) return refused(RemovalOutcome::throughLink, parent.reason);
  if (parent.error == ENOENT || parent.error == ENOTDIR) {
    return refused(RemovalOutcome::missing, "It is not there.");
  }
  if (parent.error == EACCES || parent.error == EPERM) {
    return refused(RemovalOutcome::notPermitted, parent.reason);
  }
  return refused(RemovalOutcome::failed, parent.reason);
}

}  // namespace

bool isShownItem(const struct statx& facts, const FileIdentity& shown) {
  if (makedev(facts.stx_dev_major, facts.stx_dev_minor) != shown.device ||
      facts.stx_ino != shown.inode || fileKind(facts.stx_mode) != shown.kind) {
    return false;
  }
  return shown.kind != FileKind::regular ||
         (facts.stx_size == shown.size && facts.stx_mtime.tv_sec == shown.modificationSeconds &&
          facts.stx_mtime.tv_nsec == shown.modificationNanoseconds);
}

RemovalReport RemovalEngine::remove(const std::string& path,
                                    const std::optional<FileIdentity>& shown,
                                    const std::atomic<bool>* cancel) {
  RemovalReport report = removeUnlogged(path, shown, cancel);
  if (!report.removed()) SystemLog::line("Remove failed: {}: {}", path, report.reason);
  return report;
}

RemovalReport RemovalEngine::removeUnlogged(const std::string& path,
                                            const std::optional<FileIdentity>& shown,
                                            const std::atomic<bool>* cancel) {
  if (cancel != nullptr && cancel->load()) {
    return refused(RemovalOutcome::cancelled, "You stopped.");
  }
  const ParentFolder parent = openParent(*calls_, path);
  if (auto no = refusalOf(path, parent)) return *std::move(no);
  if (parent.error != 0) return reportOf(parent);

  const int folder = parent.folder.get();
  const char* name = parent.name.c_str();
  struct statx facts;
  if (factsOf(*calls_, folder, name, facts) != 0) return reportOfError(parent.name, errno);
  if (shown && !isShownItem(facts, *shown)) return changed();
  RemovalWalk walk(*calls_, cancel);
  if (!S_ISDIR(facts.stx_mode)) return walk.removeItem(folder, parent.name, facts);
  return removeFolder(walk, parent, shown);
}

RemovalReport RemovalEngine::removeFolder(RemovalWalk& walk, const ParentFolder& parent,
                                          const std::optional<FileIdentity>& shown) {
  struct statx facts;
  FileDescriptor opened = walk.openFolder(parent.folder.get(), parent.name, facts);
  if (!opened) {
    if (errno == ENOTDIR || errno == ELOOP) return changed();
    return reportOfError(parent.name, errno);
  }
  // From here on the descriptor says which folder it is, and no name can exchange it.
  if (shown && !isShownItem(facts, *shown)) {
    walk.restoreMode(opened, facts);
    return changed();
  }
  return walk.removeFolder(parent.folder.get(), parent.name, std::move(opened), facts);
}

std::optional<RemovalReport> RemovalEngine::refusal(const std::string& path) {
  return refusalOf(path, openParent(*calls_, path));
}

std::optional<RemovalReport> RemovalEngine::refusal(const ParentFolder& parent) {
  return refusalOf(parent.itemPath(), parent);
}

std::optional<RemovalReport> RemovalEngine::refusalOf(const std::string& path,
                                                      const ParentFolder& parent) {
  const auto current = paths_ == nullptr ? ProtectedPaths::current() : nullptr;
  const ProtectedPaths& rules = paths_ != nullptr ? *paths_ : *current;
  if (auto why = rules.reasonFor(path)) return refused(RemovalOutcome::protectedPath, *why);
  if (parent.throughLink) return reportOf(parent);
  if (parent.error == EINVAL) return refused(RemovalOutcome::failed, parent.reason);
  if (parent.error != 0) return std::nullopt;
  if (auto why = rules.reasonFor(parent.itemPath())) {
    return refused(RemovalOutcome::protectedPath, *why);
  }
  return mountRefusal(parent);
}

std::optional<RemovalReport> RemovalEngine::mountRefusal(const ParentFolder& parent) {
  struct statx facts;
  if (factsOf(*calls_, parent.folder.get(), parent.name.c_str(), facts) != 0) return std::nullopt;
  if (!S_ISDIR(facts.stx_mode)) {
    if ((facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0) return std::nullopt;
    return refused(RemovalOutcome::mountPoint, "Another file is mounted on it.");
  }
  const MountTable mounts = MountTable::read();
  if (!mounts.isKnown()) {
    return refused(RemovalOutcome::mountPoint,
                   "It cannot be told whether something is mounted in it.");
  }
  const std::string path = parent.itemPath();
  const std::string point = mounts.firstWithin(path);
  if (point.empty()) return std::nullopt;
  if (point == path) {
    return refused(RemovalOutcome::mountPoint, "A file system is mounted on it.");
  }
  return refused(
      RemovalOutcome::mountPoint,
      fmt::format("A file system is mounted in it, at \"{}\".", escapedForDisplay(point)));
}

}  // namespace brisko

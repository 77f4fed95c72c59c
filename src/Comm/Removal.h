#pragma once

#include "FileIdentity.h"
#include "RemovalCalls.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace brisko {

class ProtectedPaths;
class RemovalWalk;
struct ParentFolder;

enum class RemovalOutcome : int {
  removed,
  missing,        ///< nothing is at the path
  changed,        ///< not the item that was shown any more
  protectedPath,  ///< the rules refuse it, whoever asks
  mountPoint,     ///< it is one, or something is mounted in it
  notPermitted,   ///< the system refused
  cancelled,      ///< the user stopped, or refused the administrator's prompt
  failed,         ///< any other error; part of a tree may be gone
  throughLink,    ///< the path leads through a link that may not be followed
};

struct RemovalReport {
  RemovalOutcome outcome = RemovalOutcome::failed;
  std::string reason;  ///< one line for people; empty when removed
  std::uint64_t freedBytes =
      0;  ///< what the file system gave back: blocks of items whose last name went
  std::uint64_t removedItems = 0;  ///< files, links and folders, also of a tree that went in part
  bool removed() const { return outcome == RemovalOutcome::removed; }
  /// Nothing is at the path any more, whoever took it away.
  bool gone() const { return removed() || outcome == RemovalOutcome::missing; }
};

/// The one place that unlinks (the eraser apart).
///
/// It never follows a link, never leaves the tree it was given, never crosses a mount and cannot be
/// redirected by what others do to the tree meanwhile: every step is relative to a descriptor that
/// it opened itself. Depth is bounded by memory only, and takes 35 descriptors at most.
///
/// Of a tree it removes what it can, as `rm -r` does: an entry that must stay keeps the folders
/// above it, the rest goes, and the report tells the first reason. What freed space before that is
/// counted. Folders of the user's own that their mode protects from the user are opened up, and get
/// their mode back when they stay. Nothing outside the item is changed but the name in its folder.
///
/// Every failure is logged as "Remove failed: %@: %@" with path and reason. Any thread.
class RemovalEngine {
 public:
  /// With the running host's protected paths and the kernel's own calls.
  RemovalEngine() = default;
  /// With others; both outlive the engine.
  explicit RemovalEngine(const RemovalCalls& calls, const ProtectedPaths* paths = nullptr)
      : calls_(&calls), paths_(paths) {}

  /// Removes the file or tree at the absolute path. With `shown`, only while the path still names
  /// that item. A set `cancel` ends it between two entries.
  RemovalReport remove(const std::string& path, const std::optional<FileIdentity>& shown,
                       const std::atomic<bool>* cancel = nullptr);

  /// What `remove` would refuse without trying: protected paths, mounts, links on the way. Nothing
  /// when it may go, and nothing when it is not there. Not logged.
  std::optional<RemovalReport> refusal(const std::string& path);

  /// The same for an item whose folder is open already; used by whoever removes it with other
  /// means.
  std::optional<RemovalReport> refusal(const ParentFolder& parent);

 private:
  RemovalReport removeUnlogged(const std::string& path, const std::optional<FileIdentity>& shown,
                               const std::atomic<bool>* cancel);
  RemovalReport removeFolder(RemovalWalk& walk, const ParentFolder& parent,
                             const std::optional<FileIdentity>& shown);
  std::optional<RemovalReport> mountRefusal(const ParentFolder& parent);
  std::optional<RemovalReport> refusalOf(const std::string& path, const ParentFolder& parent);

  const RemovalCalls* calls_ = &RemovalCalls::system();
  const ProtectedPaths* paths_ = nullptr;
};

/// Whether `facts` are those of the item that was shown.
bool isShownItem(const struct statx& facts, const FileIdentity& shown);

}  // namespace brisko

#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "FileIdentity.h"

namespace brisko {

enum class RemovalOutcome : int {
  removed,
  missing,         ///< nothing is at the path
  changed,         ///< not the item that was shown any more
  protectedPath,   ///< the rules refuse it, whoever asks
  mountPoint,      ///< it is one, or something is mounted in it
  notPermitted,    ///< the system refused
  cancelled,       ///< the user stopped, or refused the administrator's prompt
  failed,          ///< any other error; part of a tree may be gone
};

struct RemovalReport {
  RemovalOutcome outcome = RemovalOutcome::failed;
  std::string reason;             ///< one line for people; empty when removed
  std::uint64_t freedBytes = 0;   ///< what the file system gave back: blocks of items whose last name went
  std::uint64_t removedItems = 0; ///< files, links and folders
  bool removed() const { return outcome == RemovalOutcome::removed; }
};

/// The one place that unlinks (the eraser apart).
///
/// It never follows a link, never leaves the tree it was given, never crosses a mount and cannot be
/// redirected by what others do to the tree meanwhile: every step is relative to a descriptor that it
/// opened itself. Depth is bounded by memory only.
class RemovalEngine {
 public:
  /// Removes the file or tree at the absolute path. With `shown`, only while the path still names
  /// that item. A set `cancel` ends it between two entries.
  RemovalReport remove(const std::string& path, const std::optional<FileIdentity>& shown,
                       const std::atomic<bool>* cancel = nullptr);

  /// What `remove` would refuse without trying: protected paths and mounts. Nothing when it may go.
  std::optional<RemovalReport> refusal(const std::string& path);
};

}  // namespace brisko

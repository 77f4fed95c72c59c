#pragma once

#include "FileDescriptor.h"
#include "Removal.h"
#include "RemovalCalls.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// Empties one folder and removes it, by descriptors only.
///
/// The folders from the top down to the one at work form a stack. Only the last few are kept open,
/// so that depth costs no descriptors: a folder whose turn comes again is opened anew through the
/// ".." of its child and must then be the very inode that it was before, or the walk ends. Every
/// opening refuses links and mounts, so no swap of names leads out of the tree.
///
/// What cannot be removed stays, is remembered (the first with its reason), and the rest goes on,
/// as `rm -r` does it.
class RemovalWalk {
 public:
  RemovalWalk(const RemovalCalls& calls, const std::atomic<bool>* cancel)
      : calls_(calls), cancel_(cancel) {}

  /// Opens the folder `name` in `parent`, for `removeFolder`. Unset, with errno, on failure.
  FileDescriptor openFolder(int parent, const std::string& name, struct statx& facts);

  /// Undoes what `openFolder` had to do to open it.
  void restoreMode(const FileDescriptor& folder, const struct statx& facts);

  /// Removes `name` in the folder `parent`, which `openFolder` gave with these `facts`.
  RemovalReport removeFolder(int parent, const std::string& name, FileDescriptor folder,
                             const struct statx& facts);

  /// Removes a single item that is no folder.
  RemovalReport removeItem(int parent, const std::string& name, const struct statx& facts);

 private:
  struct Level {
    std::string name;
    FileDescriptor folder;  // closed while it lies too deep below the top of the stack
    std::uint64_t inode = 0;
    std::uint64_t bytes = 0;    // allocated to the folder itself
    std::vector<char> waiting;  // names of folders found in it, each with its NUL
    bool readToEnd = false;
    bool keepsSomething = false;
    int readings = 1;
    bool modeChanged = false;
    mode_t mode = 0;  // as it was found
    std::uint32_t owner = 0;
  };

  void push(std::string name, FileDescriptor folder, const struct statx& facts);
  void run();
  void readSome();
  static std::string takeWaiting(Level& level);
  void removeEntry(const char* name, bool wasFolder);
  void unlinkEntry(const char* name, const struct statx& facts, bool wasFolder);
  void enter(const std::string& name);
  FileDescriptor openUnreadable(int parent, const char* name, struct statx& facts);
  void leave();
  bool removeEmptied();
  bool reopenParent();
  bool makeWritable(Level& level);
  void abandon();

  /// Notes that `name` in the folder at work (or that folder itself, when empty) stays.
  void keep(std::string_view name, RemovalOutcome outcome, const std::string& why);
  void keep(std::string_view name, int error);
  /// Once the user has stopped it stays so, even if the flag is taken back.
  bool isCancelled() {
    if (cancel_ != nullptr && cancel_->load(std::memory_order_relaxed)) cancelled_ = true;
    return cancelled_;
  }

  const RemovalCalls& calls_;
  const std::atomic<bool>* cancel_;
  int parent_ = -1;
  std::uint32_t deviceMajor_ = 0;
  std::uint32_t deviceMinor_ = 0;
  std::vector<Level> stack_;
  std::size_t firstOpen_ = 0;  // the levels before it are closed
  std::vector<char> buffer_;
  RemovalReport report_;
  bool somethingStays_ = false;
  bool cancelled_ = false;
  bool madeReadable_ = false;  // what openFolder opened last had to be made so
};

/// The report for a system call that failed with `error` on `path`.
RemovalReport reportOfError(const std::string& path, int error);

}  // namespace brisko

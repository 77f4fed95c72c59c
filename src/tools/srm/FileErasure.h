#pragma once

#include "EraserRun.h"
#include "FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

namespace brisko::srm {

/// The erasing of one regular file, by the folder that it is in and its name there.
///
/// Everything is done through one descriptor of the file; its name is used to open it, to take it
/// away at the end, and is held against the descriptor's inode before and after. Until its content
/// is overwritten the file keeps name and size. A failure or a stop leaves it there, with what was
/// overwritten until then, and with the mode that it had.
class FileErasure {
 public:
  /// `folder` outlives it; `path` is for people and for the look at the medium.
  FileErasure(EraserRun& run, int folder, std::string name, std::string path);
  ~FileErasure();
  FileErasure(const FileErasure&) = delete;
  FileErasure& operator=(const FileErasure&) = delete;

  /// Erases the file that `facts` were told of. Why it stays; nothing when it is gone.
  std::optional<std::string> erase(const struct statx& facts);

 private:
  using Reason = std::optional<std::string>;

  Reason refusal(const struct statx& facts) const;
  Reason open(const struct statx& facts);
  bool liftWriteProtection(const struct statx& facts);
  bool isWrittenByOthers() const;
  Reason overwrite();
  Reason overwriteFrom(std::uint64_t begin, std::uint64_t end);
  Reason stoppedAt(std::size_t pass, std::size_t passes) const;
  Reason takeAway();
  bool isStillNamed(const std::string& name) const;
  bool rename(std::string& meaningless) const;

  EraserRun& run_;
  int folder_;
  std::string name_;
  std::string path_;
  FileDescriptor file_;
  struct stat status_ {};
  std::uint64_t block_ = 4096;
  std::optional<mode_t> modeBefore_;
  FileDescriptor lifted_;  ///< with `modeBefore_`: what had that mode
};

}  // namespace brisko::srm

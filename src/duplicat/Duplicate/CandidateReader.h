#pragma once

#include "CandidateStore.h"
#include "FileDescriptor.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace brisko {

/// Opens candidates and reads pieces of them: one per thread.
///
/// Only what was listed is read: a regular file, opened without following a link and without
/// waiting, whose device, inode, size and modification time are those of the listing (of one read
/// whole at once: whose size is). Anything else fails. Access times are left alone where the system
/// allows it.
class CandidateReader {
 public:
  explicit CandidateReader(std::size_t bufferSize);

  /// False, with errno's value in `error()` (0 when the file is not the listed one any more).
  /// `manyInFolder` says that the next files lie in the same folder, which is then kept open.
  bool open(const Candidate& candidate, bool manyInFolder);

  /// The whole content of a file that is shorter than the buffer, which costs one look-up less:
  /// instead of asking for its facts again, it is only taken when it ends where it should. Fails
  /// like `open`, and leaves nothing open.
  std::span<const unsigned char> readWhole(const Candidate& candidate, bool manyInFolder);

  /// The `length` bytes at `offset` of the open file, at most a buffer full; empty when fewer could
  /// be read.
  std::span<const unsigned char> read(std::uint64_t offset, std::size_t length);

  /// Continues `running` over the bytes from `from` to `to`. False when they could not all be read
  /// or `stop` was set.
  bool digest(std::uint64_t from, std::uint64_t to, const std::atomic<bool>& stop,
              std::uint64_t& running);

  void close() { file_.reset(); }
  int error() const { return error_; }

 private:
  bool openUnchecked(const Candidate& candidate, bool manyInFolder);
  std::size_t fill(std::uint64_t offset, std::size_t length, std::size_t enough);
  int openAt(int folder, const char* name);
  int openByPath(const Candidate& candidate);
  bool enterFolder(const CandidateFolder& folder);

  std::size_t bufferSize_;
  std::unique_ptr<unsigned char[]> buffer_;
  FileDescriptor file_;
  FileDescriptor folder_;
  const CandidateFolder* openFolder_ = nullptr;
  bool keepsAccessTimes_ = true;
  int error_ = 0;
};

}  // namespace brisko

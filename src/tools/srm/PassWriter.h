#pragma once

#include "FileExtents.h"
#include "PassScheme.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace brisko::srm {

/// Overwrites parts of one open file, pass by pass.
///
/// A large file is written around the page cache where the file system allows it: at the medium's
/// speed, and without pushing out what others keep there. Else through the cache, whose writing out
/// is begun at once, so that the flush at the end has little left to wait for.
class PassWriter {
 public:
  /// `isStopped` is asked between two writes of at most 6 MiB.
  PassWriter(int file, std::uint64_t size, std::function<bool()> isStopped);

  /// Writes the pass over the ranges and waits until the medium has it. 0, or errno's value:
  /// ECANCELED when stopped, ENODATA when there are no random numbers.
  int write(const Pass& pass, const std::vector<Range>& ranges);

 private:
  struct Free {
    void operator()(std::byte* bytes) const;
  };
  void setDirect(bool direct);
  bool prepare(const Pass& pass);
  int writeRange(const Range& range);
  int writeAll(std::span<const std::byte> bytes, std::uint64_t at);

  int file_;
  std::function<bool()> isStopped_;
  bool isDirect_ = false;
  std::size_t chunk_;
  std::unique_ptr<std::byte, Free> buffer_;
  std::unique_ptr<class RandomStream> random_;  ///< of the pass at work, if that is random

 public:
  ~PassWriter();
};

}  // namespace brisko::srm

#pragma once

#include <cstdint>
#include <vector>

namespace brisko::srm {

/// Bytes of a file from `begin` up to `end`, both multiples of its block size.
struct Range {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::uint64_t size() const { return end - begin; }
};

/// Where a file has blocks on its medium.
struct FileExtents {
  std::vector<Range> allocated;  ///< in order, adjacent ones joined, unwritten reserves included
  bool isShared = false;         ///< some block belongs to another file or a snapshot as well
  bool isEncoded = false;        ///< some are compressed, encrypted or packed: not written in place

  /// Looks at the first `end` bytes of an open file. A file system that tells nothing of holes has
  /// none.
  static FileExtents of(int file, std::uint64_t end, std::uint64_t block);

  /// Bytes of [0, end) that have no blocks.
  std::uint64_t holes(std::uint64_t end) const;
};

/// What is to be overwritten of the first `end` bytes. Holes are filled as long as they are few:
/// at most 1 GiB and half of the free space. A larger hole holds nothing and is left out, so that a
/// sparse image of terabytes neither fills the disk nor takes for ever.
std::vector<Range> rangesToOverwrite(int file, const FileExtents& extents, std::uint64_t end);

}  // namespace brisko::srm

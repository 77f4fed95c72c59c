#include "FileExtents.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace brisko::srm {
namespace {

constexpr std::uint64_t kMostFilled = std::uint64_t{1} << 30;
constexpr std::size_t kExtentsAtOnce = 256;

std::uint64_t roundedDown(std::uint64_t value, std::uint64_t block) {
  return value / block * block;
}

std::uint64_t roundedUp(std::uint64_t value, std::uint64_t block) {
  return roundedDown(value + block - 1, block);
}

class Collector {
 public:
  Collector(FileExtents& extents, std::uint64_t end, std::uint64_t block)
      : extents_(extents), end_(end), block_(block) {}

  void add(std::uint64_t begin, std::uint64_t end) {
    begin = roundedDown(begin, block_);
    end = std::min(roundedUp(end, block_), end_);
    if (begin >= end) return;
    auto& ranges = extents_.allocated;
    if (!ranges.empty() && ranges.back().end >= begin) {
      ranges.back().end = std::max(ranges.back().end, end);
    } else {
      ranges.push_back({begin, end});
    }
  }

 private:
  FileExtents& extents_;
  std::uint64_t end_;
  std::uint64_t block_;
};

// The file system's own list, which alone knows of reserved blocks that nothing was written to.
bool askForMap(int file, std::uint64_t end, FileExtents& extents, Collector& collector) {
  alignas(struct fiemap) static char
      buffer[sizeof(struct fiemap) + kExtentsAtOnce * sizeof(struct fiemap_extent)];
  auto* map = reinterpret_cast<struct fiemap*>(buffer);
  for (std::uint64_t at = 0; at < end;) {
    std::memset(buffer, 0, sizeof buffer);
    map->fm_start = at;
    map->fm_length = end - at;
    map->fm_flags = FIEMAP_FLAG_SYNC;
    map->fm_extent_count = kExtentsAtOnce;
    if (::ioctl(file, FS_IOC_FIEMAP, map) != 0) return false;
    if (map->fm_mapped_extents == 0) return true;
    for (unsigned i = 0; i < map->fm_mapped_extents; ++i) {
      const struct fiemap_extent& extent = map->fm_extents[i];
      collector.add(extent.fe_logical, extent.fe_logical + extent.fe_length);
      at = extent.fe_logical + extent.fe_length;
      extents.isShared = extents.isShared || (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
      extents.isEncoded = extents.isEncoded || (extent.fe_flags & FIEMAP_EXTENT_ENCODED) != 0;
      if ((extent.fe_flags & FIEMAP_EXTENT_LAST) != 0) return true;
    }
  }
  return true;
}

void seekData(int file, std::uint64_t end, Collector& collector) {
  for (off_t at = 0; static_cast<std::uint64_t>(at) < end;) {
    const off_t data = ::lseek(file, at, SEEK_DATA);
    if (data < 0 && errno == ENXIO) return;
    const off_t hole = data < 0 ? -1 : ::lseek(file, data, SEEK_HOLE);
    if (hole <= data || hole < 0) {
      collector.add(static_cast<std::uint64_t>(at), end);
      return;
    }
    collector.add(static_cast<std::uint64_t>(data), static_cast<std::uint64_t>(hole));
    at = hole;
  }
}

}  // namespace

FileExtents FileExtents::of(int file, std::uint64_t end, std::uint64_t block) {
  FileExtents extents;
  Collector collector(extents, end, block);
  if (!askForMap(file, end, extents, collector)) {
    extents.allocated.clear();
    seekData(file, end, collector);
  }
  return extents;
}

std::uint64_t FileExtents::holes(std::uint64_t end) const {
  std::uint64_t held = 0;
  for (const Range& range : allocated)
    held += range.size();
  return end - std::min(end, held);
}

std::vector<Range> rangesToOverwrite(int file, const FileExtents& extents, std::uint64_t end) {
  const std::uint64_t holes = extents.holes(end);
  struct statvfs space;
  const std::uint64_t free =
      ::fstatvfs(file, &space) == 0 ? std::uint64_t{space.f_bavail} * space.f_frsize : 0;
  const bool isFilled = holes <= std::min(kMostFilled, free / 2);
  if (!isFilled) return extents.allocated;
  return end == 0 ? std::vector<Range>() : std::vector<Range>{{0, end}};
}

}  // namespace brisko::srm

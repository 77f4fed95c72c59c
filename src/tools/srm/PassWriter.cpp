#include "PassWriter.h"

#include "RandomStream.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brisko::srm {
namespace {

constexpr std::size_t kAlignment = 4096;
// Multiples of three, so that a pattern of three bytes goes on from write to write. The smaller one
// stays in the processor's cache between being filled and being written.
constexpr std::size_t kCachedChunk = std::size_t{3} << 18;
constexpr std::size_t kDirectChunk = std::size_t{6} << 20;
constexpr std::uint64_t kWorthDirect = std::uint64_t{4} << 20;

}  // namespace

void PassWriter::Free::operator()(std::byte* bytes) const {
  std::free(bytes);
}

PassWriter::PassWriter(int file, std::uint64_t size, std::function<bool()> isStopped)
    : file_(file), isStopped_(std::move(isStopped)) {
  setDirect(size >= kWorthDirect);
  chunk_ = isDirect_ ? kDirectChunk : kCachedChunk;
  // No more than the file needs, but always whole patterns and blocks.
  const std::uint64_t needed = (size / (3 * kAlignment) + 1) * 3 * kAlignment;
  chunk_ = static_cast<std::size_t>(std::min<std::uint64_t>(chunk_, needed));
  buffer_.reset(static_cast<std::byte*>(std::aligned_alloc(kAlignment, chunk_)));
  if (buffer_) std::fill_n(buffer_.get(), chunk_, std::byte{0});
}

PassWriter::~PassWriter() = default;

void PassWriter::setDirect(bool direct) {
  const int flags = ::fcntl(file_, F_GETFL);
  isDirect_ = ::fcntl(file_, F_SETFL, direct ? flags | O_DIRECT : flags & ~O_DIRECT) == 0 && direct;
}

bool PassWriter::prepare(const Pass& pass) {
  random_.reset();
  if (pass.isRandom) {
    random_ = std::make_unique<RandomStream>();
    return random_->isReady();
  }
  for (std::size_t i = 0; i < chunk_; ++i)
    buffer_.get()[i] = std::byte{pass.pattern[i % pass.pattern.size()]};
  return true;
}

int PassWriter::write(const Pass& pass, const std::vector<Range>& ranges) {
  if (!buffer_) return ENOMEM;
  if (!prepare(pass)) return ENODATA;
  for (const Range& range : ranges) {
    if (const int error = writeRange(range)) return error;
  }
  while (::fdatasync(file_) != 0) {
    if (errno != EINTR) return errno;
    if (isStopped_()) return ECANCELED;
  }
  return 0;
}

int PassWriter::writeRange(const Range& range) {
  for (std::uint64_t at = range.begin; at < range.end;) {
    if (isStopped_()) return ECANCELED;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(chunk_, range.end - at));
    const std::span bytes(buffer_.get(), size);
    if (random_ && !random_->fill(bytes)) return ENODATA;
    if (const int error = writeAll(bytes, at)) return error;
    if (!isDirect_) {
      ::sync_file_range(file_, static_cast<off_t>(at), static_cast<off_t>(size),
                        SYNC_FILE_RANGE_WRITE);
    }
    at += size;
  }
  return 0;
}

int PassWriter::writeAll(std::span<const std::byte> bytes, std::uint64_t at) {
  while (!bytes.empty()) {
    const ssize_t written = ::pwrite(file_, bytes.data(), bytes.size(), static_cast<off_t>(at));
    if (written < 0 && errno == EINVAL && isDirect_) {
      // Not aligned as this file system wants it, or cut short in the middle of a block.
      setDirect(false);
    } else if (written < 0 && errno != EINTR) {
      return errno;
    } else if (written == 0) {
      return EIO;
    } else if (written > 0) {
      at += static_cast<std::uint64_t>(written);
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    } else if (isStopped_()) {
      return ECANCELED;
    }
  }
  return 0;
}

}  // namespace brisko::srm

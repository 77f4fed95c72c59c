#include "CandidateReader.h"

#include "crc.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

#ifdef O_NOATIME
constexpr int kKeepAccessTime = O_NOATIME;
#else
constexpr int kKeepAccessTime = 0;
#endif
constexpr int kFileFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
#ifdef O_PATH
constexpr int kFolderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// Opens the folder at a path of any length, in steps that the system takes.
FileDescriptor openFolderAt(const std::string& path) {
  FileDescriptor folder;
  std::size_t at = 0;
  while (at < path.size()) {
    std::size_t end = path.size();
    if (end - at >= PATH_MAX) end = path.rfind('/', at + PATH_MAX - 2);
    if (end == std::string::npos || end <= at) return {};
    const std::string piece = path.substr(at, end - at);
    FileDescriptor next(openat(folder ? folder.get() : AT_FDCWD, piece.c_str(), kFolderFlags));
    if (!next) return {};
    folder = std::move(next);
    at = end + 1;
  }
  return folder;
}

bool isTheListed(const Candidate& candidate, const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_dev == candidate.folder->device &&
         status.st_ino == candidate.inode &&
         static_cast<std::uint64_t>(status.st_size) == candidate.fileSize &&
         status.st_mtim.tv_sec == candidate.modificationSeconds &&
         status.st_mtim.tv_nsec == static_cast<long>(candidate.modificationNanoseconds);
}

}  // namespace

CandidateReader::CandidateReader(std::size_t bufferSize)
    : bufferSize_(bufferSize), buffer_(new unsigned char[bufferSize]) {}

int CandidateReader::openAt(int folder, const char* name) {
  if (keepsAccessTimes_) {
    const int file = openat(folder, name, kFileFlags | kKeepAccessTime);
    if (file >= 0 || errno != EPERM) return file;
    keepsAccessTimes_ = false;  // granted to the owner only
  }
  return openat(folder, name, kFileFlags);
}

bool CandidateReader::enterFolder(const CandidateFolder& folder) {
  if (openFolder_ == &folder) return true;
  folder_ = openFolderAt(CandidateStore::path(folder));
  openFolder_ = folder_ ? &folder : nullptr;
  return openFolder_ != nullptr;
}

int CandidateReader::openByPath(const Candidate& candidate) {
  const std::string path = CandidateStore::path(candidate);
  if (path.size() < PATH_MAX) return openAt(AT_FDCWD, path.c_str());
  return enterFolder(*candidate.folder) ? openAt(folder_.get(), candidate.name) : -1;
}

bool CandidateReader::openUnchecked(const Candidate& candidate, bool manyInFolder) {
  error_ = candidate.isLink ? ELOOP : 0;
  if (candidate.isLink) return false;
  const bool inFolder =
      (manyInFolder || openFolder_ == candidate.folder) && enterFolder(*candidate.folder);
  file_.reset(inFolder ? openAt(folder_.get(), candidate.name) : openByPath(candidate));
  if (!file_) error_ = errno;
  return static_cast<bool>(file_);
}

bool CandidateReader::open(const Candidate& candidate, bool manyInFolder) {
  if (!openUnchecked(candidate, manyInFolder)) return false;
  struct stat status;
  if (fstat(file_.get(), &status) == 0 && isTheListed(candidate, status)) return true;
  file_.reset();
  return false;
}

// How many bytes at `offset` there are, once at least `enough` are; asks for `length`.
std::size_t CandidateReader::fill(std::uint64_t offset, std::size_t length, std::size_t enough) {
  std::size_t got = 0;
  while (got < enough) {
    const ssize_t count =
        pread(file_.get(), buffer_.get() + got, length - got, static_cast<off_t>(offset + got));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) error_ = errno;
    if (count <= 0) break;
    got += static_cast<std::size_t>(count);
  }
  return got;
}

std::span<const unsigned char> CandidateReader::read(std::uint64_t offset, std::size_t length) {
  if (fill(offset, length, length) != length) return {};
  return {buffer_.get(), length};
}

std::span<const unsigned char> CandidateReader::readWhole(const Candidate& candidate,
                                                          bool manyInFolder) {
  if (!openUnchecked(candidate, manyInFolder)) return {};
  const auto length = static_cast<std::size_t>(candidate.fileSize);
  // One byte is asked for that should not be there; being told of all others is the end.
  const std::size_t got = fill(0, length + 1, length);
  file_.reset();
  if (got != length) return {};
  return {buffer_.get(), length};
}

bool CandidateReader::digest(std::uint64_t from, std::uint64_t to, const std::atomic<bool>& stop,
                             std::uint64_t& running) {
  while (from < to) {
    if (stop.load(std::memory_order_relaxed)) return false;
    const std::size_t length = std::min<std::uint64_t>(bufferSize_, to - from);
    const auto bytes = read(from, length);
    if (bytes.empty()) return false;
    running = crc::update(running, bytes.data(), bytes.size());
    from += length;
  }
  return true;
}

}  // namespace brisko

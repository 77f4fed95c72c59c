#include "RegularFile.h"

#include "FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

int writeAll(int descriptor, const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    written += static_cast<std::size_t>(count);
  }
  return 0;
}

// Looked at before it is opened, because opening a FIFO or a device can wait or have an effect; and
// again afterwards, because another item may have taken its place.
FileDescriptor openRegular(const std::string& path, int flags, int& error) {
  struct stat status;
  const bool follow = (flags & O_NOFOLLOW) == 0;
  const int found = follow ? stat(path.c_str(), &status) : lstat(path.c_str(), &status);
  error = found == 0 ? 0 : errno;
  if (found == 0 && !S_ISREG(status.st_mode)) error = S_ISLNK(status.st_mode) ? ELOOP : EINVAL;
  const bool mayBeMade = error == ENOENT && (flags & O_CREAT) != 0;
  if (error != 0 && !mayBeMade) return {};
  FileDescriptor file(
      ::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, S_IRUSR | S_IWUSR));
  error = 0;
  if (!file || fstat(file.get(), &status) != 0) {
    error = errno;
  } else if (!S_ISREG(status.st_mode)) {
    error = EINVAL;
  }
  return error == 0 ? std::move(file) : FileDescriptor();
}

}  // namespace

std::optional<std::string> readFile(const std::string& path, std::size_t maximum, int& error) {
  const FileDescriptor file = openRegular(path, O_RDONLY, error);
  if (!file) return std::nullopt;
  // The size on record is no help: /proc says 0, and a log may grow meanwhile.
  constexpr std::size_t kStep = 64 * 1024;
  std::string content;
  for (;;) {
    const std::size_t filled = content.size();
    content.resize(filled + std::max(kStep, filled));
    const ssize_t count = ::read(file.get(), content.data() + filled, content.size() - filled);
    if (count < 0 && errno != EINTR) {
      error = errno;
      return std::nullopt;
    }
    content.resize(filled + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (content.size() > maximum) {
      error = EFBIG;
      return std::nullopt;
    }
    if (count == 0) return content;
  }
}

int writeFileInPlace(const std::string& path, const std::string& bytes) {
  int error = 0;
  const FileDescriptor file = openRegular(path, O_WRONLY | O_CREAT | O_NOFOLLOW, error);
  if (!file) return error;
  error = writeAll(file.get(), bytes);
  if (error == 0 && ftruncate(file.get(), static_cast<off_t>(bytes.size())) != 0) error = errno;
  return error;
}

int replaceFile(const std::string& path, const std::string& bytes) {
  std::string temporary = path + ".XXXXXX";
  FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) return errno;
  int error = writeAll(file.get(), bytes);
  if (error == 0 && fsync(file.get()) != 0) error = errno;
  if (error == 0 && rename(temporary.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(temporary.c_str());
  return error;
}

}  // namespace brisko

#include "algorithm.h"

#include "RestOfBuffer.h"
#include "SystemLog.h"
#include "crc.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr std::size_t kHead = RestOfBuffer::kLength;
constexpr std::size_t kPiece = 256 * 1024;
constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// Reads until `length` bytes are there or the file ends; negative on an error.
ssize_t readFully(int file, unsigned char* into, std::size_t length) {
  std::size_t got = 0;
  while (got < length) {
    const ssize_t count = ::read(file, into + got, length - got);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    got += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(got);
}

std::string textOfLink(const fileAttrbItem& item) {
  if (item.fileSize >= PATH_MAX || FileIdentity::at(item.filePathName) != item.identity) return {};
  std::string text(item.fileSize + 1, '\0');
  const ssize_t length = readlink(item.filePathName.c_str(), text.data(), text.size());
  if (length < 0 || static_cast<std::uint64_t>(length) != item.fileSize) return {};
  text.resize(item.fileSize);
  return text;
}

}  // namespace

algorithm::algorithm() : m_Buf(kHead) {}

FileDescriptor algorithm::open(const fileAttrbItem& item, std::string& linkText) {
  if (item.identity.kind == FileKind::symbolicLink) {
    linkText = textOfLink(item);
    return {};
  }
  if (item.identity.kind != FileKind::regular) return {};
  FileDescriptor file(::open(item.filePathName.c_str(), kFlags));
  struct stat status;
  if (!file || fstat(file.get(), &status) != 0 || FileIdentity::of(status) != item.identity) {
    return {};
  }
  return file;
}

std::uint64_t algorithm::getFileSize(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), kFlags));
  struct stat status;
  if (file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
    return static_cast<std::uint64_t>(status.st_size);
  }
  SystemLog::line("open file failed:{}", path);
  return 0;
}

bool algorithm::getMD5_1K(fileAttrbItem& item) {
  std::string linkText;
  const FileDescriptor file = open(item, linkText);
  if (file) {
    readFully(file.get(), m_Buf.data(), kHead);
  } else {
    std::memcpy(m_Buf.data(), linkText.data(), std::min(linkText.size(), kHead));
  }
  item.md5_1k = crc::update(crc::kStart, m_Buf.data(), kHead);
  return true;
}

bool algorithm::getMD5(fileAttrbItem& item, const std::atomic<bool>* stop) {
  std::string linkText;
  const FileDescriptor file = open(item, linkText);
  std::uint64_t running = crc::update(crc::kStart, linkText.data(), linkText.size());
  std::uint64_t length = linkText.size();
  if (file) {
    std::vector<unsigned char> buffer(std::min<std::uint64_t>(kPiece, item.fileSize + 1));
    for (ssize_t count = 1; count > 0 && length <= item.fileSize;) {
      if (stop != nullptr && *stop) return false;
      count = readFully(file.get(), buffer.data(), buffer.size());
      if (count < 0) length = 0;
      if (count <= 0) break;
      running = crc::update(running, buffer.data(), static_cast<std::size_t>(count));
      length += static_cast<std::uint64_t>(count);
    }
  }
  if (length == 0 || length != item.fileSize) {
    SystemLog::line("open file failed:{}", item.filePathName);
    return false;
  }
  item.md5 = running;
  return true;
}

}  // namespace brisko

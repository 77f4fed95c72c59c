#include "MountTable.h"

#include "FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brisko {
namespace {

bool readAll(const std::string& path, std::string& content) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return false;
  char buffer[1 << 14];
  for (;;) {
    const ssize_t got = ::read(file.get(), buffer, sizeof buffer);
    if (got == 0) return true;
    if (got > 0) content.append(buffer, static_cast<std::size_t>(got));
    if (got < 0 && errno != EINTR) return false;
  }
}

// The field at `index` of a line whose fields one blank parts.
std::string_view field(std::string_view line, int index) {
  for (; index > 0; --index) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) return {};
    line.remove_prefix(blank + 1);
  }
  return line.substr(0, line.find(' '));
}

bool isOctal(char c) {
  return c >= '0' && c <= '7';
}

// Blanks, tabs, line feeds and backslashes of a name are written as \ooo.
std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2]) &&
        isOctal(text[i + 3])) {
      plain +=
          static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + text[i + 3] - '0');
      i += 3;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

}  // namespace

MountTable MountTable::read(const std::string& table) {
  constexpr int kMountPoint = 4;
  MountTable mounts;
  std::string content;
  if (!readAll(table, content) || content.empty()) return mounts;
  std::string_view rest = content;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string point = unescaped(field(rest.substr(0, end), kMountPoint));
    if (point.empty() || point.front() != '/') return mounts;
    mounts.points_.push_back(std::move(point));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  mounts.known_ = true;
  return mounts;
}

std::string MountTable::firstWithin(std::string_view path) const {
  for (const std::string& point : points_) {
    if (!point.starts_with(path)) continue;
    if (point.size() == path.size() || path == "/" || point[path.size()] == '/') return point;
  }
  return {};
}

}  // namespace brisko

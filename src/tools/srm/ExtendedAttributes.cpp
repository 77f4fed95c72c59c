#include "ExtendedAttributes.h"

#include "RandomStream.h"

#include <cerrno>
#include <string>
#include <vector>

#include <sys/xattr.h>
#include <unistd.h>

namespace brisko::srm {
namespace {

// The names that hold something of the user's. Empty as well where there are no attributes at all.
std::vector<std::string> attributesOf(int file, int& error) {
  std::vector<std::string> names;
  std::vector<char> list(64 * 1024);  // the kernel gives no longer list
  const ssize_t length = ::flistxattr(file, list.data(), list.size());
  error = length < 0 && errno != ENOTSUP && errno != ENOSYS ? errno : 0;
  for (const char* at = list.data(); at < list.data() + length; at += names.back().size() + 1)
    names.emplace_back(at);
  std::erase_if(names, [](const std::string& name) {
    return name.starts_with("system.") || name.starts_with("security.");
  });
  return names;
}

int overwrite(int file, const std::string& name) {
  const ssize_t size = ::fgetxattr(file, name.c_str(), nullptr, 0);
  if (size < 0) return errno == ENODATA ? 0 : errno;
  std::vector<std::byte> value(static_cast<std::size_t>(size));
  if (!systemRandom(value)) return EIO;
  if (::fsetxattr(file, name.c_str(), value.data(), value.size(), XATTR_REPLACE) == 0) return 0;
  return errno == ENODATA ? 0 : errno;
}

}  // namespace

int eraseExtendedAttributes(int file) {
  int first = 0;
  const std::vector<std::string> names = attributesOf(file, first);
  if (names.empty()) return first;
  for (const std::string& name : names) {
    const int error = overwrite(file, name);
    if (first == 0) first = error;
  }
  if (::fsync(file) != 0 && first == 0) first = errno;
  for (const std::string& name : names)
    ::fremovexattr(file, name.c_str());
  return first;
}

}  // namespace brisko::srm

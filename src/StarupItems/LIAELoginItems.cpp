#include "LIAELoginItems.h"

#include "Host.h"
#include "NSFileManager.h"

#include <fmt/format.h>

#include <cctype>
#include <charconv>
#include <string_view>

#include <sys/stat.h>

namespace brisko {
namespace {

constexpr std::string_view kScheme = "file://";

LoginItems& store() {
  return *Host::current().loginItems;
}

}  // namespace

std::string fileURL(const std::string& path) {
  std::string url(kScheme);
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPlain = (byte < 0x80 && std::isalnum(byte) != 0) ||
                         std::string_view("-._~/").find(character) != std::string_view::npos;
    url += isPlain ? std::string(1, character) : fmt::format("%{:02X}", byte);
  }
  return url;
}

std::string pathOfFileURL(const std::string& url) {
  if (!url.starts_with(kScheme)) return {};
  std::string path;
  for (std::size_t i = kScheme.size(); i < url.size(); ++i) {
    unsigned byte = 0;
    if (url[i] == '%' && i + 2 < url.size() &&
        std::from_chars(&url[i + 1], &url[i + 3], byte, 16).ptr == &url[i + 3]) {
      path += static_cast<char>(byte);
      i += 2;
    } else {
      path += url[i];
    }
  }
  return path;
}

int LIAECopyLoginItems(std::vector<LoginItemRecord>& items) {
  items.clear();
  std::vector<LoginItem> entries;
  if (const int status = store().snapshot(entries); status != LoginItems::noErr) return status;
  for (const LoginItem& entry : entries) {
    items.push_back({fileURL(store().resolve(entry).value_or(entry.identifier)), entry.isHidden});
  }
  return LoginItems::noErr;
}

int LIAEAddURLAtEnd(const std::string& url, bool hidden) {
  const std::string path = pathOfFileURL(url);
  if (path.empty()) return LoginItems::fnfErr;
  return LIAEAddRefAtEnd(NSFileManager::convertStringToFSRef(path), hidden);
}

int LIAEAddRefAtEnd(const FSRef& item, bool hidden) {
  struct stat status;
  if (!item.isFilled() || ::lstat(item.path.c_str(), &status) != 0 ||
      status.st_dev != item.device || status.st_ino != item.inode) {
    return LoginItems::fnfErr;
  }
  return store().insertLast(item.path, hidden);
}

int LIAERemove(std::size_t index) {
  std::vector<LoginItem> entries;
  if (const int status = store().snapshot(entries); status != LoginItems::noErr) return status;
  return index < entries.size() ? store().remove(entries[index]) : LoginItems::paramErr;
}

}  // namespace brisko

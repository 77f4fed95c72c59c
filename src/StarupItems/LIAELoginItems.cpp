#include "LIAELoginItems.h"

#include "FileURL.h"
#include "Host.h"
#include "NSFileManager.h"

#include <sys/stat.h>

namespace brisko {
namespace {

LoginItems& store() {
  return *Host::current().loginItems;
}

}  // namespace

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

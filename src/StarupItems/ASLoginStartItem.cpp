#include "ASLoginStartItem.h"

#include "Host.h"
#include "PropertyList.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

std::string lastComponent(std::string path) {
  while (path.size() > 1 && path.ends_with('/'))
    path.pop_back();
  return path.substr(path.rfind('/') + 1);
}

std::string extensionOf(const std::string& path) {
  const std::string name = lastComponent(path);
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? "" : name.substr(dot + 1);
}

}  // namespace

ASLoginStartItem ASLoginStartItem::loginItem(const std::string& path, bool isHidden) {
  ASLoginStartItem item;
  Workspace& workspace = *Host::current().workspace;
  item.bIsSelected = isHidden;
  item.image = workspace.iconName(path);
  item.name = workspace.displayName(path);
  if (item.name.empty()) item.name = lastComponent(path);
  item.subName = extensionOf(path);
  item.path = path;
  return item;
}

ASLoginStartItem ASLoginStartItem::constructLoginItem(const std::string& path, bool hide) {
  ASLoginStartItem item = loginItem(path, hide);
  const PropertyList info = PropertyList::read(path + "/Contents/Info.plist");
  item.bundleID = info["CFBundleIdentifier"].string();
  item.bundleVersion = info["CFBundleShortVersionString"].string();
  item.isSystemApp = item.bundleID.starts_with("com.apple.");
  item.isSystemAppStr = item.isSystemApp ? "YES" : "NO";
  struct statx status;
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &status) == 0) {
    item.date = status.stx_btime.tv_sec;
  }
  return item;
}

}  // namespace brisko

#include "HostApplications.h"

#include "Host.h"

#include <fmt/format.h>

namespace brisko {
namespace {

using Kind = InstalledApplication::Kind;

}  // namespace

AppItems hostApplicationItems() {
  AppItems items;
  InstalledApplications* service = Host::current().installedApplications.get();
  if (service == nullptr) return items;
  for (InstalledApplication& application : service->list()) {
    auto item = std::make_shared<AMAppItem>(AMAppItem::initWithInfoDictionary(
        {}, application.name, application.path, application.desktopID, application.version,
        application.date, "NO", "0KB"));
    item->role = AMAppItem::Role::package;
    item->image = application.iconName;
    if (application.bytes > 0) {
      item->bIsGetSize = true;
      item->setBytes(application.bytes);
    } else if (application.files.empty()) {
      // Its package manager does not account for it, and nobody else can.
      item->bIsGetSize = true;
      item->size = "";
    }
    item->host = std::make_shared<InstalledApplication>(std::move(application));
    items.push_back(std::move(item));
  }
  return items;
}

bool isOfPackage(const AMAppItem& item) {
  return item.host && item.host->kind != Kind::files;
}

std::string packageKey(const InstalledApplication& application) {
  const bool isFiles = application.kind == Kind::files;
  return packageKey(application, isFiles ? application.path : application.packageName);
}

std::string packageKey(const InstalledApplication& application, const std::string& packageName) {
  return fmt::format("{} {} {}", static_cast<int>(application.kind),
                     application.isForUser ? "user" : "system", packageName);
}

bool isSamePackage(const AMAppItem& one, const AMAppItem& other) {
  return one.host && other.host && packageKey(*one.host) == packageKey(*other.host);
}

}  // namespace brisko

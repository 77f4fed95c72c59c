#include "HostApplications.h"

#include "Host.h"

namespace brisko {

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

bool isSamePackage(const AMAppItem& one, const AMAppItem& other) {
  if (!one.host || !other.host || one.host->kind != other.host->kind) return false;
  if (one.host->kind == InstalledApplication::Kind::files) return one.path == other.path;
  return one.host->packageName == other.host->packageName &&
         one.host->isForUser == other.host->isForUser;
}

}  // namespace brisko

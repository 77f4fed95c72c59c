#include "InstalledNames.h"

#include "AppNames.h"
#include "HostApplications.h"
#include "InstalledApplications.h"

#include <algorithm>

namespace brisko {
namespace {

bool isGoingToo(const AMAppItem& owner, const AMAppItem& item,
                const std::vector<std::string>& going) {
  if (owner.path == item.path || isSamePackage(owner, item)) return true;
  return owner.host &&
         std::find(going.begin(), going.end(), owner.host->packageName) != going.end();
}

}  // namespace

InstalledNames::InstalledNames(const AppItems& installed) {
  for (const AppItem& item : installed) {
    add(item->name, item);
    add(item->bundleID, item);
    if (!item->host) continue;
    for (const std::string& key : item->host->keys)
      add(key, item);
  }
}

void InstalledNames::add(const std::string& key, const AppItem& item) {
  const std::string whole = lowerCased(key);
  const std::string shortened = withoutBlanks(whole);
  if (shortened.empty()) return;
  for (const std::string& each : {whole, shortened}) {
    AppItems& owners = owners_[each];
    if (owners.empty() || owners.back() != item) owners.push_back(item);
  }
}

std::string InstalledNames::otherOwner(std::string_view entry, const AMAppItem& item,
                                       const std::vector<std::string>& going) const {
  std::string key = lowerCased(entry);
  for (; !key.empty(); key.pop_back()) {
    const auto found = owners_.find(key);
    if (found == owners_.end()) continue;
    for (const AppItem& owner : found->second) {
      if (!isGoingToo(*owner, item, going)) return owner->name;
    }
  }
  return "";
}

}  // namespace brisko

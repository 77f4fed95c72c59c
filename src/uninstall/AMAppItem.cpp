#include "AMAppItem.h"

#include "CommUti.h"

#include <utility>

namespace brisko {

AMAppItem AMAppItem::initWithInfoDictionary(const PropertyList& /*info*/, std::string name,
                                            std::string path, std::string bundleID,
                                            std::string bundleVersion, std::int64_t date,
                                            std::string isSystemAppStr, std::string size) {
  AMAppItem item;
  item.isSystemApp = isSystemAppStr == "YES";
  item.name = std::move(name);
  item.path = std::move(path);
  item.bundleID = std::move(bundleID);
  item.bundleVersion = std::move(bundleVersion);
  item.date = date;
  item.isSystemAppStr = std::move(isSystemAppStr);
  item.size = std::move(size);
  return item;
}

void AMAppItem::setBytes(std::uint64_t measured) {
  bytes = measured;
  size = CommUti::convertVolSpace(measured);
}

}  // namespace brisko

#include "SystemFolder.h"

#include "Resources.h"

#include <string>
#include <unordered_set>

namespace brisko {
namespace {

std::unordered_set<std::string> numberedPaths() {
  std::unordered_set<std::string> paths;
  const PropertyList table = Resources::table("SystemFile.plist");
  if (!table.isDictionary()) return paths;
  const auto& entries = table.dictionary();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto found = entries.find(std::to_string(i));
    if (found != entries.end() && found->second.isString()) paths.insert(found->second.string());
  }
  return paths;
}

}  // namespace

bool SystemFolder::isSystemFileWithFilePath(const std::string& path) {
  static const std::unordered_set<std::string> kPaths = numberedPaths();
  return kPaths.count(path) > 0;
}

}  // namespace brisko

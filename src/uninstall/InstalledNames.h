#pragma once

#include "AMAppItem.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brisko {

/// The names and identifiers of everything that is installed, to find out whom else an entry may
/// belong to. A question costs as many look-ups as the entry's name has bytes, however much is
/// installed.
class InstalledNames {
 public:
  InstalledNames() = default;
  explicit InstalledNames(const AppItems& installed);

  /// The name of an application other than `item`, and of none of the packages `going`, whose name
  /// or identifier the entry's name begins with; the longest such name wins. "" when there is none.
  std::string otherOwner(std::string_view entry, const AMAppItem& item,
                         const std::vector<std::string>& going) const;

 private:
  void add(const std::string& key, const AppItem& item);

  std::unordered_map<std::string, AppItems> owners_;  ///< by lower-cased key
};

}  // namespace brisko

#pragma once

#include "JunkLocation.h"
#include "PropertyList.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// The running host's own junk locations, from the table HostLocations.plist, whose format is
/// written at its head.
///
/// The table fails closed: when anything in it is not understood, one log line says what, and there
/// are no locations at all. So does each location: a folder on its way that is a link, or a base
/// folder that the environment points at something that is no such folder, drops it.
class HostLocations {
 public:
  /// The values a placeholder stands for. None drops the location; several make one of each.
  using Variables = std::function<std::vector<std::string>(std::string_view name)>;

  HostLocations() = default;
  HostLocations(const PropertyList& table, const Variables& variables);

  /// This host's. Empty below a root and on hosts without such a table.
  static HostLocations current();

  /// A category's, in the table's order; wildcards in a location are already resolved.
  const std::vector<JunkLocation>& locations(int category) const {
    return locations_[static_cast<std::size_t>(category)];
  }

 private:
  static constexpr std::size_t kCategories = 6;
  std::array<std::vector<JunkLocation>, kCategories> locations_;
};

}  // namespace brisko

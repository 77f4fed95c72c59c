#pragma once

#include "PropertyList.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A folder in which this host's applications leave files that carry their names.
struct HostRelatedLocation {
  std::string folder;    ///< absolute; need not exist
  std::string pattern;   ///< an entry's name, in which "${KEY}" stands for the application's key
  bool isWhole = false;  ///< the whole name must be that, letter by letter
  std::vector<std::string> excluded;  ///< names that many applications share, in lower case

  /// Whether an entry of the folder belongs to an application with this key (see
  /// InstalledApplication::keys). Unless the whole name must match, the rule is the one of the
  /// library locations: the lower-cased name begins with the lower-cased key, as it is or without
  /// blanks. A key that is empty without blanks matches nothing, an excluded name never.
  bool matches(std::string_view entry, std::string_view key) const;
};

/// What a placeholder stands for; nothing drops the location.
using HostVariable = std::function<std::optional<std::string>(std::string_view name)>;

/// The rows of `table`, in its order; none, and one log line, when anything in it is not
/// understood.
std::vector<HostRelatedLocation> hostRelatedLocations(const PropertyList& table,
                                                      const HostVariable& variable);

/// Where the files of an application with a desktop entry are looked for on this host, each of its
/// keys in each folder: the table HostRelatedLocations.plist, whose format is written at its head.
std::vector<HostRelatedLocation> hostRelatedLocations();

}  // namespace brisko

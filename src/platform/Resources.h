#pragma once

#include "PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisko {

/// The program's resources: tables, images, theme. Looked up by name each time, first in the folder
/// of the variable BRISKO_RESOURCES, then in what the user has changed, then in the program itself.
class Resources {
 public:
  /// The content of the resource at `name`, a path below the resources folder.
  static std::optional<std::string> find(std::string_view name);

  /// The program's own copy, whatever the environment says: for rules that protect.
  static std::optional<std::string_view> builtIn(std::string_view name);

  /// A property-list resource, read afresh; null when missing or broken.
  static PropertyList table(std::string_view name);

  /// A table that is written back: the program's own and over it, key by key, what the user has
  /// changed, so that a copy from long ago hides nothing that a newer program brings. With
  /// BRISKO_RESOURCES, the table there alone.
  static PropertyList settings(std::string_view name);

  /// Writes such a table back in place: whole where BRISKO_RESOURCES points, else what of it
  /// differs from the program's own, among the user's (XDG_DATA_HOME/brisko). False, and one log
  /// line, when that fails.
  static bool writeTable(std::string_view name, const PropertyList& table);

  /// The SVG for an image name, from "images/". Names come with and without "@2x" and ".png", and
  /// with ".svg".
  static std::optional<std::string> image(std::string_view imageName);
};

}  // namespace brisko

#pragma once

#include "PropertyList.h"

#include <string>

namespace brisko {

/// The user's preference domains, each a dictionary.
class Preferences {
 public:
  static constexpr const char* kApplicationDomain = "com.brisko.Brisko";
  static constexpr const char* kGlobalDomain = "NSGlobalDomain";

  virtual ~Preferences() = default;

  /// The value under `key`, null when the domain or the key is missing. The application's own
  /// domain falls back to the global one. The global "AppleLanguages" is derived from the session's
  /// locale when nobody has set it.
  virtual PropertyList value(const std::string& domain, const std::string& key) = 0;
  virtual PropertyList persistentDomain(const std::string& domain) = 0;

  /// Changes what `value` and `persistentDomain` give from now on; `synchronize` makes it last.
  virtual void setValue(const std::string& domain, const std::string& key, PropertyList value) = 0;
  virtual void setPersistentDomain(const std::string& domain, PropertyList dictionary) = 0;

  /// Writes what was changed. False when any domain could not be written.
  virtual bool synchronize() = 0;
};

}  // namespace brisko

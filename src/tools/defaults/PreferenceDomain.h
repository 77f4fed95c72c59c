#pragma once

#include "PropertyList.h"

#include <string>

namespace brisko {

/// A preference domain as the command line names it: a name, "NSGlobalDomain" or "-g" for the
/// global one, or the path of a property list, whose ".plist" may be left out.
class PreferenceDomain {
 public:
  PreferenceDomain(std::string given, bool isOfThisHost);

  /// What it is called in messages.
  const std::string& name() const { return given_; }
  /// The domain whose settings these are: a path's file name counts.
  std::string settingsDomain() const;

  PropertyList read() const;
  /// Sets `key`, or takes it out with null. Empty, or what went wrong.
  std::string write(const std::string& key, PropertyList value) const;
  /// Takes all keys out. Empty, or what went wrong.
  std::string clear() const;

 private:
  bool isFile() const { return given_.find('/') != std::string::npos; }
  std::string file() const;
  std::string writeFile(const PropertyList& content) const;

  std::string given_;
  bool isOfThisHost_;
};

/// A value as `defaults read` prints it: 1 and 0 for a boolean, a container over several lines.
std::string printedValue(const PropertyList& value);

}  // namespace brisko

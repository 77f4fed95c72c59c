#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brisko {

class PropertyList;

/// What the version check came to.
struct VersionResult {
  enum class State { noNetwork, noUpdate, newVersion };

  State state = State::noUpdate;
  std::string version;             ///< the newest release's, as its description has it; UTF-8
  std::vector<std::string> notes;  ///< what is new in it, in order; only for `newVersion`
  std::string trouble;             ///< why the description could not be read; empty when it was

  std::string titleText() const;                  ///< "Brisko 1.2 has been released."
  std::string versionText() const;                ///< "New features of Version 1.2:"
  std::string noteText(std::size_t index) const;  ///< "1.First note", `index` from 0
};

/// Compares this release with the newest one, which a property list on the maker's site describes:
///
///     VersionCheck   the build number
///     Version        the text that people know it by
///     1, 2 … n       what is new, one text each, without gaps
class VersionCheck {
 public:
  static constexpr std::size_t kLargestDescription = 1U << 20;  ///< bytes; a larger one is refused

  /// Asks whether the network can be used, then fetches and compares. Blocks for up to 15 s: not
  /// for the main thread. `stop`, asked several times a second, ends it early. A description that
  /// cannot be had counts as no update; the log then says "Couldn't read version description: …".
  static VersionResult getVersionChange(const std::function<bool()>& stop = nullptr);

  /// Sets a description (null for none) beside this release.
  static VersionResult whatIsNewVersionDiff(const PropertyList& remote);

  /// This release's build number, from the settings table.
  static std::int64_t localBuild();
};

}  // namespace brisko

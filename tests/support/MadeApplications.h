#pragma once

#include <string>

namespace brisko::test {

/// What a bundle of a made system says of itself. Empty fields are left out of its Info.plist.
struct MadeBundle {
  std::string path;  ///< below the root
  std::string identifier;
  std::string version;
  std::string name;        ///< CFBundleName
  std::string executable;  ///< CFBundleExecutable
  std::size_t bytes = 1000;
};

/// Makes the bundle below `root`, its program having `bytes` bytes; returns its path.
std::string makeBundle(const std::string& root, const MadeBundle& bundle);

/// Adds forty bundles (30 applications, 4 widgets, 6 plug-ins) and what some of them left in the
/// home of the user "anna" and in the machine's library. Beside the 30 listed ones lie others that
/// are not to be listed.
void makeFortyBundles(const std::string& root);

/// Makes what Flatpak keeps of the application `id` in an installation's folder, with an exported
/// desktop entry of that name. `deploy` is the file of its own format.
void makeFlatpak(const std::string& installation, const std::string& id, const std::string& runtime,
                 const std::string& deploy = "");

}  // namespace brisko::test

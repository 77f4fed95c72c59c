#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brisko {

/// An installed Debian package.
struct DpkgPackage {
  std::string name;  ///< as apt-get calls it: with ":arch" when that is not the machine's own
  std::string version;
  std::uint64_t bytes = 0;   ///< installed size
  bool isEssential = false;  ///< marked as essential or protected, or of the priority "required"
};

/// Whether this can be the name of a Debian package, with or without ":arch". No such name begins
/// with "-" or holds a blank, a "/" or a character of the shell.
bool isPackageName(std::string_view name);

/// The package database of dpkg, read as files: asking dpkg-query would take as long for one
/// package as this takes for all.
class DpkgDatabase {
 public:
  /// Reads the status file in `folder`. A database that is not there has no packages.
  explicit DpkgDatabase(std::string folder = "/var/lib/dpkg");

  /// The installed package of this name; null when it is not installed.
  const DpkgPackage* find(std::string_view name) const;

  struct Owner {
    const DpkgPackage* package = nullptr;
    std::int64_t date = 0;  ///< when its list of files was written, seconds since 1970
  };
  /// Which packages own these paths, by one pass over the lists of files. Only paths that end with
  /// `suffix` are looked for: the longer it is, the quicker.
  std::unordered_map<std::string, Owner> owners(const std::vector<std::string>& paths,
                                                std::string_view suffix) const;

 private:
  void readStatus(std::string_view text);
  const DpkgPackage* ofList(std::string_view listName) const;

  std::string folder_;
  std::map<std::string, DpkgPackage, std::less<>> packages_;         // by name
  std::map<std::string, std::string, std::less<>> namesByListName_;  // "libc6:amd64" → "libc6"
};

}  // namespace brisko

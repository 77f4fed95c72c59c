#pragma once

#include "PropertyList.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace brisko {

/// What may not be removed, whoever asks: the rules of the table SystemFile, applied to this
/// machine.
///
/// A rule protects a place, everything that the place lies in, and by its kind more (the table
/// tells its format). It holds by name, and for a place that exists by device and inode too, so
/// that a bind mount, a hard link or another spelling of the name does not get round it. Where a
/// protected place is a link, what the link leads to is protected likewise.
///
/// A table that cannot be read or has anything in it that is not understood refuses everything.
class ProtectedPaths {
 public:
  /// What the rules are applied to.
  struct Layout {
    std::vector<std::string> roots;  ///< folders that stand for "/"; "" is the running system's
    std::vector<std::string> homes;  ///< home folders, beside those at the usual places
    std::map<std::string, std::string, std::less<>> variables;  ///< for "$NAME" in the table
    std::vector<std::string> places;  ///< more places: the program's files, the user's folders
    std::vector<std::string> tools;   ///< folders that are protected with everything below
  };

  /// The rules for this process: the running host's root and home and the running system, the
  /// program's own table and what BRISKO_RESOURCES adds to it. Built anew when a second has passed
  /// or the host was exchanged, because places come into being. Any thread.
  static std::shared_ptr<const ProtectedPaths> current();

  /// The rules for work on behalf of the user `uid`, from the program's own table and the user
  /// database alone: what the environment says does not count.
  static ProtectedPaths forUser(uid_t uid);

  ProtectedPaths(const PropertyList& table, const Layout& layout);

  /// Adds the rules of another table for the same layout.
  void add(const PropertyList& table);

  /// Why the absolute path is protected, in one line for people; nothing when it is not. The path's
  /// folder should be free of links, or the rules that go by name see another name.
  std::optional<std::string> reasonFor(const std::string& path) const;

 private:
  enum Scope : unsigned {
    self = 1U,        // the place and what it lies in
    children = 2U,    // what lies in it, one level deep, too
    everything = 4U,  // all below it, too
    rotated = 8U,     // below it only rotated files may go
  };
  using Names = std::vector<std::string>;
  struct Rule {
    Names names;  // each may hold "*"
    unsigned scope = self;
  };
  using Inode = std::pair<std::uint64_t, std::uint64_t>;
  struct InodeHash {
    std::size_t operator()(const Inode& inode) const {
      return std::hash<std::uint64_t>()(inode.second * 0x9e3779b97f4a7c15U ^ inode.first);
    }
  };

  bool addTable(const PropertyList& table);
  bool addPlaces(const PropertyList& list, unsigned scope);
  bool addPlace(const std::string& place, unsigned scope);
  void addRule(const std::string& path, unsigned scope);
  void addRule(Names names, unsigned scope);
  /// What was looked at while the inodes are found: most rules share their first names.
  struct Looked {
    std::unordered_map<std::string, std::optional<struct stat>> items;
    std::unordered_map<std::string, Names> listings;
    const std::optional<struct stat>& at(const std::string& path);
    const Names& matching(const std::string& folder, const std::string& pattern);
  };
  void findInodes();
  void findInodes(const Rule& rule, std::size_t depth, const std::string& path, Looked& looked);
  void followLink(const Rule& rule, std::size_t depth, const std::string& path,
                  const struct stat& link);

  std::optional<std::string> byName(const Rule& rule, const Names& names,
                                    const std::string& path) const;
  std::optional<std::string> byInode(const Names& names) const;
  bool isRotatedFile(const std::string& name, const std::string& path) const;

  Layout layout_;
  bool readable_ = false;
  std::vector<Rule> rules_;
  std::unordered_set<std::string> known_;  // rules, as text, to have each once
  std::vector<std::string> rotatedNames_;
  std::unordered_map<Inode, unsigned, InodeHash> inodes_;
};

/// Whether `name` matches `pattern`: "*" is any run of bytes, "#" a run of at least one digit.
bool matchesPattern(std::string_view name, std::string_view pattern);

}  // namespace brisko

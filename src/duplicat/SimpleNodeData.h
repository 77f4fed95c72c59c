#pragma once

#include "FileIdentity.h"
#include "fileAttrbItem.h"

#include <cstdint>
#include <string>

namespace brisko {

struct TreeNodeData {
  std::string name;  ///< leaf: absolute path; group: what the group is called
};

/// The data of one row of the duplicates' outline: a copy (leaf) or a group of copies.
///
/// There is one for each copy on the machine, so it keeps what cannot be derived (136 bytes with
/// its node) and answers the rest.
struct SimpleNodeData : TreeNodeData {
  std::uint64_t fileSize = 0;  ///< bytes; a group's is the sum of its leaves'
  FileDate ModificationDate;   ///< leaves only
  std::uint64_t device = 0;    ///< leaves: which item the path named when it was listed
  std::uint64_t inode = 0;
  std::int32_t selectNum = 0;    ///< leaf: 1 ticked, 0 not; group: 0 none, 1 all, 2 some leaves
  std::uint32_t tickNumber = 0;  ///< leaf: its place in the order of ticking; group: ticked leaves
  std::int8_t fileType = 0;      ///< group: the type class that took it, 1 to 6
  bool isLeaf = true;
  bool isBundle = false;  ///< an application bundle, or a group of such
  bool hardLink = false;  ///< leaf: another leaf of its group is the same file
  bool Mark = false;      ///< group: a type class has taken it
  bool isGone = false;    ///< was removed, and is about to leave the outline

  static SimpleNodeData leafDataWithName(std::string name);
  static SimpleNodeData groupDataWithName(std::string name);

  bool isExpandable() const { return !isLeaf; }
  /// Group: the extension by which it is classed, "APP" for bundles. Leaf: empty.
  std::string extendName() const;
  /// The icon's name in the desktop's naming convention; found out when asked for.
  std::string iconRep() const;
  /// Leaf: which item the path named when it was listed.
  FileIdentity identity() const;

  /// Negative, 0 or positive, as this row's value stands before, with or behind the other's.
  int compareName(const SimpleNodeData& other) const { return name.compare(other.name); }
  int compareSize(const SimpleNodeData& other) const;
  int compareDate(const SimpleNodeData& other) const;
  int compareNameR(const SimpleNodeData& other) const { return other.compareName(*this); }
  int compareSizeR(const SimpleNodeData& other) const { return other.compareSize(*this); }
  int compareDateR(const SimpleNodeData& other) const { return other.compareDate(*this); }
};

}  // namespace brisko

#pragma once

#include "CandidateStore.h"
#include "FileIdentity.h"
#include "fileAttrbItem.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace brisko {

/// A row's name, in two parts of which the first is shared: a path is put together when somebody
/// asks. What they point at belongs to the row's tree.
struct TreeNodeData {
  const CandidateFolder* folder = nullptr;  ///< null when `tail` is the whole name
  const char* tail = "";

  /// Leaf: absolute path; group: what the group is called.
  std::string name() const;
};

/// The data of one row of the duplicates' outline: a copy (leaf) or a group of copies.
///
/// There is one for each copy on the machine, so it keeps what cannot be derived (104 bytes with
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

  static SimpleNodeData leafDataWithName(const char* name, const CandidateFolder* folder = nullptr);
  static SimpleNodeData groupDataWithName(const char* name);

  bool isExpandable() const { return !isLeaf; }
  /// Group: the extension by which it is classed, "APP" for bundles. Leaf: empty.
  std::string_view extendName() const;
  /// Leaf: which item the path named when it was listed.
  FileIdentity identity() const;

  // Numbers that ascend with what is compared below; where they are equal, it decides. Names that
  // begin with the same `common` bytes are ranked by what follows.
  std::uint64_t rankName(std::size_t common) const;
  std::uint64_t rankSize(std::size_t /*common*/) const { return fileSize; }
  std::uint64_t rankDate(std::size_t /*common*/) const {
    return static_cast<std::uint64_t>(ModificationDate.seconds) ^ std::uint64_t{1} << 63;
  }

  /// Negative, 0 or positive, as this row's value stands before, with or behind the other's.
  int compareName(const SimpleNodeData& other) const;
  int compareSize(const SimpleNodeData& other) const;
  int compareDate(const SimpleNodeData& other) const;
  int compareNameR(const SimpleNodeData& other) const { return other.compareName(*this); }
  int compareSizeR(const SimpleNodeData& other) const { return other.compareSize(*this); }
  int compareDateR(const SimpleNodeData& other) const { return other.compareDate(*this); }
};

}  // namespace brisko

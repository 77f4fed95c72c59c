#pragma once

#include "FileIdentity.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// A result node of the Junk Cleaner: one of the six categories, or one entry of a category.
///
/// Sizes are carried as the texts that are shown, and sums are sums of those, so that a total
/// always is the sum of the lines that the user sees. The exact bytes stand beside them.
struct TCTreeNode {
  std::string image;  ///< image name, or the icon name of an entry
  int count = 0;
  int byte = 0;
  std::string size;                   ///< `CommUti::convertVolSpace`
  std::string path;                   ///< full path of an entry
  int selectState = 1;                ///< 1 selected, 0 not
  std::string title;                  ///< category name, or the entry's file name
  std::string subTitle;               ///< category description
  std::vector<std::string> children;  ///< the entries' paths, in the order found
  std::vector<std::shared_ptr<TCTreeNode>> detailChildren;  ///< ascending by size as shown

  std::uint64_t logicalBytes = 0;        ///< exact, where `size` is rounded
  std::optional<FileIdentity> identity;  ///< which item `path` named when it was scanned
};

}  // namespace brisko

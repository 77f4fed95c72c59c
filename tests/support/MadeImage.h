#pragma once

#include <string>
#include <vector>

namespace brisko::test {

/// A small system below a folder, for "--root": the home of the user "anna", junk in all six
/// categories, and beside it what must survive every cleaning.
///
/// Sizes are chosen so that every row shows something of its own; files are sparse.
struct MadeImage {
  std::string root;
  std::string home;                    ///< root + "/Users/anna"
  std::vector<std::string> survivors;  ///< files with content, absolute

  /// Builds it below `root`, which must exist and be empty.
  static MadeImage build(const std::string& root);

  /// Whether all survivors are there with their content.
  bool isIntact() const;
};

}  // namespace brisko::test

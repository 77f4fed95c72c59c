#pragma once

#include "Controller.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brisko {

/// How much of the tree "brisko large" lists.
struct LargeListing {
  std::size_t depth = 1;  ///< levels below the folder; 0 for all
  std::size_t top = 0;    ///< entries of each folder, the largest; 0 for all

  /// The entries of `folder` that are listed, largest first.
  std::vector<FileNode*> entriesOf(FileNode& folder) const;
  bool goesBelow(std::size_t level) const { return depth == 0 || level < depth; }
};

/// How "brisko large" tells what was found and done. Written piece by piece and never held as one
/// text, because a tree may have millions of entries.
class LargeReport {
 public:
  LargeReport(Controller& controller, LargeListing listing, bool isJson)
      : controller_(controller), listing_(listing), isJson_(isJson) {}

  /// The list, and the folders that could not be read. As JSON this opens the document.
  void writeTree();
  /// What removing would take, for a dry run.
  void writePlan(const std::vector<FileNode*>& nodes);
  /// What a removal did.
  void writeOutcome();
  /// As JSON this closes the document.
  void writeEnd();

  /// False once standard output could not be written; what follows is not tried.
  bool isWritten() const { return isWritten_; }

 private:
  void write(const std::string& text);
  void writeJsonTree();
  void writeTextTree();

  Controller& controller_;
  LargeListing listing_;
  bool isJson_;
  bool isWritten_ = true;
};

}  // namespace brisko

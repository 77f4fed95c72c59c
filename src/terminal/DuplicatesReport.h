#pragma once

#include "DuplicateModel.h"

#include <cstddef>
#include <string>

namespace brisko {

/// "1 copy", "2 copies".
std::string countedCopies(std::size_t count);

/// How "brisko duplicates" tells what was found and done. Results may be many: they are written
/// group by group and never held as one text.
class DuplicatesReport {
 public:
  DuplicatesReport(const DuplicateModel& model, bool isJson) : model_(model), isJson_(isJson) {}

  /// The groups of the shown type, and the folders left out. As JSON this opens the document.
  void writeGroups();
  /// What removing would take now, for a dry run.
  void writePlan();
  /// What a removal did.
  void writeOutcome();
  /// As JSON this closes the document.
  void writeEnd();

  /// False once standard output could not be written; what follows is not tried.
  bool isWritten() const { return isWritten_; }

 private:
  void write(const std::string& text);
  void writeJsonGroups();
  void writeTextGroups();
  void writeMembers(const std::string& members);

  const DuplicateModel& model_;
  bool isJson_;
  bool isWritten_ = true;
};

}  // namespace brisko

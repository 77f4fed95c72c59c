#pragma once

#include "Json.h"
#include "RelatedFilesModel.h"

#include <string>

namespace brisko {

class UninstallModel;

/// How "brisko apps", "brisko related" and "brisko uninstall" tell what they found and did, as text
/// or as one JSON document.
class AppsReport {
 public:
  explicit AppsReport(bool isJson) : isJson_(isJson) {}

  /// What is installed, as the model shows it.
  std::string list(const UninstallModel& model) const;
  /// An application and what belongs to it.
  std::string related(const RelatedFilesModel& model) const;

  /// What a removal would take; as JSON only for a dry run.
  std::string plan(const RelatedFilesModel& model, bool isDryRun) const;
  /// What the removal of `entries` did. They are looked at again: what is not there any more was
  /// removed, whoever did it.
  std::string outcome(const RelatedFilesModel& model, const AppItems& entries) const;
  /// The entries that are still there or must stay, and why.
  static std::vector<UninstallFailure> stayed(const RelatedFilesModel& model,
                                              const AppItems& entries);

 private:
  std::string groupsText(const RelatedFilesModel& model) const;

  bool isJson_;
};

}  // namespace brisko

#pragma once

#include "Command.h"

#include <string>
#include <vector>

namespace brisko {

class RelatedFilesModel;
class UninstallModel;

/// "brisko uninstall": removes applications with the files they left.
class UninstallCommand : public Command {
 public:
  const char* name() const override { return "uninstall"; }
  const char* summary() const override {
    return "Remove applications together with the files they left";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  int remove(RelatedFilesModel& review, const GlobalOptions& global) const;

  std::vector<std::string> paths_;
};

/// Finds what the arguments of `command` mean and everything that belongs to it, measured. False
/// when the user interrupted it; throws WrongUsage for an argument that means nothing.
bool reviewArguments(UninstallModel& model, RelatedFilesModel& review,
                     const std::vector<std::string>& arguments, const char* command);

}  // namespace brisko

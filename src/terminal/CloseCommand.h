#pragma once

#include "Command.h"
#include "TaskManagerInfo.h"

#include <string>
#include <vector>

namespace brisko {

/// "brisko close": asks running applications to end, and says which did.
class CloseCommand : public Command {
 public:
  const char* name() const override { return "close"; }
  const char* summary() const override { return "Ask running applications to end"; }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  /// The applications that were named. Throws for a number that is none of theirs.
  std::vector<TaskManagerInfo> named() const;

  std::vector<std::string> processes_;
};

}  // namespace brisko

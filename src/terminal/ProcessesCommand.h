#pragma once

#include "Command.h"

namespace brisko {

/// "brisko processes": lists the running applications with their figures.
class ProcessesCommand : public Command {
 public:
  const char* name() const override { return "processes"; }
  const char* summary() const override { return "List running applications with what they use"; }
  void declare(CLI::App&) override {}
  int execute(const GlobalOptions& global) override;
};

}  // namespace brisko

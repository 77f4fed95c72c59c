#pragma once

#include "Command.h"

namespace brisko {

/// "brisko check-update": tells whether there is a newer release, and what is new in it.
class CheckUpdateCommand : public Command {
 public:
  const char* name() const override { return "check-update"; }
  const char* summary() const override { return "Tell whether a newer version exists"; }
  void declare(CLI::App&) override {}
  int execute(const GlobalOptions& global) override;
};

}  // namespace brisko

#pragma once

#include "Command.h"

namespace brisko {

class StatusReport;
class SystemSampler;

/// "brisko status": what the machine is and how it is doing; once, or again every second.
class StatusCommand : public Command {
 public:
  const char* name() const override { return "status"; }
  const char* summary() const override {
    return "Show processor, memory, disks, network and what the machine is";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  int watch(SystemSampler& sampler, StatusReport& report) const;

  bool watch_ = false;
};

}  // namespace brisko

#pragma once

#include "Command.h"

#include <string>

namespace brisko {

/// "brisko disks": the disks and their volumes, or all about one of them.
class DisksCommand : public Command {
 public:
  const char* name() const override { return "disks"; }
  const char* summary() const override {
    return "Show the disks and volumes of this machine, or one in detail";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  std::string id_;
};

}  // namespace brisko

#pragma once

#include "Command.h"

#include <string>

namespace brisko {

/// "brisko smart": the health of a drive, or of a sector that was saved from one.
class SmartCommand : public Command {
 public:
  const char* name() const override { return "smart"; }
  const char* summary() const override {
    return "Show a drive's temperature, power-on hours and power cycles";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  std::string device_;
  std::string sector_;
};

}  // namespace brisko

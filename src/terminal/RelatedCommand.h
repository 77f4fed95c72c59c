#pragma once

#include "Command.h"

#include <string>

namespace brisko {

/// "brisko related": shows what belongs to an application.
class RelatedCommand : public Command {
 public:
  const char* name() const override { return "related"; }
  const char* summary() const override { return "Show an application with the files it left"; }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  std::string path_;
};

}  // namespace brisko

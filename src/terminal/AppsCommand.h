#pragma once

#include "Command.h"

#include <string>

namespace brisko {

/// "brisko apps": lists what is installed.
class AppsCommand : public Command {
 public:
  const char* name() const override { return "apps"; }
  const char* summary() const override {
    return "List the installed applications, widgets or plug-ins";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  int wantedType() const;

  std::string type_ = "applications";
  std::string search_;
  std::string sort_;
};

}  // namespace brisko

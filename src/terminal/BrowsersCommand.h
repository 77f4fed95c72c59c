#pragma once

#include "Command.h"

#include <string>
#include <vector>

namespace brisko {

class InternetModel;
struct BrowsersReport;

/// "brisko browsers": lists what the installed browsers keep, and erases it.
class BrowsersCommand : public Command {
 public:
  const char* name() const override { return "browsers"; }
  const char* summary() const override {
    return "Show what browsers keep: history, cookies, caches, passwords; erase it";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  void tick(InternetModel& model) const;
  int clean(InternetModel& model, BrowsersReport& report, const GlobalOptions& global) const;

  bool clean_ = false;
  bool close_ = false;
  std::vector<std::string> browsers_;
  std::vector<std::string> kinds_;
};

}  // namespace brisko

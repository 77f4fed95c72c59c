#pragma once

#include "Command.h"

#include <string>
#include <vector>

namespace brisko {

class StartupItemsModel;

/// "brisko login-items": lists what opens at login, adds, removes and hides items.
class LoginItemsCommand : public Command {
 public:
  const char* name() const override { return "login-items"; }
  const char* summary() const override {
    return "List what opens when you log in; add, remove, hide or show items";
  }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  /// The row that N stands for.
  std::size_t row(const StartupItemsModel& model) const;
  void checkWords() const;
  /// The path that the action is about; empty when there is nothing to change.
  std::string target(const StartupItemsModel& model) const;
  int change(StartupItemsModel& model, const std::string& target,
             const GlobalOptions& global) const;
  bool agrees(const StartupItemsModel& model, std::size_t row, const GlobalOptions& global) const;

  std::vector<std::string> words_;  ///< an action and what it acts on; none to list
};

}  // namespace brisko

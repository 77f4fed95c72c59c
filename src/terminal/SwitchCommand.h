#pragma once

#include "Command.h"

#include <string>
#include <vector>

namespace brisko {

struct QuickAction;
struct SwitchState;

/// "brisko switch": shows the quick switches, and turns one on or off.
class SwitchCommand : public Command {
 public:
  const char* name() const override { return "switch"; }
  const char* summary() const override { return "Show the quick switches; turn one on or off"; }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  const QuickAction* checkedAction() const;
  int change(const QuickAction& action, const GlobalOptions& global) const;

  std::vector<std::string> words_;  ///< name or number, "on" or "off"
};

}  // namespace brisko

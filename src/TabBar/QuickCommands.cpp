#include "QuickCommands.h"

#include "HostTools.h"
#include "Trimmed.h"

#include <sstream>
#include <utility>

namespace brisko {

std::string QuickCommands::Answer::reason(const std::string& tool) const {
  const std::string begin = tool + ": ";
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) {
    // The shell says of a tool that is missing: "bash: line 1: TOOL: command not found".
    const std::size_t place = line.find(begin);
    if (place == 0 || (place != std::string::npos && line.ends_with("command not found")))
      return place == 0 ? line.substr(begin.size()) : line.substr(place);
  }
  return {};
}

QuickCommands::Answer QuickCommands::bash(const std::string& command) {
  return run({"/bin/bash", "-c", command});
}

QuickCommands::Answer QuickCommands::run(const std::vector<std::string>& arguments) {
  HostTools::Outcome outcome = HostTools::run(arguments);
  Answer answer{std::string(trimmed(outcome.output)), std::move(outcome.errors)};
  if (outcome.status < 0) answer.errors = arguments.front() + ": it could not be started\n";
  return answer;
}

SwitchState QuickCommands::meant(bool isOn, std::string reason) {
  return {isOn && reason.empty(), std::move(reason)};
}

}  // namespace brisko

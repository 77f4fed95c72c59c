#include "SwitchCommand.h"

#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "QuickActions.h"
#include "SystemLog.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <chrono>
#include <optional>
#include <thread>

namespace brisko {
namespace {

struct Shown {
  const QuickAction* action;
  SwitchState state;
};

std::string document(const std::vector<Shown>& all) {
  Json switches = Json::array();
  for (const Shown& each : all) {
    Json json;
    json["index"] = each.action->index;
    json["name"] = each.action->name;
    json["state"] = each.action->hasState ? Json(each.state.isOn) : Json();
    json["label"] = each.action->hasState ? QuickActions::label(each.state.isOn) : "";
    if (!each.state.reason.empty()) json["reason"] = replacedUtf8(each.state.reason);
    switches.push_back(std::move(json));
  }
  return documentText({{"switches", std::move(switches)}});
}

std::string notPossible(const std::string& reason) {
  std::string text = QuickActions::kNotPossible;
  return text.replace(text.find("%@"), 2, escapedForDisplay(reason));
}

std::string text(const std::vector<Shown>& all) {
  const Style style = Style::ofStandardOutput();
  std::string lines;
  for (const auto& [action, state] : all) {
    const char* label = action->hasState ? QuickActions::label(state.isOn) : "";
    const std::string told = state.reason.empty() ? action->toolTip : notPossible(state.reason);
    const std::string shown = leftAligned(label, 9);
    lines += fmt::format("{} {} {} {}\n", action->index, leftAligned(action->name, 16),
                         state.isOn ? style.accent(shown) : shown, style.dim(told));
  }
  return lines;
}

bool show(const std::vector<Shown>& all, const GlobalOptions& global) {
  return writeOut(global.json ? document(all) : text(all));
}

std::string wouldText(const QuickAction& action, bool isWanted, bool isDifferent) {
  const char* state = isWanted ? "on" : "off";
  return isDifferent ? fmt::format("Would turn {} {}.\n", action.name, state)
                     : fmt::format("{} is {} already.\n", action.name, state);
}

// What keeps the machine awake goes with the process.
void waitForInterruption() {
  writeError("the machine is kept awake until this command is interrupted");
  while (!Interruption::happened())
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

}  // namespace

void SwitchCommand::declare(CLI::App& app) {
  app.add_option("SWITCH", words_,
                 "Name or number as printed, then on or off; only a name starts what has no state, "
                 "or shows the state; nothing shows all");
}

const QuickAction* SwitchCommand::checkedAction() const {
  if (words_.empty()) return nullptr;
  const QuickAction* action = QuickActions::find(words_[0]);
  if (action == nullptr) {
    throw WrongUsage(
        fmt::format("switch: no switch \"{}\"; see \"brisko switch\" for all", words_[0]));
  }
  if (words_.size() > 2) throw WrongUsage("switch: takes one name, and on or off");
  if (words_.size() == 2 && words_[1] != "on" && words_[1] != "off") {
    throw WrongUsage(fmt::format("switch: \"{}\" is neither on nor off", words_[1]));
  }
  if (words_.size() == 2 && !action->hasState && words_[1] == "off")
    throw WrongUsage(fmt::format("switch: {} cannot be turned off", action->name));
  return action;
}

// The state that is shown afterwards is one that was looked for, not the one that was meant.
int SwitchCommand::change(const QuickAction& action, const GlobalOptions& global) const {
  const bool isWanted = words_.size() < 2 || words_[1] == "on";
  SwitchState state = QuickActions::read(action.index);
  const bool isDifferent = !action.hasState || state.isOn != isWanted || !state.reason.empty();
  if (isDifferent && !global.dryRun) {
    const SwitchState meant = QuickActions::turn(action.index, isWanted);
    state = action.hasState ? QuickActions::read(action.index) : SwitchState();
    if (!meant.reason.empty()) state.reason = meant.reason;
  }
  const bool isPlan = global.dryRun && !global.json && state.reason.empty();
  const bool isShown = isPlan ? writeOut(wouldText(action, isWanted, isDifferent))
                              : show({{&action, state}}, global);
  if (!state.reason.empty()) {
    writeError(fmt::format("{}: {}", action.name, state.reason));
    return kNotDone;
  }
  if (action.hasState && state.isOn != isWanted && !global.dryRun) {
    writeError(fmt::format("{}: it did not change", action.name));
    return kNotDone;
  }
  if (action.index == QuickActions::kKeepAwake && state.isOn) {
    waitForInterruption();
    return kInterrupted;
  }
  return isShown ? kDone : kNotDone;
}

int SwitchCommand::execute(const GlobalOptions& global) {
  const QuickAction* chosen = checkedAction();
  if (chosen != nullptr && (words_.size() == 2 || !chosen->hasState))
    return change(*chosen, global);
  std::vector<Shown> all;
  for (const QuickAction& action : QuickActions::all()) {
    if (Interruption::happened()) return kInterrupted;
    if (chosen == nullptr || chosen == &action)
      all.push_back({&action, QuickActions::read(action.index)});
  }
  return show(all, global) ? kDone : kNotDone;
}

}  // namespace brisko

#include "CloseCommand.h"

#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"
#include "TaskManagerModel.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;
using Rows = std::vector<TaskManagerInfo>;

constexpr std::chrono::seconds kPatience{5};

bool hasEnded(const TaskManagerInfo& row) {
  return !TaskManagerModel::isStillThere(row);
}

/// Asks each to end and waits until all have, or for five seconds.
void close(const Rows& rows) {
  for (const TaskManagerInfo& row : rows)
    TaskManagerModel::close(row);
  const Clock::time_point end = Clock::now() + kPatience;
  Dispatch::runUntil([&] {
    return std::all_of(rows.begin(), rows.end(), hasEnded) || Clock::now() > end ||
           Interruption::happened();
  });
}

std::string outcome(const Rows& rows, const GlobalOptions& global) {
  Json items = Json::array();
  std::string lines;
  for (const TaskManagerInfo& row : rows) {
    const bool isClosed = !global.dryRun && hasEnded(row);
    const std::string name = escapedForDisplay(row.name);
    items.push_back({{"name", replacedUtf8(row.name)}, {"pID", row.pID}, {"closed", isClosed}});
    lines += global.dryRun ? fmt::format("Would close {} ({}).\n", name, row.pID)
             : isClosed    ? fmt::format("Closed {} ({}).\n", name, row.pID)
                           : fmt::format("Still running: {} ({}).\n", name, row.pID);
  }
  return global.json ? documentText({{"items", std::move(items)}}) : lines;
}

}  // namespace

void CloseCommand::declare(CLI::App& app) {
  app.add_option("PID", processes_, "Process numbers, as \"brisko processes\" prints them")
      ->required();
}

Rows CloseCommand::named() const {
  TaskManagerModel model;
  model.getAllProcess();
  Dispatch::runUntil([&] { return !model.isReading() || Interruption::happened(); });
  Rows rows;
  for (const std::string& process : processes_) {
    const auto& all = model.allApplications();
    const auto found = std::find_if(all.begin(), all.end(), [&](const TaskManagerInfo& row) {
      return std::to_string(row.pID) == process;
    });
    if (found == all.end() && !Interruption::happened()) {
      throw WrongUsage(fmt::format("close: \"{}\" is no running application of yours", process));
    }
    const bool isTwice = std::any_of(rows.begin(), rows.end(), [&](const TaskManagerInfo& row) {
      return std::to_string(row.pID) == process;
    });
    if (found != all.end() && !isTwice) rows.push_back(*found);
  }
  return rows;
}

int CloseCommand::execute(const GlobalOptions& global) {
  if (!global.yes && !global.dryRun && !canConfirm()) {
    throw WrongUsage("close ends applications: say --yes when nobody can be asked");
  }
  const Rows rows = named();
  if (Interruption::happened()) return kInterrupted;
  if (!global.dryRun) {
    const std::string question = fmt::format("Close {}?", counted(rows.size(), "application"));
    if (!global.yes && !confirm(question)) {
      writeError("nothing was closed");
      return Interruption::happened() ? kInterrupted : kNotDone;
    }
    close(rows);
  }
  if (!writeOut(outcome(rows, global))) return kNotDone;
  if (Interruption::happened()) return kInterrupted;
  return global.dryRun || std::all_of(rows.begin(), rows.end(), hasEnded) ? kDone : kNotDone;
}

}  // namespace brisko

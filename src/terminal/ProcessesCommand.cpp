#include "ProcessesCommand.h"

#include "Dispatch.h"
#include "Interruption.h"
#include "Json.h"
#include "Output.h"
#include "SystemLog.h"
#include "TaskManagerModel.h"

#include <fmt/format.h>

namespace brisko {
namespace {

std::string document(const TaskManagerModel& model) {
  Json items = Json::array();
  for (const TaskManagerInfo& row : model.allApplications()) {
    items.push_back({{"name", replacedUtf8(row.name)},
                     {"pID", row.pID},
                     {"procCpu", row.procCpu},
                     {"procVss", row.procVss},
                     {"procETime", row.procETime}});
  }
  return documentText({{"items", std::move(items)}});
}

std::string text(const TaskManagerModel& model) {
  if (model.allApplications().empty()) return "No application is running.\n";
  const auto line = [](std::string_view pid, std::string_view name, std::string_view cpu,
                       std::string_view memory, std::string_view time) {
    return fmt::format("{} {} {} {} {}\n", rightAligned(pid, 8), leftAligned(name, 32),
                       rightAligned(cpu, 7), rightAligned(memory, 10), rightAligned(time, 12));
  };
  std::string lines =
      Style::ofStandardOutput().dim(line("PID", "Name", "cpu", "memory", "running for"));
  for (const TaskManagerInfo& row : model.allApplications()) {
    lines +=
        line(std::to_string(row.pID), escapedForDisplay(TaskManagerModel::cellText(row, "Name")),
             TaskManagerModel::cellText(row, "cpu"), TaskManagerModel::cellText(row, "memroy"),
             TaskManagerModel::cellText(row, "time"));
  }
  return lines;
}

}  // namespace

int ProcessesCommand::execute(const GlobalOptions& global) {
  TaskManagerModel model;
  model.getAllProcess();
  Dispatch::runUntil([&] { return !model.isReading() || Interruption::happened(); });
  if (Interruption::happened()) return kInterrupted;
  return writeOut(global.json ? document(model) : text(model)) ? kDone : kNotDone;
}

}  // namespace brisko

#include "TaskManagerModel.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "Host.h"
#include "HostTools.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace brisko {
namespace {

constexpr const char* kOwnName = "Brisko";

UsageText usageText(double fraction) {
  return {fmt::format("{:.1f}%", fraction * 100), fraction > 0.5};
}

std::string withoutSuffix(std::string name) {
  constexpr std::string_view kSuffix = ".app";
  for (std::size_t at = name.find(kSuffix); at != std::string::npos; at = name.find(kSuffix, at)) {
    name.erase(at, kSuffix.size());
  }
  return name;
}

std::uint64_t beginningOf(std::int32_t process) {
  return Host::current().workspace->processBeginning(process);
}

}  // namespace

TaskManagerModel::TaskManagerModel() = default;
TaskManagerModel::~TaskManagerModel() = default;

template <typename Work, typename Take>
void TaskManagerModel::inBackground(Work work, Take take) {
  Dispatch::global(
      [life = std::weak_ptr<int>(life_), work = std::move(work), take = std::move(take)] {
        auto result = work();
        Dispatch::mainAsync([life, take, result = std::move(result)]() mutable {
          if (!life.expired()) take(std::move(result));
        });
      });
}

void TaskManagerModel::start() {
  samplers_->cpuCount = static_cast<std::uint32_t>(std::max(samplers_->cpuMonitor.getNumCPUs(), 0));
  getAllProcess();
  updateSysStat();
}

TaskManagerInfo TaskManagerModel::rowOf(const LaunchedApplication& application) {
  TaskManagerInfo row;
  row.name = application.name;
  row.pID = application.processIdentifier;
  row.image = application.iconName.empty() ? Host::current().workspace->iconName(application.path)
                                           : application.iconName;
  row.began = beginningOf(row.pID);
  return row;
}

TaskManagerModel::Reading TaskManagerModel::read(bool withFigures) {
  Reading reading;
  for (const LaunchedApplication& each : Host::current().workspace->launchedApplications()) {
    TaskManagerInfo row = rowOf(each);
    // What has no name is no application to people; what has no beginning has ended meanwhile.
    if (row.name.empty() || row.began == 0) continue;
    ++reading.launched;
    if (row.name != kOwnName) reading.rows.push_back(std::move(row));
  }
  if (withFigures) reading.figures = readProcessList();
  return reading;
}

void TaskManagerModel::getAllProcess() {
  if (std::exchange(isReading_, true)) return;
  closedMeanwhile_.clear();
  inBackground([] { return read(true); }, [this](Reading reading) { take(std::move(reading)); });
}

void TaskManagerModel::take(Reading reading) {
  isReading_ = false;
  for (TaskManagerInfo& row : reading.rows) {
    const auto known = std::find_if(allApplications_.begin(), allApplications_.end(),
                                    [&](const auto& each) { return each.pID == row.pID; });
    if (known == allApplications_.end()) {
      if (!wasClosedMeanwhile(row)) allApplications_.push_back(std::move(row));
    } else if (known->began != row.began) {
      *known = std::move(row);  // its number went to another application
    }
  }
  if (reading.figures) processListWithPS(*reading.figures);
  if (listener_ != nullptr) listener_->rowsChanged();
}

// The reading began before the application was closed, and so still lists it.
bool TaskManagerModel::wasClosedMeanwhile(const TaskManagerInfo& row) const {
  return std::any_of(closedMeanwhile_.begin(), closedMeanwhile_.end(), [&](const auto& closed) {
    return closed.pID == row.pID && closed.began == row.began;
  });
}

void TaskManagerModel::processListWithPS(const ProcessList& figures) {
  for (TaskManagerInfo& row : allApplications_) {
    const auto found = figures.find(std::to_string(row.pID));
    if (found == figures.end()) continue;
    row.procCpu = found->second.pcpu;
    row.procVss = found->second.vsz;
    row.procETime = found->second.etime;
  }
}

void TaskManagerModel::checkApp() {
  if (isReading_) return;
  isReading_ = true;
  inBackground([] { return read(false); },
               [this](const Reading& reading) {
                 isReading_ = false;
                 if (reading.launched - 1 != allApplications_.size()) getAllProcess();
               });
}

TaskManagerModel::Usage TaskManagerModel::sample(Samplers& samplers) {
  Usage usage;
  const auto cores = samplers.cpuMonitor.monitorCPU();
  if (cores && !cores->empty() && cores->size() == samplers.cpuCount) {
    usage.cpu = usageText(load(*cores));
  }
  const SSMemoryInfo memory = samplers.memoryMonitor.usagePercent();
  if (memory.totalMemory > 0) {
    usage.memory =
        usageText(static_cast<double>(memory.usedMomory) / static_cast<double>(memory.totalMemory));
  }
  return usage;
}

void TaskManagerModel::updateSysStat() {
  if (std::exchange(isSampling_, true)) return;
  inBackground([samplers = samplers_] { return sample(*samplers); },
               [this](Usage usage) {
                 isSampling_ = false;
                 if (usage.cpu) cpuUsage_ = std::move(*usage.cpu);
                 memoryUsage_ = std::move(usage.memory);
                 if (listener_ != nullptr) listener_->usageChanged();
               });
}

void TaskManagerModel::changeCpuAndMemory() {
  updateSysStat();
  checkApp();
}

double TaskManagerModel::load(const std::vector<CpuLoad>& cores) {
  double user = 0;
  double system = 0;
  double total = 0;
  for (const CpuLoad& core : cores) {
    user += core.user;
    system += core.system;
    total += user + system;
  }
  return cores.empty() ? 0 : std::clamp(total / static_cast<double>(cores.size()), 0.0, 1.0);
}

void TaskManagerModel::changeCloseButtonState(std::size_t row) {
  if (row >= allApplications_.size()) return;
  allApplications_[row].bIsSelected = !allApplications_[row].bIsSelected;
  if (listener_ != nullptr) listener_->rowsChanged();
}

void TaskManagerModel::setAllSelectOrNoSelect(bool isSelected) {
  for (TaskManagerInfo& row : allApplications_)
    row.bIsSelected = isSelected;
  if (listener_ != nullptr) listener_->rowsChanged();
}

std::size_t TaskManagerModel::selectedCount() const {
  return static_cast<std::size_t>(
      std::count_if(allApplications_.begin(), allApplications_.end(),
                    [](const TaskManagerInfo& row) { return row.bIsSelected; }));
}

const char* TaskManagerModel::selectAllImage() const {
  const std::size_t selected = selectedCount();
  if (selected == 0) return "unsel";
  return selected == allApplications_.size() ? "sel" : "halfsel";
}

const char* TaskManagerModel::selectImage(const TaskManagerInfo& row) {
  return row.bIsSelected ? "sel" : "unsel";
}

bool TaskManagerModel::isStillThere(const TaskManagerInfo& row) {
  return row.began != 0 && beginningOf(row.pID) == row.began;
}

void TaskManagerModel::close(const TaskManagerInfo& row) {
  // The number of one that has ended may be another process's by now.
  if (isStillThere(row)) doCloseWithPID(std::to_string(row.pID));
}

void TaskManagerModel::closeButtonAction() {
  for (const TaskManagerInfo& row : allApplications_) {
    if (!row.bIsSelected) continue;
    close(row);
    closedMeanwhile_.push_back(row);
  }
  std::erase_if(allApplications_, [](const TaskManagerInfo& row) { return row.bIsSelected; });
  if (listener_ != nullptr) listener_->rowsChanged();
}

void TaskManagerModel::doCloseWithPID(const std::string& pid) {
  Dispatch::global([pid] { HostTools::run({HostTools::path("/bin/kill"), pid}); });
}

std::string TaskManagerModel::cellText(const TaskManagerInfo& row, std::string_view column) {
  if (column == "Name") return withoutSuffix(row.name);
  if (column == "Size") return CommUti::longlongDiskSize(static_cast<std::uint64_t>(row.memSize));
  // Without an answer from "ps" there is no figure, and none is made up.
  if (column == "cpu") return row.procCpu.empty() ? "" : row.procCpu + "%";
  if (column == "time") return row.procETime;
  if (column == "memroy" && !row.procVss.empty()) {
    return CommUti::longlongDiskSize(std::strtoull(row.procVss.c_str(), nullptr, 10));
  }
  return {};
}

}  // namespace brisko

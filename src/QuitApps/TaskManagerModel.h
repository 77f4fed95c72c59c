#pragma once

#include "ProcessList.h"
#include "SSCpuMonitor.h"
#include "SSMemoryMonitor.h"
#include "TaskManagerInfo.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

struct LaunchedApplication;

/// What the model tells, on the main thread.
class TaskManagerListener {
 public:
  virtual ~TaskManagerListener() = default;
  virtual void rowsChanged() = 0;
  virtual void usageChanged() = 0;
};

/// A usage label.
struct UsageText {
  std::string text;        ///< "12.5%"; empty before the first sample
  bool isWarning = false;  ///< above half
};

/// The Memory Manager: running applications with their figures, and closing them. Main thread only;
/// what takes time happens in the background.
class TaskManagerModel {
 public:
  static constexpr int kInterval = 5000;  ///< milliseconds between two calls of changeCpuAndMemory

  TaskManagerModel();
  ~TaskManagerModel();
  TaskManagerModel(const TaskManagerModel&) = delete;
  TaskManagerModel& operator=(const TaskManagerModel&) = delete;

  void setListener(TaskManagerListener* listener) { listener_ = listener; }

  /// The first rows and the first sample.
  void start();

  /// Adds rows for applications that have none yet, then the figures of all. Rows of applications
  /// that have ended stay; this program itself is never one.
  void getAllProcess();
  /// The same when the number of launched applications says that rows are missing.
  void checkApp();
  void updateSysStat();
  void changeCpuAndMemory();
  void refButtonAction() { getAllProcess(); }

  /// Ticks or unticks a row.
  void changeCloseButtonState(std::size_t row);
  void setAllSelectOrNoSelect(bool isSelected);

  /// Asks every ticked application to end, in row order, and drops its row. Does not wait.
  void closeButtonAction();
  /// Asks the process of one row to end, if it is still the one that was listed.
  static void close(const TaskManagerInfo& row);
  /// Asks a process to end, by its number in decimal. Failures are not reported.
  static void doCloseWithPID(const std::string& pid);

  bool isReading() const { return isReading_; }
  const std::vector<TaskManagerInfo>& allApplications() const { return allApplications_; }
  std::size_t selectedCount() const;
  bool closeButtonEnabled() const { return selectedCount() > 0; }
  const char* selectAllImage() const;  ///< "sel", "halfsel" or "unsel"
  static const char* selectImage(const TaskManagerInfo& row);

  const UsageText& cpuUsage() const { return cpuUsage_; }
  const UsageText& memoryUsage() const { return memoryUsage_; }

  /// A cell by its column: "Name", "Size", "cpu", "time" or "memroy"; empty for any other, and
  /// where "ps" told nothing of the process.
  static std::string cellText(const TaskManagerInfo& row, std::string_view column);

  /// The load that is shown, 0 to 1. Sums of the cores up to each core are added up, not the cores,
  /// so the first one weighs most.
  static double load(const std::vector<CpuLoad>& cores);

  /// Whether the process of the row is still the one that was listed.
  static bool isStillThere(const TaskManagerInfo& row);

 private:
  struct Reading {
    std::vector<TaskManagerInfo> rows;
    std::size_t launched = 0;
    std::optional<ProcessList> figures;
  };
  struct Usage {
    std::optional<UsageText> cpu;
    UsageText memory;
  };

  // Touched by one background task at a time; shared so that it outlives the model.
  struct Samplers {
    SSCpuMonitor cpuMonitor;
    SSMemoryMonitor memoryMonitor;
    std::uint32_t cpuCount = 0;
  };

  static Reading read(bool withFigures);
  static TaskManagerInfo rowOf(const LaunchedApplication& application);
  void take(Reading reading);
  bool wasClosedMeanwhile(const TaskManagerInfo& row) const;
  /// Fills the figures into the rows; one that is not told of keeps those it had.
  void processListWithPS(const ProcessList& figures);
  static Usage sample(Samplers& samplers);
  /// Runs `work` in the background and hands what it gives to `take`, unless the model is gone.
  template <typename Work, typename Take>
  void inBackground(Work work, Take take);

  TaskManagerListener* listener_ = nullptr;
  std::vector<TaskManagerInfo> allApplications_;
  std::vector<TaskManagerInfo> closedMeanwhile_;  ///< since the reading began that is under way
  bool isReading_ = false;
  bool isSampling_ = false;
  UsageText cpuUsage_;
  UsageText memoryUsage_;

  std::shared_ptr<Samplers> samplers_ = std::make_shared<Samplers>();
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace brisko

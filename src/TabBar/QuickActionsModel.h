#pragma once

#include "QuickActions.h"

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace brisko {

/// The switches as they are shown. Main thread only; what the switches run is run in the
/// background, one after the other in the order it was asked for.
class QuickActionsModel {
 public:
  struct Row {
    const QuickAction* action = nullptr;
    SwitchState state;

    /// "Active" or "Disabled"; empty for what has no state.
    const char* label() const;
    const char* icon() const;
  };

  QuickActionsModel();
  ~QuickActionsModel();
  QuickActionsModel(const QuickActionsModel&) = delete;
  QuickActionsModel& operator=(const QuickActionsModel&) = delete;

  /// Told, on the main thread, the index of a row that changed.
  void setListener(std::function<void(int index)> listener) { listener_ = std::move(listener); }

  /// Reads the state of every switch.
  void load();
  /// Reads one again.
  void refresh(int index);
  /// A press on a switch's button. Ignored while the switch is being changed.
  void press(int index);

  const Row& row(int index) const { return rows_.at(static_cast<std::size_t>(index - 1)); }
  /// Whether nothing is being read or changed.
  bool isIdle() const { return jobs_.empty(); }

 private:
  struct Job {
    int index = 0;
    bool isChange = false;
  };

  void add(Job job);
  void runNext();
  void take(int index, SwitchState state);
  Row& at(int index) { return rows_.at(static_cast<std::size_t>(index - 1)); }

  std::array<Row, QuickActions::kCount> rows_;
  std::deque<Job> jobs_;  ///< the first one is at work
  std::function<void(int)> listener_;
  std::shared_ptr<int> life_ = std::make_shared<int>();  ///< gone when a late answer has no owner
};

}  // namespace brisko

#include "QuickActionsModel.h"

#include "Dispatch.h"
#include "PreventSleep.h"

#include <algorithm>
#include <utility>

namespace brisko {

const char* QuickActionsModel::Row::label() const {
  return action->hasState ? QuickActions::label(state.isOn) : "";
}

const char* QuickActionsModel::Row::icon() const {
  return state.isOn ? action->iconOn : action->iconOff;
}

QuickActionsModel::QuickActionsModel() {
  for (std::size_t i = 0; i < rows_.size(); ++i)
    rows_[i].action = &QuickActions::all()[i];
  // The machine may be kept awake since an earlier panel.
  at(QuickActions::kKeepAwake).state.isOn = isSleepPrevented();
}

QuickActionsModel::~QuickActionsModel() = default;

void QuickActionsModel::load() {
  for (const Row& each : rows_)
    if (each.action->hasState) refresh(each.action->index);
}

void QuickActionsModel::refresh(int index) {
  const bool isWaiting = std::any_of(jobs_.begin(), jobs_.end(), [&](const Job& job) {
    return job.index == index && (job.isChange || &job != &jobs_.front());
  });
  if (!isWaiting) add({index, false});
}

void QuickActionsModel::press(int index) {
  const bool isChanging = std::any_of(jobs_.begin(), jobs_.end(), [&](const Job& job) {
    return job.index == index && job.isChange;
  });
  if (!isChanging) add({index, true});
}

void QuickActionsModel::add(Job job) {
  // A press goes before what only waits to be read.
  auto place = jobs_.end();
  if (job.isChange && !jobs_.empty()) {
    place = std::find_if(jobs_.begin() + 1, jobs_.end(),
                         [&](const Job& each) { return !each.isChange; });
    // The state that the press is about has to be known.
    const auto reading =
        std::find_if(place, jobs_.end(), [&](const Job& each) { return each.index == job.index; });
    if (reading != jobs_.end()) place = reading + 1;
  }
  jobs_.insert(place, job);
  if (jobs_.size() == 1) runNext();
}

void QuickActionsModel::runNext() {
  const Job job = jobs_.front();
  Dispatch::global([this, job, isOn = row(job.index).state.isOn, life = std::weak_ptr(life_)] {
    SwitchState state =
        job.isChange ? QuickActions::toggle(job.index, isOn) : QuickActions::read(job.index);
    Dispatch::mainAsync([this, job, life, state = std::move(state)]() mutable {
      if (!life.expired()) take(job.index, std::move(state));
    });
  });
}

void QuickActionsModel::take(int index, SwitchState state) {
  jobs_.pop_front();
  at(index).state = std::move(state);
  if (!jobs_.empty()) runNext();
  if (listener_) listener_(index);
}

}  // namespace brisko

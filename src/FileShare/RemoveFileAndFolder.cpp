#include "RemoveFileAndFolder.h"

#include "Dispatch.h"
#include "EraserTask.h"
#include "Host.h"
#include "SystemLog.h"
#include "TaskTermination.h"

#include <algorithm>

#include <unistd.h>

namespace brisko {

RemoveFileAndFolder::~RemoveFileAndFolder() {
  if (observation_ != 0) TaskTermination::stopObserving(observation_);
  if (pErase_) *pErase_ = true;
}

int RemoveFileAndFolder::getEraserTimes() const {
  if (eraserTimes_) return std::max(*eraserTimes_, 1);
  Preferences* preferences = Host::current().preferences.get();
  if (preferences == nullptr) return 1;
  const std::int64_t times =
      preferences->value(Preferences::kApplicationDomain, "EraserTimes").integer();
  return static_cast<int>(std::clamp<std::int64_t>(times, 1, 1000));
}

std::string RemoveFileAndFolder::optionsFor(const FileObj& item) const {
  if (item.isSSD) return "-fsvrz";
  switch (getEraserTimes()) {
    case 3:
      return "-fEvrz";
    case 7:
      return "-fmvrz";
    case 35:
      return "-fvrz";
    default:
      return "-fsvrz";
  }
}

void RemoveFileAndFolder::report(float progress) {
  if (delegate != nullptr) delegate->removeProgress(filePathStr, progress);
}

void RemoveFileAndFolder::benginToTraskWithArr(FileObjs items) {
  deleteErrorArr.clear();
  notes_.clear();
  listedNames_.clear();
  allFilesArr = std::move(items);
  for (const auto& item : allFilesArr) {
    if (item->links > 1 && item->identity) {
      ++listedNames_[{item->identity->device, item->identity->inode}];
    }
  }
  cancelled_ = false;
  if (observation_ == 0) observation_ = TaskTermination::observe([this] { doneErasing(); });
  idx = 0;
  if (allFilesArr.empty()) return doneErasing();
  filePathStr = allFilesArr.front()->url;
  report(allFilesArr.size() == 1 ? 30.0F : 0.0F);
  runTaskWithPath();
}

// A name may go only with all the others: when they are in the list, or when that was asked for.
std::uint64_t RemoveFileAndFolder::namesFor(const FileObj& item) const {
  if (erasesAllNames_) return 0;
  if (item.links <= 1 || !item.identity) return 1;
  const auto found = listedNames_.find({item.identity->device, item.identity->inode});
  return found == listedNames_.end() ? 1 : found->second;
}

// A bundle in a folder that was expanded has its contents in the list, right before it. What could
// not be erased of them must not go with it.
RemoveFileAndFolder::Work RemoveFileAndFolder::workFor(std::size_t place) const {
  const FileObj& item = *allFilesArr[place];
  if (!item.isDir) return item.size != 0 ? Work::tool : Work::item;
  const bool isExpanded = place > 0 && isBelow(allFilesArr[place - 1]->url, item.url);
  return isAppBundle(item) && !isExpanded ? Work::bundle : Work::folder;
}

void RemoveFileAndFolder::runTaskWithPath() {
  if (idx >= allFilesArr.size()) return;
  const std::shared_ptr<FileObj> item = allFilesArr[idx];
  filePathStr = item->url;
  SystemLog::line("-------::{}", filePathStr);
  deleteErrorArr.push_back(item);
  const Work work = workFor(idx);
  auto task = std::make_shared<EraserTask>(*item, optionsFor(*item), namesFor(*item));
  auto terminated = std::make_shared<std::atomic<bool>>(false);
  pErase_ = terminated;
  Dispatch::global([self = weak_from_this(), item, task, work, terminated] {
    EraserOutcome outcome;
    switch (work) {
      case Work::tool:
        outcome = task->erase(*terminated);
        break;
      case Work::folder:
        outcome = task->removeFolder();
        break;
      case Work::item:
      case Work::bundle:
        outcome = task->removeItem(*terminated);
        break;
    }
    Dispatch::mainAsync([self, item, work, outcome = std::move(outcome)] {
      if (const auto engine = self.lock()) engine->taskEnded(item, work, outcome);
    });
  });
}

void RemoveFileAndFolder::taskEnded(const std::shared_ptr<FileObj>& item, Work work,
                                    const EraserOutcome& outcome) {
  // A bundle counts as done whatever came of it; whether it is gone is looked at at the end.
  const bool isSuccess = outcome.isSuccess || work == Work::bundle;
  item->failStr = isSuccess ? "Success" : "Fail";
  item->reason = outcome.reason;
  std::vector<std::string> notes = outcome.notes;
  if (work == Work::bundle && outcome.isSuccess) {
    notes.push_back("An application bundle is deleted as a whole, without being overwritten.");
  }
  for (std::string& note : notes) {
    if (std::find(notes_.begin(), notes_.end(), note) == notes_.end()) {
      notes_.push_back(std::move(note));
    }
  }
  if (work == Work::item) {
    SystemLog::line("rm file {} {}", isSuccess ? "sec" : "fail", item->url);
  } else if (!isSuccess) {
    if (work == Work::tool) SystemLog::line("--没有权限--------{}", item->url);
    SystemLog::line("Erasing failed: {}: {}", item->url, outcome.reason);
  }
  if (!isSuccess && work != Work::item && delegate != nullptr) delegate->haveFailEraser();
  if (work == Work::tool) {
    TaskTermination::post();
  } else {
    doneErasing();
  }
}

void RemoveFileAndFolder::doneErasing() {
  const auto count = static_cast<std::uint32_t>(allFilesArr.size());
  idx = std::min(idx + 1, count);
  pErase_.reset();
  if (idx < count && !cancelled_) {
    const std::uint32_t percent = static_cast<std::uint32_t>(std::uint64_t{idx} * 100 / count);
    filePathStr = allFilesArr[idx]->url;
    report(percent == 100 ? 98.0F : static_cast<float>(percent));
    runTaskWithPath();
    return;
  }
  if (observation_ == 0) return;  // a process ended after the run had
  TaskTermination::stopObserving(observation_);
  observation_ = 0;
  // What the disks still hold back is written out; that can take its time.
  Dispatch::global([self = weak_from_this()] {
    ::sync();
    Dispatch::mainAsync([self] {
      const auto engine = self.lock();
      if (engine && engine->delegate != nullptr) {
        engine->delegate->removeObjEnd(engine->deleteErrorArr);
      }
    });
  });
}

void RemoveFileAndFolder::isCancel() {
  cancelled_ = true;
  if (pErase_) *pErase_ = true;
}

}  // namespace brisko

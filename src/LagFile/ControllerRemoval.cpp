// Removing what is ticked.

#include "Controller.h"
#include "Dispatch.h"
#include "FileFilter.h"
#include "SystemLog.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

// Between two reports of the same point: one for each of a hundred thousand entries would take
// longer than removing them.
constexpr std::chrono::milliseconds kReportInterval{50};

int pointOf(std::size_t done, std::size_t count) {
  return count == 1 ? 30 : static_cast<int>(done * 100 / count);
}

}  // namespace

/// One removal, shared with its worker, which touches no entry of the tree: what it needs was
/// copied before.
struct Controller::Removal {
  struct Item {
    FileNode* node;  ///< for the main thread only
    std::string path;
    FileIdentity shown;
  };
  struct Outcome {
    std::size_t item;
    RemovalReport report;
  };
  std::vector<Item> items;
  std::atomic<bool> stop = false;
  Controller* controller = nullptr;  ///< null once that is gone; main thread only
  std::vector<Outcome> outcomes;  ///< the worker's, and the main thread's while that waits for it
};

Controller::~Controller() {
  stopScan();
  if (!removal_) return;
  removal_->stop = true;
  removal_->controller = nullptr;
}

void Controller::deleteFilesWithDic(const std::vector<FileNode*>& nodes,
                                    std::vector<FileNode*>& deleteArr) {
  std::vector<std::pair<const std::vector<FileNode*>*, std::size_t>> way = {{&nodes, 0}};
  while (!way.empty()) {
    auto& [list, next] = way.back();
    if (next == list->size()) {
      way.pop_back();
      continue;
    }
    FileNode* node = (*list)[next++];
    if (node->state == TickState::on) {
      deleteArr.push_back(node);
    } else if (node->state == TickState::partly && node->folder != nullptr) {
      way.emplace_back(&node->children(), 0);
    }
  }
}

bool Controller::deleteFilesWithDic() {
  if (!mayTick() || aRootArr().empty()) return false;
  std::vector<FileNode*> deleteArr;
  deleteFilesWithDic(aRootArr(), deleteArr);
  removeSelectFilesWithDic(deleteArr);
  return isRemoving();
}

void Controller::removeSelectFilesWithDic(const std::vector<FileNode*>& deleteArr) {
  if (!mayTick() || deleteArr.empty()) return;
  removedPaths_.clear();
  failures_.clear();
  freedBytes_ = 0;
  isStopRemove_ = false;
  removal_ = std::make_shared<Removal>();
  removal_->controller = this;
  removal_->items.reserve(deleteArr.size());
  for (FileNode* node : deleteArr)
    removal_->items.push_back({node, node->_path(), node->identity()});
  Dispatch::global([removal = removal_] { removeInBackground(removal); });
}

void Controller::stopRemove() {
  if (!removal_) return;
  isStopRemove_ = true;
  removal_->stop = true;
}

void Controller::removeInBackground(const std::shared_ptr<Removal>& removal) {
  RemovalEngine engine;
  const std::size_t count = removal->items.size();
  int lastPoint = -1;
  Clock::time_point lastTold;
  std::size_t i = 0;
  for (; i < count && !removal->stop; ++i) {
    const Removal::Item& item = removal->items[i];
    const int point = pointOf(i, count);
    if (point != lastPoint || Clock::now() - lastTold >= kReportInterval) {
      Dispatch::mainSync([&] {
        if (removal->controller) removal->controller->reportRemoval(*removal, point, item.path);
      });
      lastPoint = point;
      lastTold = Clock::now();
    }
    RemovalReport report = engine.remove(item.path, item.shown, &removal->stop);
    if (!report.gone()) SystemLog::line("--delete file error ---::{}", report.reason);
    removal->outcomes.push_back({i, std::move(report)});
  }
  Dispatch::mainSync([&] {
    if (removal->controller == nullptr) return;
    removal->controller->untickAll();
    removal->controller->reportRemoval(*removal, 100, removal->items[std::min(i, count - 1)].path);
    removal->controller->endRemoval();
  });
}

void Controller::reportRemoval(Removal& removal, int point, const std::string& path) {
  takeRemoved(removal);
  if (_aDelegate_ != nullptr) _aDelegate_->changeProgressWithPoint(point, path);
}

// Takes what was removed out of the tree. Each folder's list is gone through once, however many of
// its entries went.
void Controller::takeRemoved(Removal& removal) {
  if (removal.outcomes.empty()) return;
  tell(&ControllerDelegate::treeWillChange);
  std::vector<FileNode*> holders;
  for (auto& [item, report] : removal.outcomes) {
    FileNode& node = *removal.items[item].node;
    freedBytes_ += report.freedBytes;
    if (report.removed()) removedPaths_.push_back(removal.items[item].path);
    if (!report.gone()) failures_.push_back({removal.items[item].path, report.reason});
    // Stopped in the middle of it: what is left of it is still there.
    if (report.outcome == RemovalOutcome::cancelled) continue;
    if (report.gone()) eumeRoot_->nodeTreeOperator().takeOut(node);
    node.isGone = true;
    if (node.folder != nullptr) --node.holder->folder->folders;
    holders.push_back(node.holder);
  }
  removal.outcomes.clear();
  std::sort(holders.begin(), holders.end());
  holders.erase(std::unique(holders.begin(), holders.end()), holders.end());
  for (FileNode* holder : holders) {
    std::erase_if(holder->folder->list, [](const FileNode* node) { return node->isGone; });
    if (holder->holder == nullptr) continue;
    holder->state = TickState::off;
    changeChildrenFilNodeStateWithFileNode(*holder, false);
  }
  tell(&ControllerDelegate::treeDidChange);
}

void Controller::endRemoval() {
  removal_.reset();
  tell(&ControllerDelegate::removeEnd);
}

}  // namespace brisko

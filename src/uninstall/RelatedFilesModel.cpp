#include "RelatedFilesModel.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "Host.h"
#include "HostApplications.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <unordered_set>
#include <utility>

namespace brisko {
namespace {

using Role = AMAppItem::Role;

const char* imageOf(RelatedFilesModel::Tick tick) {
  switch (tick) {
    case RelatedFilesModel::Tick::all:
      return "sel";
    case RelatedFilesModel::Tick::some:
      return "halfsel";
    case RelatedFilesModel::Tick::locked:
      return "disable";
    case RelatedFilesModel::Tick::none:
      break;
  }
  return "unsel";
}

std::vector<LaunchedApplication> launched() {
  Workspace* workspace = Host::current().workspace.get();
  return workspace == nullptr ? std::vector<LaunchedApplication>()
                              : workspace->launchedApplications();
}

}  // namespace

/// What the background holds of the model while it looks for entries.
struct RelatedFilesModel::Building {
  std::atomic<bool> stop = false;
  RelatedFilesModel* model = nullptr;  // the main thread's
};

RelatedFilesModel::RelatedFilesModel() {
  show({});
}

void RelatedFilesModel::tell(Tell what) {
  if (listener_ != nullptr) (listener_->*what)();
}

void RelatedFilesModel::setAllRelaltedFiles(const AppItems& chosen, AppItems installed) {
  std::vector<ReviewGroup> groups;
  for (const AppItem& item : chosen) {
    ReviewGroup& group = groups.emplace_back();
    group.item = item;
    group.title = item->name;
  }
  show(std::move(groups));
  building_ = std::make_shared<Building>();
  building_->model = this;
  Dispatch::global([building = building_, chosen, installed = std::move(installed)] {
    const InstalledNames names(installed);
    const std::vector<LaunchedApplication> running = launched();
    for (std::size_t i = 0; i < chosen.size() && !building->stop; ++i) {
      ReviewGroup group = makeReviewGroup(chosen[i], names, running, SizeTime::later);
      Dispatch::mainAsync([building, i, group = std::move(group)]() mutable {
        if (building->model != nullptr) building->model->fill(i, std::move(group));
      });
    }
  });
}

void RelatedFilesModel::show(std::vector<ReviewGroup> groups) {
  if (building_) {
    building_->stop = true;
    building_->model = nullptr;
  }
  // What is still being measured for another review is of no use any more.
  sizes_ = std::make_unique<AppSizes>([this](const AppItems&) {
    tell(&RelatedFilesModelListener::sizesChanged);
    if (isWaitingForSizes_ && isMeasured()) startExecutor();
  });
  groups_ = std::move(groups);
  selectDeletePath_.clear();
  ticked_.clear();
}

void RelatedFilesModel::fill(std::size_t index, ReviewGroup filled) {
  ReviewGroup& group = groups_[index];
  group = std::move(filled);
  for (const AppItem& entry : group.entries) {
    if (entry->startsTicked) select(entry);
    sizes_->ask(entry, false);
  }
  if (listener_ != nullptr) listener_->groupFilled(index);
  tell(&RelatedFilesModelListener::ticksChanged);
}

bool RelatedFilesModel::isComplete() const {
  return std::all_of(groups_.begin(), groups_.end(),
                     [](const ReviewGroup& group) { return group.isReady; });
}

// Ticks.

RelatedFilesModel::Tick RelatedFilesModel::tick(const AppItem& entry) const {
  if (ticked_.contains(entry.get())) return Tick::all;
  if (entry->role == Role::packageAlong) {
    // It goes exactly when the package goes that it belongs to.
    for (const ReviewGroup& group : groups_) {
      const auto& all = group.entries;
      if (std::find(all.begin(), all.end(), entry) == all.end()) continue;
      return ticked_.contains(all.front().get()) ? Tick::all : Tick::none;
    }
  }
  return entry->canBeTicked ? Tick::none : Tick::locked;
}

RelatedFilesModel::Tick RelatedFilesModel::tick(std::size_t group) const {
  std::size_t all = 0;
  std::size_t ticked = 0;
  for (const AppItem& entry : groups_[group].entries) {
    if (!entry->canBeTicked) continue;
    ++all;
    ticked += ticked_.contains(entry.get()) ? 1 : 0;
  }
  if (all == 0) return groups_[group].entries.empty() ? Tick::none : Tick::locked;
  return ticked == 0 ? Tick::none : ticked == all ? Tick::all : Tick::some;
}

const char* RelatedFilesModel::boxImage(std::size_t group) const {
  return imageOf(tick(group));
}

const char* RelatedFilesModel::boxImage(const AppItem& entry) const {
  return imageOf(tick(entry));
}

void RelatedFilesModel::select(const AppItem& entry) {
  if (entry->canBeTicked && ticked_.insert(entry.get()).second) selectDeletePath_.push_back(entry);
}

void RelatedFilesModel::deselect(const AppItem& entry) {
  if (ticked_.erase(entry.get()) > 0) std::erase(selectDeletePath_, entry);
}

void RelatedFilesModel::selectRemoveLanguage(const AppItem& entry) {
  if (isRemoving_) return;
  ticked_.contains(entry.get()) ? deselect(entry) : select(entry);
  tell(&RelatedFilesModelListener::ticksChanged);
}

void RelatedFilesModel::selectRemoveLanguage(std::size_t group) {
  if (isRemoving_) return;
  const AppItems& entries = groups_[group].entries;
  if (tick(group) != Tick::all) {
    for (const AppItem& entry : entries)
      select(entry);
  } else {
    for (const AppItem& entry : entries)
      ticked_.erase(entry.get());
    std::erase_if(selectDeletePath_,
                  [&](const AppItem& entry) { return !ticked_.contains(entry.get()); });
  }
  tell(&RelatedFilesModelListener::ticksChanged);
}

// Figures.

std::string RelatedFilesModel::sizeText(std::size_t group) const {
  std::uint64_t sum = 0;
  for (const AppItem& entry : groups_[group].entries)
    sum += CommUti::volSpaceFromString(entry->size);
  return CommUti::convertVolSpace(sum);
}

std::uint64_t RelatedFilesModel::selectedBytes() const {
  std::unordered_set<std::string> known;
  // A package's figure holds what goes along with it.
  std::set<std::string> along;
  for (const AppItem& entry : selectDeletePath_) {
    if (!entry->plan) continue;
    for (const std::string& name : entry->plan->alsoRemoves)
      along.insert(packageKey(*entry->host, name));
  }
  std::uint64_t sum = 0;
  for (const AppItem& entry : selectDeletePath_) {
    const bool isCounted = entry->plan && along.contains(packageKey(*entry->host));
    if (!isCounted && known.insert(entry->path).second) sum += entry->bytes;
  }
  return sum;
}

std::size_t RelatedFilesModel::selectedCount() const {
  std::unordered_set<std::string> known;
  for (const AppItem& entry : selectDeletePath_)
    known.insert(entry->path);
  return known.size();
}

std::vector<std::string> RelatedFilesModel::warnings() const {
  std::vector<std::string> texts;
  for (const ReviewGroup& group : groups_) {
    if (group.isRunning) {
      texts.push_back(fmt::format("{} is running. It will be removed all the same.", group.title));
    }
    if (!group.refusal.empty()) texts.push_back(fmt::format("{}: {}", group.title, group.refusal));
  }
  return texts;
}

}  // namespace brisko

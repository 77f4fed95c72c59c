#include "DuplicateModel.h"

#include "DuplicateModelRemoval.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include <sys/stat.h>

namespace brisko {
namespace {

constexpr float kCreepingStep = 0.1F;
constexpr float kHighestCreeping = 30;
constexpr float kLowestShown = 6;

// Kept for the life of the program: what is shown never goes backwards, whichever search it is.
float highestShown = 0;

}  // namespace

DuplicateModel::~DuplicateModel() {
  if (duplicateOpt_) duplicateOpt_->stopSearch();
  if (removal_) {
    removal_->stop = true;
    removal_->model = nullptr;
  }
}

void DuplicateModel::tell(Tell what) {
  if (listener_ != nullptr) (listener_->*what)();
}

void DuplicateModel::tellGroup(SimpleTreeNode& group) {
  if (listener_ != nullptr) listener_->groupChanged(&group);
}

// Searching.

bool DuplicateModel::viewDragAction(const std::string& path) {
  struct stat status;
  if (!folderButtonEnabled() || stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return false;
  }
  searchBtnClicked(path);
  return true;
}

void DuplicateModel::clearResult() {
  roots_.fill(nullptr);
  sizes_.fill(0);
  leaves_.fill(0);
  tickedLeaves_.fill(0);
  tickedSize_ = 0;
  segment_ = 0;
  lastColumn_ = DuplicateColumn::none;
  sortDescending_ = false;
  removedPaths_.clear();
  failures_.clear();
  freedBytes_ = 0;
  // The listener lets go of the nodes before they go.
  tell(&DuplicateModelListener::treeReset);
  tree_.reset();
}

void DuplicateModel::searchBtnClicked(const std::string& path) {
  if (!folderButtonEnabled()) return;
  searchPath_ = path;
  while (searchPath_.size() > 1 && searchPath_.ends_with('/'))
    searchPath_.pop_back();
  bSearchFinished_ = false;
  isStopScan_ = false;
  normalPro_ = 0;
  progress_ = 0;
  pathAtWork_ = searchPath_;
  clearResult();
  view_ = DuplicateView::progress;
  duplicateOpt_ = std::make_shared<DuplicateFilesOpt>();
  duplicateOpt_->setSearchOption(option_);
  twDuplicateSearch_ =
      ThreadWorker::workOn([opt = duplicateOpt_, root = searchPath_, limit = limitSize_](
                               const ThreadWorker&) { opt->beginSearchAtPath(root, limit); },
                           [this] { searchFinished(); });
  tell(&DuplicateModelListener::pageChanged);
  tell(&DuplicateModelListener::countsChanged);
  if (listener_ != nullptr) listener_->toProWithValue(0);
}

void DuplicateModel::stopScanBtnClicked() {
  if (!isSearching() || isStopScan_) return;
  isStopScan_ = true;
  duplicateOpt_->stopSearch();
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::returnToFirstView() {
  if (isRemoving()) return;
  view_ = DuplicateView::first;
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::getPathForSreachDuplicate() {
  if (!isSearching()) return;
  getPrograss(duplicateOpt_->getProgress());
  pathAtWork_ = duplicateOpt_->getCurrentSearchFile();
}

void DuplicateModel::getPrograss(std::uint32_t percentage) {
  const auto value = static_cast<float>(percentage);
  if (value >= kLowestShown && value >= highestShown) {
    highestShown = value;
    SystemLog::line("prograssNum--------{:f}", value);
    progress_ = value / 100;
  } else {
    normalPro_ = std::min(kHighestCreeping, normalPro_ + kCreepingStep);
    progress_ = normalPro_ / 100;
  }
  if (listener_ != nullptr) listener_->toProWithValue(progress_);
}

void DuplicateModel::searchFinished() {
  twDuplicateSearch_.reset();
  skipped_ = duplicateOpt_->skipped();
  if (duplicateOpt_->getDuplicateFiles(tree_)) constructSubtrees();
  duplicateOpt_.reset();
  loadValueForSegment(0);
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::delayBtnChangeStateTime() {
  bSearchFinished_ = true;
  pathAtWork_.clear();
  if (!isStopScan_) view_ = DuplicateView::detail;
  tell(&DuplicateModelListener::pageChanged);
}

// What is shown.

void DuplicateModel::constructSubtrees() {
  roots_[0] = &tree_->root();
  for (std::size_t i = 1; i < kDuplicateSegments; ++i)
    roots_[i] = tree_->make(SimpleNodeData::groupDataWithName("Root"));
  for (SimpleTreeNode* group : roots_[0]->children) {
    const int number = duplicateClass(group->nodeData.extendName());
    group->nodeData.Mark = true;
    group->nodeData.fileType = static_cast<std::int8_t>(number);
    const std::size_t segment = kDuplicateClassSegments[static_cast<std::size_t>(number)];
    roots_[segment]->children.push_back(group);
    for (const std::size_t each : {std::size_t{0}, segment}) {
      sizes_[each] += group->nodeData.fileSize;
      leaves_[each] += group->numberOfChildren();
    }
  }
}

std::string DuplicateModel::titleOfSegment(std::size_t segment) const {
  return segment == 0 ? lastPathComponent(searchPath_) : std::string(kDuplicateTitles[segment]);
}

void DuplicateModel::loadValueForSegment(std::size_t segment) {
  if (segment >= kDuplicateSegments) return;
  SystemLog::line("---------{}", segment);
  segment_ = segment;
  tell(&DuplicateModelListener::treeReset);
  tell(&DuplicateModelListener::countsChanged);
}

void DuplicateModel::didClickTableColumn(DuplicateColumn column) {
  if (treeData() == nullptr || column == DuplicateColumn::none || isRemoving()) return;
  sortDescending_ = column == lastColumn_ && !sortDescending_;
  lastColumn_ = column;
  SimpleTreeNode& root = *treeData();
  tell(&DuplicateModelListener::treeWillChange);
  switch (column) {
    case DuplicateColumn::NameColumn:
      sortDescending_ ? root.decendingSortName() : root.acendingSortName();
      break;
    case DuplicateColumn::FileSize:
      sortDescending_ ? root.decendingSortSize() : root.acendingSortSize();
      break;
    default:
      sortDescending_ ? root.decendingSortDate() : root.acendingSortDate();
      break;
  }
  tell(&DuplicateModelListener::treeDidChange);
  tell(&DuplicateModelListener::pageChanged);
}

std::string DuplicateModel::filesText() const {
  return fmt::format("{} files in {}", leaves_[segment_], titleOfSegment(segment_));
}

std::string DuplicateModel::selectedText() const {
  const std::size_t count = selectedCount();
  return fmt::format("selected {} {} in All", count, count == 0 ? "file" : "files");
}

}  // namespace brisko

#include "DuplicateModel.h"

#include "BackgroundDrop.h"
#include "DuplicateModelRemoval.h"
#include "NSNotificationCenter.h"
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

// Folders are listed, then bundles compared, and from half way on files are read.
const char* imageAtWork(const std::string& path, std::uint32_t percentage) {
  if (getFileList::IsAppDirectory(path)) return "ic_app";
  if (percentage < 50) return "ic_folder";
  return duplicateImage(duplicateClass(pathExtension(path)));
}

}  // namespace

DuplicateModel::~DuplicateModel() {
  if (duplicateOpt_) duplicateOpt_->stopSearch();
  endSorting();
  endTicking();
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
  endSorting();
  endTicking();
  auto before = std::exchange(result_, std::make_shared<DuplicateResult>());
  tickedLeaves_.fill(0);
  tickedSize_ = 0;
  segment_ = 0;
  lastColumn_ = DuplicateColumn::none;
  sortDescending_ = false;
  removedPaths_.clear();
  failures_.clear();
  freedBytes_ = 0;
  skipped_.clear();
  // The listener lets go of the nodes before they go.
  tell(&DuplicateModelListener::treeReset);
  dropInBackground(std::move(before));
}

void DuplicateModel::searchBtnClicked(const std::string& path) {
  if (!folderButtonEnabled()) return;
  searchPath_ = path;
  while (searchPath_.size() > 1 && searchPath_.ends_with('/'))
    searchPath_.pop_back();
  bSearchFinished_ = false;
  isFinishDue_ = false;
  isStopScan_ = false;
  normalPro_ = 0;
  progress_ = 0;
  pathAtWork_ = searchPath_;
  pathAtWorkImage_ = "ic_folder";
  clearResult();
  view_ = DuplicateView::progress;
  duplicateOpt_ = std::make_shared<DuplicateFilesOpt>();
  duplicateOpt_->setSearchOption(option_);
  const auto result = std::make_shared<DuplicateResult>();
  twDuplicateSearch_ = ThreadWorker::workOn(
      [opt = duplicateOpt_, result, root = searchPath_, limit = limitSize_](const ThreadWorker&) {
        opt->beginSearchAtPath(root, limit);
        std::unique_ptr<DuplicateTree> tree;
        if (opt->getDuplicateFiles(tree)) result->constructSubtrees(std::move(tree));
      },
      [this, result] { searchFinished(result); });
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
  const std::uint32_t percentage = duplicateOpt_->getProgress();
  getPrograss(percentage);
  pathAtWork_ = duplicateOpt_->getCurrentSearchFile();
  pathAtWorkImage_ = imageAtWork(pathAtWork_, percentage);
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

void DuplicateModel::searchFinished(std::shared_ptr<DuplicateResult> result) {
  twDuplicateSearch_.reset();
  skipped_ = duplicateOpt_->skipped();
  result_ = std::move(result);
  dropInBackground(std::move(duplicateOpt_));
  isFinishDue_ = true;
  loadValueForSegment(0);
  tell(&DuplicateModelListener::pageChanged);
}

void DuplicateModel::delayBtnChangeStateTime() {
  isFinishDue_ = false;
  bSearchFinished_ = true;
  pathAtWork_.clear();
  if (!std::exchange(duplicateScaned_, true)) {
    NSNotificationCenter::defaultCenter().postNotification(
        {"changeViewActionForDuplicate", "", this, {}});
  }
  if (!isStopScan_) view_ = DuplicateView::detail;
  tell(&DuplicateModelListener::pageChanged);
}

// What is shown.

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

std::string DuplicateModel::filesText() const {
  return fmt::format("{} files in {}", leavesOfSegment(segment_), titleOfSegment(segment_));
}

std::string DuplicateModel::selectedText() const {
  const std::size_t count = selectedCount();
  return fmt::format("selected {} {} in All", count, count == 0 ? "file" : "files");
}

}  // namespace brisko

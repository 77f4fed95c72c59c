#include "FastCleanModel.h"

#include "Dispatch.h"
#include "FullDiskAccessAuthorizer.h"

#include <fmt/format.h>

#include <algorithm>

namespace brisko {
namespace {

constexpr const char* kEmptySize = "0.00 KB";
constexpr const char* kSizeColour = "#d2d2d2";
constexpr double kShareOfCategory = 16.7;
constexpr int kFullDiskAccessSystem = 1014;

std::uint64_t shownBytes(const TCTreeNode& node) {
  return CommUti::volSpaceFromString(node.size);
}

bool isEmpty(const TCTreeNode& category) {
  return category.size == kEmptySize;
}

std::size_t selectedCount(const TCTreeNode& category) {
  const auto& entries = category.detailChildren;
  return static_cast<std::size_t>(std::count_if(
      entries.begin(), entries.end(), [](const auto& entry) { return entry->selectState == 1; }));
}

bool isWhollySelected(const TCTreeNode& category) {
  return selectedCount(category) == category.detailChildren.size();
}

}  // namespace

FastCleanModel::FastCleanModel() : lifetime_(std::make_shared<Lifetime>()) {
  lifetime_->model = this;
}

FastCleanModel::~FastCleanModel() {
  lifetime_->model = nullptr;
  if (cleaning_) cleaning_->stop = true;
  if (indexPage_ == 1) FastCleanScanFile::shareInstall().setBeStop(true);
}

void FastCleanModel::setListener(FastCleanModelListener* listener) {
  listener_ = listener;
}

void FastCleanModel::setFullDiskAccessQuestion(std::function<void()> ask) {
  askFullDiskAccess_ = std::move(ask);
}

int FastCleanModel::getAuthorizationStatus() {
  return static_cast<int>(FullDiskAccessAuthorizer::sharedInstance().authorizationStatus());
}

void FastCleanModel::tell(void (FastCleanModelListener::*what)()) {
  if (listener_ != nullptr) (listener_->*what)();
}

void FastCleanModel::tellRow(int category) {
  if (listener_ != nullptr) listener_->rowChanged(category);
}

void FastCleanModel::tellRows() {
  for (int i = 0; i < kJunkCategoryCount; ++i)
    tellRow(i);
}

AttributedText FastCleanModel::totalSizeLabel() const {
  if (cleaning_) {
    AttributedText text;
    text.runs.push_back({"Cleaning junk files, please wait...", kSizeColour});
    return text;
  }
  const std::string size = CommUti::convertVolSpace(static_cast<std::uint64_t>(totalSize_));
  return CommUti::setStringFontWithMainStr(fmt::format("{} Junk files found.", size), kSizeColour,
                                           size, kSizeColour);
}

std::string FastCleanModel::cleanValueLabel() const {
  return CommUti::longlongConvertVolSpace(cleanTotalSize_);
}

std::string FastCleanModel::pathLabel() const {
  if (indexPage_ == 1) return FastCleanScanFile::shareInstall().pathAtWork();
  if (!cleaning_) return "";
  std::lock_guard lock(cleaning_->mutex);
  return cleaning_->pathAtWork;
}

// Start view and scan.

void FastCleanModel::buttonAction() {
  if (!mainButton_.enabled) return;
  switch (indexPage_) {
    case 0:
      beginScanFile();
      break;
    case 1:
      stopButtonAction();
      break;
    default:
      beginCleanFile();
      break;
  }
}

void FastCleanModel::beginScanFile() {
  if (indexPage_ == 1 || cleaning_) return;
  authorizationStatus_ = getAuthorizationStatus();
  if (authorizationStatus_ != 2 && CommUti::getSystemVersion() >= kFullDiskAccessSystem &&
      askFullDiskAccess_) {
    askFullDiskAccess_();
  }
  indexPage_ = 1;
  view_ = FastCleanView::detail;
  completedShown_ = false;
  mainButton_ = {.title = "Stop", .scanningLook = true};
  FastCleanScanFile& scanner = FastCleanScanFile::shareInstall();
  scanner.setProgressSEL([lifetime = std::weak_ptr(lifetime_)](int category) {
    const auto alive = lifetime.lock();
    if (alive && alive->model != nullptr) alive->model->getProgress(category);
  });
  allTypeArr_ = scanner.getAllList();
  selectTreeNode_.reset();
  addDetailView();
  scanner.prepareScan();
  Dispatch::global([] { FastCleanScanFile::shareInstall().runScan(); });
  tell(&FastCleanModelListener::pageChanged);
  tell(&FastCleanModelListener::sizeLineChanged);
  tellRows();
}

// The figure starts at 0 with the first scan only: a scan after going back adds to what was found
// before, until a cleaning ends.
void FastCleanModel::addDetailView() {
  if (!rowsMade_) totalSize_ = 0;
  rowsMade_ = true;
  for (std::size_t i = 0; i < kJunkCategoryCount; ++i) {
    const bool selected = FastCleanScanFile::startsSelected(static_cast<int>(i));
    rows_[i] = {.icon = FastCleanScanFile::getIcon()[i],
                .title = FastCleanScanFile::getName()[i],
                .subTitle = FastCleanScanFile::subName()[i],
                .size = "",
                .loadingShown = true,
                .checkBoxImage = selected ? "sel" : "unsel",
                .bSelect = selected};
  }
}

void FastCleanModel::getProgress(int category) {
  const auto index = static_cast<std::size_t>(category);
  if (indexPage_ != 1 || index >= allTypeArr_.size()) return;
  const TCTreeNode& node = *allTypeArr_[index];
  const double percent = (category + 1) * kShareOfCategory;
  mainButton_.percentage = percent / 100;
  FastTypeRow& row = rows_[index];
  row.loadingShown = false;
  row.checkBoxShown = true;
  row.size = node.size;
  row.sizeIsDimmed = isEmpty(node);
  totalSize_ += std::max<std::int64_t>(0, static_cast<std::int64_t>(shownBytes(node)));
  tellRow(category);
  tell(&FastCleanModelListener::sizeLineChanged);
  if (percent >= 100) scanEnded();
  tell(&FastCleanModelListener::pageChanged);
}

void FastCleanModel::scanEnded() {
  indexPage_ = 2;
  completedShown_ = true;
  mainButton_.title = "Clean";
  mainButton_.scanningLook = false;
  for (std::size_t i = 0; i < kJunkCategoryCount; ++i) {
    FastTypeRow& row = rows_[i];
    const bool found = !isEmpty(*allTypeArr_[i]);
    row.bSelect = found && FastCleanScanFile::startsSelected(static_cast<int>(i));
    row.checkBoxImage = boxImage(*allTypeArr_[i]);
    row.checkBoxEnabled = found;
    row.detailButtonShown = found;
    row.detailButtonEnabled = true;
  }
  changeCleanButtonEnabled();
  tellRows();
}

void FastCleanModel::stopButtonAction() {
  if (indexPage_ != 1) return;
  mainButton_.enabled = false;
  FastCleanScanFile::shareInstall().setBeStop(true);
  tell(&FastCleanModelListener::pageChanged);
}

void FastCleanModel::backHomeButtonAction() {
  if (!backHomeEnabled_) return;
  if (indexPage_ == 1) {
    FastCleanScanFile::shareInstall().setBeStop(true);
    allTypeArr_ = FastCleanScanFile::shareInstall().getAllList();
  }
  indexPage_ = 0;
  completedShown_ = false;
  view_ = FastCleanView::start;
  mainButton_ = {};
  tell(&FastCleanModelListener::pageChanged);
}

// Rows.

void FastCleanModel::checkBoxButtonAction(int category) {
  const auto index = static_cast<std::size_t>(category);
  if (indexPage_ != 2 || cleaning_ || index >= allTypeArr_.size()) return;
  completedShown_ = false;
  toggleCategory(*allTypeArr_[index]);
  refreshSelection();
}

void FastCleanModel::selectCategory(int category) {
  const auto index = static_cast<std::size_t>(category);
  if (indexPage_ != 2 || cleaning_ || index >= allTypeArr_.size()) return;
  for (const auto& entry : allTypeArr_[index]->detailChildren)
    entry->selectState = 1;
  refreshSelection();
}

void FastCleanModel::refreshSelection() {
  rederiveBoxImages();
  totalSize_ = static_cast<std::int64_t>(selectedTotal(allTypeArr_));
  changeCleanButtonEnabled();
  tellRows();
  tell(&FastCleanModelListener::sizeLineChanged);
  tell(&FastCleanModelListener::pageChanged);
}

void FastCleanModel::rederiveBoxImages() {
  for (std::size_t i = 0; i < allTypeArr_.size(); ++i) {
    rows_[i].checkBoxImage = boxImage(*allTypeArr_[i]);
  }
}

void FastCleanModel::changeCleanButtonEnabled() {
  mainButton_.enabled = isAnySelected(allTypeArr_);
}

// The detail list.

void FastCleanModel::detailButtonAction(int category) {
  const auto index = static_cast<std::size_t>(category);
  if (indexPage_ != 2 || cleaning_ || index >= allTypeArr_.size()) return;
  mainButton_.shown = false;
  selectTreeNode_ = allTypeArr_[index];
  view_ = FastCleanView::subDetail;
  setAllSelectBut();
  tell(&FastCleanModelListener::pageChanged);
  tell(&FastCleanModelListener::detailListChanged);
}

std::string FastCleanModel::subDetailTitleLabel() const {
  return selectTreeNode_ ? selectTreeNode_->title : "";
}

std::string FastCleanModel::selectFileLabel() const {
  std::size_t count = 0;
  std::uint64_t bytes = 0;
  if (selectTreeNode_) {
    for (const auto& entry : selectTreeNode_->detailChildren) {
      if (entry->selectState != 1) continue;
      ++count;
      bytes += shownBytes(*entry);
    }
  }
  return fmt::format("Selected {} item(s), size: {}", count,
                     CommUti::longlongConvertVolSpace(bytes));
}

std::string FastCleanModel::selectAllImage() const {
  if (aSelectAllState_ == 1) return "sel";
  return aSelectAllState_ == 0 ? "unsel" : "halfsel";
}

std::size_t FastCleanModel::numberOfRows() const {
  return selectTreeNode_ ? selectTreeNode_->detailChildren.size() : 0;
}

void FastCleanModel::selectListButton(std::size_t row) {
  if (row >= numberOfRows() || cleaning_) return;
  int& state = selectTreeNode_->detailChildren[row]->selectState;
  state = state == 1 ? 0 : 1;
  setAllSelectBut();
  tell(&FastCleanModelListener::detailListChanged);
}

void FastCleanModel::setAllSelectBut() {
  const std::size_t selected = selectTreeNode_ ? selectedCount(*selectTreeNode_) : 0;
  if (selected == 0) {
    aSelectAllState_ = 0;
  } else {
    aSelectAllState_ = selected == numberOfRows() ? 1 : 2;
  }
}

void FastCleanModel::setAllSelectOrNoSelect() {
  if (numberOfRows() == 0 || cleaning_) return;
  aSelectAllState_ = aSelectAllState_ == 1 ? 0 : 1;
  for (const auto& entry : selectTreeNode_->detailChildren)
    entry->selectState = aSelectAllState_;
  tell(&FastCleanModelListener::detailListChanged);
}

void FastCleanModel::backToDetailButtonAction() {
  if (view_ != FastCleanView::subDetail) return;
  mainButton_.shown = true;
  view_ = FastCleanView::detail;
  selectTreeNode_.reset();
  refreshSelection();
}

// Rules over nodes.

std::string FastCleanModel::boxImage(const TCTreeNode& category) {
  if (isEmpty(category)) return "disable";
  if (isWhollySelected(category)) return "sel";
  return selectedCount(category) > 0 ? "halfsel" : "unsel";
}

bool FastCleanModel::isAnySelected(const FastCleanScanFile::Nodes& categories) {
  return std::any_of(categories.begin(), categories.end(),
                     [](const auto& category) { return selectedCount(*category) > 0; });
}

std::uint64_t FastCleanModel::selectedTotal(const FastCleanScanFile::Nodes& categories) {
  std::uint64_t total = 0;
  for (const auto& category : categories) {
    for (const auto& entry : category->detailChildren) {
      if (entry->selectState == 1) total += shownBytes(*entry);
    }
  }
  return total;
}

void FastCleanModel::toggleCategory(TCTreeNode& category) {
  const int state = isWhollySelected(category) ? 0 : 1;
  for (const auto& entry : category.detailChildren)
    entry->selectState = state;
}

}  // namespace brisko

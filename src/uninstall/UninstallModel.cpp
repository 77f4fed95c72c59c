#include "UninstallModel.h"

#include "AppNames.h"
#include "AppScanner.h"
#include "AppSearch.h"
#include "CommUti.h"
#include "HostApplications.h"
#include "RelatedFilesModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {

UninstallModel::UninstallModel() {
  sizes_ = std::make_unique<AppSizes>(
      [this](const AppItems&) { tell(&UninstallModelListener::sizesChanged); });
}

UninstallModel::~UninstallModel() = default;

void UninstallModel::tell(Tell what) {
  if (listener_ != nullptr) (listener_->*what)();
}

// Finding what is installed.

void UninstallModel::begimScanFile() {
  if (isBusy()) return;
  for (int each = 0; each < kTypes; ++each)
    searchPaths_[static_cast<std::size_t>(each)] = appSearchPaths(each);
  getApplications();
}

void UninstallModel::getApplications() {
  isScan_ = true;
  startSearch({0, 1, 2});
}

void UninstallModel::refButtonAction() {
  if (!isBusy()) startSearch({appsType_});
}

void UninstallModel::startSearch(const std::vector<int>& types) {
  std::vector<AppSearch::Part> parts;
  for (const int each : types) {
    const auto of = static_cast<std::size_t>(each);
    clearTicks(of);
    lists_[of].clear();
    parts.push_back({each, searchPaths_[of]});
  }
  search_ = std::make_unique<AppSearch>(
      std::move(parts), [this](int of, AppItems items) { take(of, std::move(items)); },
      [this] { searchEnded(); });
  showAll();
}

void UninstallModel::take(int of, AppItems items) {
  AppItems& all = lists_[static_cast<std::size_t>(of)];
  all.insert(all.end(), items.begin(), items.end());
  if (of == appsType_) {
    const std::size_t first = showListArr_.size();
    showListArr_.insert(showListArr_.end(), items.begin(), items.end());
    if (listener_ != nullptr) listener_->rowsAdded(first);
  }
  tell(&UninstallModelListener::pageChanged);
}

void UninstallModel::searchEnded() {
  search_.reset();
  isScan_ = false;
  tell(&UninstallModelListener::pageChanged);
}

AppItems UninstallModel::everything() const {
  AppItems all;
  for (const AppItems& list : lists_)
    all.insert(all.end(), list.begin(), list.end());
  return all;
}

// What is shown.

void UninstallModel::showAll() {
  showListArr_ = lists_[type()];
  aTableColumn_ = UninstallColumn::none;
  indicator_ = "";
  tell(&UninstallModelListener::listReset);
  tell(&UninstallModelListener::pageChanged);
}

void UninstallModel::segmentClickAction(int of) {
  if (!typeSegmentEnabled() || of < 0 || of >= kTypes) return;
  appsType_ = of;
  selectRow_ = -1;
  showAll();
}

void UninstallModel::controlTextDidChange(const std::string& text) {
  searchText_ = text;
  if (text.empty()) return showAll();
  const std::string wanted = lowerCased(text);
  showListArr_.clear();
  for (const AppItem& item : lists_[type()]) {
    if (lowerCased(item->name).find(wanted) != std::string::npos) showListArr_.push_back(item);
  }
  aTableColumn_ = UninstallColumn::none;
  indicator_ = "";
  tell(&UninstallModelListener::listReset);
  tell(&UninstallModelListener::pageChanged);
}

void UninstallModel::closeSearchButton() {
  controlTextDidChange("");
}

std::string UninstallModel::headerTitle() const {
  return fmt::format("   {}({})", appsType_ == 0 ? "Applications" : "Items", showListArr_.size());
}

std::string UninstallModel::selectCountLabel() const {
  const std::size_t n = ticked().size();
  const std::size_t m = showListArr_.size();
  if (n > 0) return fmt::format("Selected: {} Items", n);
  return fmt::format("Total: {} {}", m, m < 2 ? "Item" : "Items");
}

bool UninstallModel::uninstallButtonEnabled() const {
  return !ticked().empty() && !isBusy();
}

const char* UninstallModel::selectAllImage() const {
  if (ticked().empty()) return "unsel";
  return ticked().size() < showListArr_.size() ? "halfsel" : "sel";
}

const char* UninstallModel::boxImage(std::size_t row) const {
  return isTicked_.contains(showListArr_[row].get()) ? "sel" : "unsel";
}

const std::string& UninstallModel::sizeText(std::size_t row) {
  sizes_->ask(showListArr_[row]);
  return showListArr_[row]->size;
}

void UninstallModel::measureAll() {
  for (const AppItem& item : lists_[type()])
    sizes_->ask(item, false);
}

// Ticking.

void UninstallModel::clearTicks(std::size_t of) {
  for (const AppItem& item : ticked_[of])
    isTicked_.erase(item.get());
  ticked_[of].clear();
}

void UninstallModel::selectUninstallApp(std::size_t row) {
  if (isBusy() || row >= showListArr_.size()) return;
  const AppItem& item = showListArr_[row];
  if (isTicked_.insert(item.get()).second) {
    ticked_[type()].push_back(item);
  } else {
    isTicked_.erase(item.get());
    std::erase(ticked_[type()], item);
  }
  tell(&UninstallModelListener::ticksChanged);
  tell(&UninstallModelListener::pageChanged);
}

void UninstallModel::selectAllButtonAction() {
  if (isBusy()) return;
  const bool isAll = ticked().size() == showListArr_.size();
  clearTicks(type());
  if (!isAll) {
    ticked_[type()] = showListArr_;
    for (const AppItem& item : showListArr_)
      isTicked_.insert(item.get());
  }
  tell(&UninstallModelListener::ticksChanged);
  tell(&UninstallModelListener::pageChanged);
}

// Sorting.

void UninstallModel::sortBy(UninstallColumn column, bool ascending) {
  const auto sort = [&](auto key) {
    std::stable_sort(showListArr_.begin(), showListArr_.end(),
                     [&](const AppItem& a, const AppItem& b) {
                       return ascending ? key(*a) < key(*b) : key(*b) < key(*a);
                     });
  };
  if (column == UninstallColumn::Size) {
    sort([](const AMAppItem& item) { return CommUti::volSpaceFromString(item.size); });
  } else {
    sort([](const AMAppItem& item) -> const std::string& { return item.name; });
  }
}

void UninstallModel::didClickTableColumn(UninstallColumn column) {
  const bool isSorted = column == UninstallColumn::Size || column == UninstallColumn::appname;
  if (isBusy() || !isSorted) return;
  sortBy(column, isSort_);
  aTableColumn_ = column;
  indicator_ = isSort_ ? "NSAscendingSortIndicator" : "NSDescendingSortIndicator";
  isSort_ = !isSort_;
  tell(&UninstallModelListener::listReset);
  tell(&UninstallModelListener::pageChanged);
}

// Removing.

AppItems UninstallModel::uninstallAppButtonAction() {
  if (isBusy()) return {};
  isUninsatllOne_ = false;
  chosenType_ = type();
  return chosen_ = ticked();
}

AppItems UninstallModel::oneAppRemove(std::size_t row) {
  if (isBusy() || row >= showListArr_.size()) return {};
  isUninsatllOne_ = true;
  chosenType_ = type();
  selectRow_ = static_cast<std::int32_t>(row);
  return chosen_ = {showListArr_[row]};
}

void UninstallModel::completeCleanRelatedFiles(const RelatedFilesModel& removal) {
  std::unordered_set<const AMAppItem*> chosen;
  for (const AppItem& item : std::exchange(chosen_, {}))
    chosen.insert(item.get());
  // A package takes all its entries and other packages with it; one that is still there stays.
  const auto isGone = [&](const AppItem& item) {
    return isOfPackage(*item) ? removal.hasRemovedPackage(*item) : chosen.contains(item.get());
  };
  const auto leaves = [&](const AppItem& item) {
    const bool isLeaving = isGone(item);
    if (isLeaving) isTicked_.erase(item.get());
    return isLeaving;
  };
  if (!isUninsatllOne_) clearTicks(chosenType_);
  std::erase_if(ticked_[chosenType_], leaves);
  std::erase_if(lists_[chosenType_], leaves);
  showAll();
}

}  // namespace brisko

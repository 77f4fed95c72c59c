#include "UninstallModel.h"

#include "AppNames.h"
#include "AppScanner.h"
#include "CommUti.h"
#include "Dispatch.h"
#include "HostApplications.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <utility>

namespace brisko {
namespace {

using Clock = std::chrono::steady_clock;

// Rows come in batches: one update per application would keep the window busy.
constexpr std::chrono::milliseconds kBatch{30};

}  // namespace

/// One search of the folders, shared with its background block.
struct UninstallModel::Scan {
  std::atomic<bool> stop = false;
  UninstallModel* model = nullptr;  // the main thread's
  std::array<std::vector<std::string>, kTypes> paths;
  std::vector<int> types;

  static void run(const std::shared_ptr<Scan>& scan);
  static void hand(const std::shared_ptr<Scan>& scan, int type, AppItems& batch);
};

void UninstallModel::Scan::hand(const std::shared_ptr<Scan>& scan, int type, AppItems& batch) {
  if (batch.empty()) return;
  Dispatch::mainAsync([scan, type, items = std::exchange(batch, {})]() mutable {
    if (scan->model != nullptr) scan->model->take(type, std::move(items));
  });
}

void UninstallModel::Scan::run(const std::shared_ptr<Scan>& scan) {
  const AppScanner scanner(scan->stop);
  for (const int type : scan->types) {
    AppItems batch;
    auto lastHanded = Clock::now();
    for (const std::string& path : scan->paths[static_cast<std::size_t>(type)]) {
      scanner.search(type, path, [&](AppItem item) {
        batch.push_back(std::move(item));
        if (Clock::now() - lastHanded < kBatch) return;
        lastHanded = Clock::now();
        hand(scan, type, batch);
      });
    }
    hand(scan, type, batch);
    if (type != 0 || scan->stop) continue;
    // The host's own follow those in bundles.
    AppItems host = hostApplicationItems();
    hand(scan, type, host);
  }
  Dispatch::mainAsync([scan] {
    if (scan->model != nullptr) scan->model->scanEnded();
  });
}

UninstallModel::UninstallModel() {
  sizes_ = std::make_unique<AppSizes>(
      [this](const AppItems&) { tell(&UninstallModelListener::sizesChanged); });
}

UninstallModel::~UninstallModel() {
  if (!scan_) return;
  scan_->stop = true;
  scan_->model = nullptr;
}

void UninstallModel::tell(Tell what) {
  if (listener_ != nullptr) (listener_->*what)();
}

// Finding what is installed.

void UninstallModel::begimScanFile() {
  if (isBusy()) return;
  isScan_ = true;
  startScan({0, 1, 2});
}

void UninstallModel::refButtonAction() {
  if (isBusy()) return;
  startScan({appsType_});
}

void UninstallModel::startScan(std::vector<int> types) {
  for (const int each : types) {
    const auto of = static_cast<std::size_t>(each);
    searchPaths_[of] = appSearchPaths(each);
    clearTicks(of);
    lists_[of].clear();
  }
  scan_ = std::make_shared<Scan>();
  scan_->model = this;
  scan_->types = std::move(types);
  scan_->paths = searchPaths_;
  showAll();
  Dispatch::global([scan = scan_] { Scan::run(scan); });
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

void UninstallModel::scanEnded() {
  scan_.reset();
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
  return ticked();
}

AppItems UninstallModel::oneAppRemove(std::size_t row) {
  if (isBusy() || row >= showListArr_.size()) return {};
  isUninsatllOne_ = true;
  selectRow_ = static_cast<std::int32_t>(row);
  return {showListArr_[row]};
}

void UninstallModel::completeCleanRelatedFiles(const RelatedFilesModel* still) {
  AppItems gone;
  if (!isUninsatllOne_) {
    gone = ticked();
  } else if (selectRow_ >= 0 && static_cast<std::size_t>(selectRow_) < showListArr_.size()) {
    gone = {showListArr_[static_cast<std::size_t>(selectRow_)]};
  }
  if (still != nullptr) {
    std::erase_if(gone, [&](const AppItem& item) { return still->isStillInstalled(*item); });
  }
  dropFromLists(gone);
  if (!isUninsatllOne_) clearTicks(type());
  showAll();
}

// With a package go all its entries.
void UninstallModel::dropFromLists(const AppItems& gone) {
  std::unordered_set<const AMAppItem*> items;
  for (const AppItem& item : gone)
    items.insert(item.get());
  const auto isGone = [&](const AppItem& item) {
    if (items.contains(item.get())) return true;
    return item->host && std::any_of(gone.begin(), gone.end(), [&](const AppItem& other) {
             return isSamePackage(*other, *item);
           });
  };
  std::erase_if(lists_[type()], isGone);
  std::erase_if(ticked_[type()], [&](const AppItem& item) {
    const bool leaves = isGone(item);
    if (leaves) isTicked_.erase(item.get());
    return leaves;
  });
}

}  // namespace brisko

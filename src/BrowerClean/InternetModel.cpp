#include "InternetModel.h"

#include "BrowserSearch.h"
#include "Dispatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

constexpr int kLastShownProgress = 95;
constexpr std::size_t kUsualBrowsers = 100;

}  // namespace

InternetModel::InternetModel() : lifetime_(std::make_shared<Lifetime>()) {
  lifetime_->model = this;
}

InternetModel::~InternetModel() {
  lifetime_->model = nullptr;
  if (scan_) scan_->stop = true;
  stopCleaning();
}

void InternetModel::setCloseQuestion(std::function<bool(const std::string&)> ask) {
  askToClose_ = std::move(ask);
}

void InternetModel::setAccessNotice(std::function<void()> show) {
  showAccessNotice_ = std::move(show);
}

void InternetModel::tell(void (InternetModelListener::*what)()) {
  if (listener_ != nullptr) (listener_->*what)();
}

std::shared_ptr<BrowerObj> InternetModel::selectedBrower() const {
  return broSelectIndex_ < browserArr_.size() ? browserArr_[broSelectIndex_] : nullptr;
}

void InternetModel::setBroSelectIndex(std::size_t index) {
  if (index < browserArr_.size()) broSelectIndex_ = index;
}

std::string InternetModel::closeText(const std::string& names) {
  return fmt::format("Please close your {} browser to start clean!", names);
}

// Start and scan.

void InternetModel::buttonAction() {
  if (!mainButton_.enabled) return;
  if (indePage_ == Page::start) {
    checkOpenBrower();
  } else if (indePage_ == Page::scanned) {
    cleanButtonAction();
  }
}

void InternetModel::checkOpenBrower() {
  if (indePage_ == Page::scanning || indePage_ == Page::cleaning) return;
  whenClosed(RunningBrowsers::beforeScan(desktopBrowserRules()), &InternetModel::getBrowserArr);
}

void InternetModel::whenClosed(const RunningBrowsers& running, void (InternetModel::*next)()) {
  isClose_ = false;
  allOpenId_.clear();
  for (const RunningBrowsers::Process& process : running.processes)
    allOpenId_.push_back(process.identifier);
  if (!running.isEmpty()) {
    isClose_ = askToClose_ && askToClose_(closeText(running.names));
    if (!isClose_) return;
    doAction(running);
  }
  (this->*next)();
}

void InternetModel::doAction(const RunningBrowsers& running) {
  for (const RunningBrowsers::Process& process : running.processes)
    doCloseWithPID(process);
}

void InternetModel::startProgress(Page page) {
  indePage_ = page;
  proValue_ = 0;
  mainButton_.percentage = 0;
  mainButton_.enabled = false;
}

void InternetModel::raiseProgress() {
  const bool isAtWork = indePage_ == Page::scanning || indePage_ == Page::cleaning;
  if (!isAtWork || proValue_ >= kLastShownProgress) return;
  ++proValue_;
  mainButton_.percentage = proValue_ / 100.0;
  tell(&InternetModelListener::progressChanged);
}

void InternetModel::getBrowserArr() {
  if (indePage_ == Page::scanning || indePage_ == Page::cleaning) return;
  startProgress(Page::scanning);
  browserArr_.clear();
  browserArr_.reserve(kUsualBrowsers);
  broSelectIndex_ = 0;
  failures_.clear();
  scan_ = std::make_shared<Scan>();
  tell(&InternetModelListener::pageChanged);
  tell(&InternetModelListener::browsersChanged);
  Dispatch::global([scan = scan_, lifetime = std::weak_ptr(lifetime_)] {
    scan->found = BrowserSearch(scan->stop).run();
    Dispatch::mainAsync([scan, lifetime] {
      const auto alive = lifetime.lock();
      if (alive && alive->model != nullptr) alive->model->takeScan(scan);
    });
  });
}

void InternetModel::takeScan(const std::shared_ptr<Scan>& scan) {
  if (scan != scan_) return;  // the user went back meanwhile
  scan_.reset();
  browserArr_ = std::move(scan->found);
  indePage_ = Page::scanned;
  mainButton_ = {.title = "Clean"};
  changeCleanButtonState();
  tell(&InternetModelListener::pageChanged);
  tell(&InternetModelListener::browsersChanged);
}

void InternetModel::backHomeButtonAction() {
  if (indePage_ == Page::cleaning) return;
  if (scan_) scan_->stop = true;
  scan_.reset();
  indePage_ = Page::start;
  mainButton_ = {};
  browserArr_.clear();
  broSelectIndex_ = 0;
  tell(&InternetModelListener::pageChanged);
  tell(&InternetModelListener::browsersChanged);
}

// Ticks.

const char* InternetModel::boxImage(const BrowerObj& row) {
  if (row.isSelect == 1) return "sel";
  return row.isSelect == 2 ? "halfsel" : "unsel";
}

void InternetModel::updateBrower(BrowerObj& browser) {
  const auto& kinds = browser.chrArr;
  const auto ticked = std::count_if(kinds.begin(), kinds.end(),
                                    [](const auto& kind) { return kind->isSelect == 1; });
  if (ticked == 0) {
    browser.isSelect = 0;
  } else {
    browser.isSelect = static_cast<std::size_t>(ticked) == kinds.size() ? 1 : 2;
  }
}

void InternetModel::selectBrower(const std::shared_ptr<BrowerObj>& row) {
  if (indePage_ != Page::scanned || !row) return;
  const int state = row->isSelect == 1 ? 0 : 1;
  row->isSelect = state;
  if (const auto browser = row->parObj.lock()) {
    updateBrower(*browser);
  } else {
    for (const auto& kind : row->chrArr)
      kind->isSelect = state;
  }
  changeCleanButtonState();
  tell(&InternetModelListener::selectionChanged);
  tell(&InternetModelListener::pageChanged);
}

void InternetModel::select(
    const std::function<bool(const BrowerObj& browser, const BrowerObj& kind)>& isWanted) {
  if (indePage_ != Page::scanned) return;
  for (const auto& browser : browserArr_) {
    for (const auto& kind : browser->chrArr)
      kind->isSelect = isWanted(*browser, *kind) ? 1 : 0;
    updateBrower(*browser);
  }
  changeCleanButtonState();
  tell(&InternetModelListener::selectionChanged);
  tell(&InternetModelListener::pageChanged);
}

void InternetModel::changeCleanButtonState() {
  mainButton_.enabled = std::any_of(browserArr_.begin(), browserArr_.end(),
                                    [](const auto& browser) { return browser->isSelect != 0; });
}

}  // namespace brisko

// Cleaning: from the plan to the end notice.

#include "BrowserKinds.h"
#include "BrowserPaths.h"
#include "Dispatch.h"
#include "InternetModel.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include <unistd.h>

namespace brisko {
namespace {

constexpr const char* kSafariFolder = "/Users/%@/Library/Safari";
constexpr std::chrono::seconds kTimeToClose{1};

}  // namespace

/// One cleaning, shared with its background block, which alone uses it until it has ended.
struct InternetModel::Cleaning {
  struct Step {
    std::shared_ptr<BrowerObj> kind;
    std::shared_ptr<BrowerObj> browser;
    BrowserKinds::Cleaning result;
    std::optional<BrowerObj> readAgain;  ///< what is left of a kind that was not wholly cleaned
    bool wasTried = false;
  };
  std::vector<Step> steps;
  bool waitsForBrowsers = false;

  std::mutex mutex;
  std::condition_variable wake;
  bool stop = false;  ///< guarded by `mutex`
};

std::vector<std::shared_ptr<BrowerObj>> InternetModel::plan() const {
  std::vector<std::shared_ptr<BrowerObj>> kinds;
  for (const auto& browser : browserArr_) {
    for (const auto& kind : browser->chrArr) {
      if (browser->isSelect != 0 && kind->isSelect != 0) kinds.push_back(kind);
    }
  }
  return kinds;
}

std::vector<std::string> InternetModel::losses() const {
  std::vector<std::string> texts;
  for (const auto& kind : plan()) {
    const bool isEmpty = kind->targets.empty() || (kind->count == 0 && kind->reasons.empty());
    std::string text = isEmpty ? "" : BrowserKinds::lossText(*kind);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

void InternetModel::cleanButtonAction() {
  if (indePage_ != Page::scanned) return;
  whenClosed(RunningBrowsers::beforeCleaning(browserArr_), &InternetModel::cleanBrowerFiles);
}

// Asked for Safari alone, whether it is ticked or not: the system lets no program look there
// without the user's leave.
bool InternetModel::mayClean(const BrowerObj& browser) {
  if (!browser.isBundle || browser.rule.key != "Safari") return true;
  if (::access(BrowserPaths::formatted(kSafariFolder).c_str(), W_OK) == 0) return true;
  if (showAccessNotice_) showAccessNotice_();
  return false;
}

void InternetModel::cleanBrowerFiles() {
  if (indePage_ != Page::scanned) return;
  startProgress(Page::cleaning);
  failures_.clear();
  cleaned_.clear();
  cleaningWasStopped_ = false;
  cleaning_ = std::make_shared<Cleaning>();
  cleaning_->waitsForBrowsers = isClose_ && !allOpenId_.empty();
  tell(&InternetModelListener::pageChanged);
  for (const auto& browser : browserArr_) {
    const bool may = mayClean(*browser);
    for (const auto& kind : browser->chrArr) {
      if (browser->isSelect == 0 || kind->isSelect == 0) continue;
      if (may) {
        cleaning_->steps.push_back({kind, browser, {}, {}, false});
      } else {
        failures_.push_back({browser->name, kind->name, "the system protects Safari's data"});
      }
    }
  }
  Dispatch::global([cleaning = cleaning_, lifetime = std::weak_ptr(lifetime_)] {
    work(*cleaning);
    Dispatch::mainAsync([cleaning, lifetime] {
      const auto alive = lifetime.lock();
      if (alive && alive->model != nullptr) alive->model->cleanEnd(*cleaning);
    });
  });
}

void InternetModel::stopCleaning() {
  if (!cleaning_) return;
  const std::lock_guard lock(cleaning_->mutex);
  cleaning_->stop = true;
  cleaning_->wake.notify_all();
}

void InternetModel::work(Cleaning& cleaning) {
  const auto isStopped = [&cleaning] { return cleaning.stop; };
  if (cleaning.waitsForBrowsers) {
    std::unique_lock lock(cleaning.mutex);
    cleaning.wake.wait_for(lock, kTimeToClose, isStopped);
  }
  for (Cleaning::Step& step : cleaning.steps) {
    {
      const std::lock_guard lock(cleaning.mutex);
      if (isStopped()) return;
    }
    step.wasTried = true;
    // Looked at for each kind, because a browser can be started at any time.
    const std::string inUse = inUseReason(*step.browser);
    if (inUse.empty()) {
      step.result = BrowserKinds::clean(*step.kind);
    } else {
      step.result.reasons = {inUse};
    }
    if (step.result.reasons.empty()) continue;
    step.readAgain = *step.kind;
    BrowserKinds::readSize(*step.readAgain);
  }
}

void InternetModel::cleanEnd(Cleaning& cleaning) {
  for (Cleaning::Step& step : cleaning.steps) {
    BrowerObj& kind = *step.kind;
    if (!step.wasTried) {
      cleaningWasStopped_ = true;
      continue;
    }
    kind.isSelect = 0;
    kind.reasons = step.result.reasons;
    for (const std::string& reason : kind.reasons)
      failures_.push_back({step.browser->name, kind.name, reason});
    if (step.readAgain && !step.readAgain->reasons.empty()) continue;  // it holds what it held
    if (step.readAgain) {
      kind.size = step.readAgain->size;
      kind.bytes = step.readAgain->bytes;
      kind.count = step.readAgain->count;
      kind.targets = step.readAgain->targets;
      continue;
    }
    kind.size = step.result.size;
    kind.bytes = 0;
    if (kind.count && kind.size == "0 Item") kind.count = 0;
    cleaned_.push_back(step.kind);
  }
  for (const auto& browser : browserArr_)
    updateBrower(*browser);
  cleaning_.reset();
  indePage_ = Page::scanned;
  mainButton_ = {.title = "Clean", .enabled = false};
  tell(&InternetModelListener::pageChanged);
  tell(&InternetModelListener::browsersChanged);
  tell(&InternetModelListener::cleaningEnded);
}

}  // namespace brisko

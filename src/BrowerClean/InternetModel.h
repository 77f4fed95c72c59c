#pragma once

#include "BrowerObj.h"
#include "RunningBrowsers.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko {

/// The round main button.
struct InternetButton {
  std::string title = "Scan";  ///< "Scan", later "Clean"
  bool enabled = true;
  double percentage = 0;  ///< 0 to 0.95
};

/// A kind that was not cleaned, or not wholly, and why.
struct BrowserFailure {
  std::string browser;
  std::string kind;
  std::string reason;
};

/// Told of changes, always on the main thread.
class InternetModelListener {
 public:
  virtual ~InternetModelListener() = default;
  virtual void pageChanged() {}       ///< view, main button, busy
  virtual void progressChanged() {}   ///< the main button's percentage
  virtual void browsersChanged() {}   ///< rows of both tables, or what they show
  virtual void selectionChanged() {}  ///< tick states
  virtual void cleaningEnded() {}     ///< time for the end notice
};

/// The Internet Cleaner's page without its widgets: every state, text and rule that both faces
/// show. Belongs to the main thread; search and cleaning run in the background and come back
/// through the main queue.
class InternetModel {
 public:
  InternetModel();
  ~InternetModel();
  InternetModel(const InternetModel&) = delete;
  InternetModel& operator=(const InternetModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(InternetModelListener* listener) { listener_ = listener; }
  /// Shows the text and lets the user choose whether the running browsers are to be closed. Without
  /// one nobody is asked, and nothing is closed.
  void setCloseQuestion(std::function<bool(const std::string& text)> ask);
  /// Shows that the system protects Safari's data, and returns when that was read.
  void setAccessNotice(std::function<void()> show);

  enum class Page : int { start, scanning, scanned, cleaning };
  Page indePage() const { return indePage_; }
  bool isCanClick() const { return indePage_ != Page::cleaning; }
  const InternetButton& mainButton() const { return mainButton_; }
  const Browsers& browserArr() const { return browserArr_; }
  const std::vector<int>& allOpenId() const { return allOpenId_; }
  bool isClose() const { return isClose_; }

  /// The selected browser; null when there is none.
  std::shared_ptr<BrowerObj> selectedBrower() const;
  std::size_t broSelectIndex() const { return broSelectIndex_; }
  void setBroSelectIndex(std::size_t index);

  // Start, scan.

  /// The main button: before a scan `checkOpenBrower`, after it `cleanButtonAction`.
  void buttonAction();
  /// Scans, after running browsers were closed where there are any.
  void checkOpenBrower();
  /// Finds the browsers and reads what they keep.
  void getBrowserArr();
  void backHomeButtonAction();

  /// Raises the shown progress by a hundredth, up to 95; to be called every 0.1 seconds while the
  /// page works. The end of the work is what completes it.
  void raiseProgress();
  int proValue() const { return proValue_; }

  // Ticks.

  void selectBrower(const std::shared_ptr<BrowerObj>& row);
  /// "sel", "halfsel" or "unsel".
  static const char* boxImage(const BrowerObj& row);
  /// Ticks exactly these kinds.
  void select(const std::function<bool(const BrowerObj& browser, const BrowerObj& kind)>& isWanted);

  // Cleaning.

  /// The kinds that cleaning would erase, in its order.
  std::vector<std::shared_ptr<BrowerObj>> plan() const;
  /// What would be lost for good: a line for each such kind of the plan that holds anything.
  std::vector<std::string> losses() const;
  /// Cleans, after running browsers that are ticked were closed where there are any.
  void cleanButtonAction();
  /// Erases the plan in the background.
  void cleanBrowerFiles();
  /// Lets a cleaning end after the kind at work.
  void stopCleaning();

  const std::vector<BrowserFailure>& failures() const { return failures_; }
  /// Kinds of which all that was shown is gone, of the last cleaning.
  const std::vector<std::shared_ptr<BrowerObj>>& cleaned() const { return cleaned_; }
  bool cleaningWasStopped() const { return cleaningWasStopped_; }

  /// "Please close your %@ browser to start clean!"
  static std::string closeText(const std::string& names);

 private:
  struct Lifetime {
    InternetModel* model = nullptr;
  };
  struct Scan {
    std::atomic<bool> stop{false};
    Browsers found;
  };
  struct Cleaning;

  static void work(Cleaning& cleaning);
  void whenClosed(const RunningBrowsers& running, void (InternetModel::*next)());
  static void doAction(const RunningBrowsers& running);
  void takeScan(const std::shared_ptr<Scan>& scan);
  void cleanEnd(Cleaning& cleaning);
  void startProgress(Page page);
  void changeCleanButtonState();
  static void updateBrower(BrowerObj& browser);
  bool mayClean(const BrowerObj& browser);
  void tell(void (InternetModelListener::*what)());

  InternetModelListener* listener_ = nullptr;
  std::function<bool(const std::string&)> askToClose_;
  std::function<void()> showAccessNotice_;
  std::shared_ptr<Lifetime> lifetime_;
  std::shared_ptr<Scan> scan_;
  std::shared_ptr<Cleaning> cleaning_;

  Page indePage_ = Page::start;
  InternetButton mainButton_;
  int proValue_ = 0;
  Browsers browserArr_;
  std::vector<int> allOpenId_;
  bool isClose_ = false;
  std::size_t broSelectIndex_ = 0;
  std::vector<BrowserFailure> failures_;
  std::vector<std::shared_ptr<BrowerObj>> cleaned_;
  bool cleaningWasStopped_ = false;
};

}  // namespace brisko

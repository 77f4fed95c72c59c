#pragma once

#include "DuplicateModel.h"
#include "PageController.h"

#include <QBasicTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Ui {
class DuplicateViewController;
}

namespace brisko {

/// The page of the Duplicate File Cleaner: shows what its model says, and tells it what was
/// pressed. It is the module's page and the controller of its three views in one.
class DuplicateViewController : public PageController, private DuplicateModelListener {
  Q_OBJECT

 public:
  DuplicateViewController();
  ~DuplicateViewController() override;

  /// False from the confirmation of a removal to its end.
  bool isCanClick() const override { return model_.isCanClick() && !isRemovalDue(); }

  /// Opens the chooser, and searches the folder that comes of it.
  void clickScanBtn();
  void viewDragAction(const std::string& path);
  void stopScanBtnClicked();
  void segmentSelect(int segment);
  void setAllSelectOrNoSelect();
  void removeBtnClicked();
  void deleteFileButtonAction();
  void stopRemoveBtnClicked();
  /// Shows the highlighted copy in the file browser; nothing for a group.
  void openFinderWhenClickItems();
  void showInFinderWhenClickItems(const std::string& path);

  /// Another way to ask for a folder than the desktop's chooser; nothing means cancelled.
  void setFolderChooser(std::function<std::optional<std::string>()> choose) {
    choose_ = std::move(choose);
  }

  DuplicateModel& model() { return model_; }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void pageChanged() override;
  void treeReset() override;
  void treeWillChange() override;
  void treeDidChange() override;
  void groupChanged(SimpleTreeNode* group) override;
  void allTicksChanged() override;
  void countsChanged() override;
  void toProWithValue(float value) override;
  void removalProgressed(const std::string& path, std::size_t done) override;
  void removalEnded() override;

  bool isRemovalDue() const { return removalTimer_.isActive(); }
  void connectControls();
  void connectOutline();
  void keepTime();
  void showView();
  void showNothing();
  void showProgress();
  void showSegments();
  void setSelectCount();
  void showEnd();
  void showRemoving();
  void showSkipped();
  void returnToStart();

  DuplicateModel model_;
  std::unique_ptr<Ui::DuplicateViewController> ui_;
  std::function<std::optional<std::string>()> choose_;
  QBasicTimer newTimer_;      ///< looks after a running search
  QBasicTimer finishTimer_;   ///< from a search's end to its results
  QBasicTimer returnTimer_;   ///< from stopping a search to the first view
  QBasicTimer removalTimer_;  ///< from the confirmation to the removal
};

using SameFileDeleteViewController = DuplicateViewController;

}  // namespace brisko

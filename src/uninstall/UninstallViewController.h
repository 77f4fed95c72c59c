#pragma once

#include "PageController.h"
#include "UninstallModel.h"

#include <QBasicTimer>

#include <memory>

namespace Ui {
class UninstallViewController;
}

namespace brisko {

class AMRelatedFilesWindowController;
class UninstallTableModel;

/// The page of the App Uninstaller: shows what its model says, and tells it what was pressed. What
/// is installed is looked for when the page is shown for the first time.
class UninstallViewController : public PageController, private UninstallModelListener {
  Q_OBJECT

 public:
  UninstallViewController();
  ~UninstallViewController() override;

  /// False from the confirmation of a removal to its end.
  bool isCanClick() const override;

  void awakeFromNib();
  void buttonAction() { uninstallAppButtonAction(); }
  void refButtonAction() { model_.refButtonAction(); }
  void uninstallAppButtonAction();
  void oneAppRemove(int row);
  void selectAllButtonAction() { model_.selectAllButtonAction(); }
  void closeSearchButton();

  UninstallModel& model() { return model_; }
  /// The removal dialog that is shown or was shown last; null before the first.
  AMRelatedFilesWindowController* relatedFilesWinController() const {
    return relatedFilesWinController_.get();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void listReset() override;
  void rowsAdded(std::size_t first) override;
  void ticksChanged() override;
  void sizesChanged() override;
  void pageChanged() override;

  void setUpTable();
  void setUpSearch();
  void connectControls();
  void review(const AppItems& chosen);
  void changeSelectAllButtonState();
  void showTypes();
  void showStates();
  void showSortMark();

  UninstallModel model_;
  std::unique_ptr<Ui::UninstallViewController> ui_;
  UninstallTableModel* items_;
  std::unique_ptr<AMRelatedFilesWindowController> relatedFilesWinController_;
  QBasicTimer removalTimer_;  ///< from the confirmation to the removal
  bool hasBegun_ = false;
};

}  // namespace brisko

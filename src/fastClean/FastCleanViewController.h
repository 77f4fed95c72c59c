#pragma once

#include "FastCleanModel.h"
#include "PageController.h"

#include <QBasicTimer>

#include <memory>
#include <vector>

class QLabel;
class QPushButton;
class QSortFilterProxyModel;

namespace Ui {
class FastCleanViewController;
}

namespace brisko {

class FastCleanTableModel;
class FastTypeView;
class RingButton;
class SizeLine;

/// The Junk Cleaner's page: shows what its model says, and tells it what was pressed.
class FastCleanViewController : public PageController, private FastCleanModelListener {
  Q_OBJECT

 public:
  FastCleanViewController();
  ~FastCleanViewController() override;

  bool isCanClick() const override { return model_.isCanClick(); }

  void buttonAction();
  void checkBoxButtonAction(int category);
  void detailButtonAction(int category);

  FastCleanModel& model() { return model_; }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void pageChanged() override;
  void rowChanged(int category) override;
  void sizeLineChanged() override;
  void detailListChanged() override;
  void cleaningProgressed(const std::string& path) override;

  void connectControls();
  void setUpTable();
  void showMainButton();
  void keepFocus(bool mainButtonIsEnabled);
  void showView();
  void showCleanEnd();
  void showPath(const std::string& path);
  bool nothingWasFound() const;
  bool userConfirmsCleaning();
  void showFailures();
  void askFullDiskAccess();
  QString planText(const char* format) const;

  FastCleanModel model_;
  std::unique_ptr<Ui::FastCleanViewController> ui_;
  std::vector<FastTypeView*> allListViewArr;
  RingButton* mainButton;
  QLabel* pathLabel;
  SizeLine* totalSizeLabel;
  FastCleanTableModel* entries_;
  QSortFilterProxyModel* sorted_;
  QBasicTimer pathTimer_;
};

}  // namespace brisko

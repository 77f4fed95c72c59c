#pragma once

#include "CloseBrowerWindowController.h"
#include "InternetModel.h"
#include "PageController.h"

#include <QBasicTimer>

#include <memory>

class QModelIndex;

namespace Ui {
class InternetViewController;
}

namespace brisko {

class BrowerTableModel;
class CloseInterViewEndWindowController;
class EntryTable;
class RingButton;

/// The page of the Internet Cleaner: shows what its model says, and tells it what was pressed.
class InternetViewController : public PageController,
                               private InternetModelListener,
                               private CloseBrowerDelegate {
  Q_OBJECT

 public:
  InternetViewController();
  ~InternetViewController() override;

  bool isCanClick() const override { return model_.isCanClick(); }

  void buttonAction();
  void backHomeButtonAction();

  InternetModel& model() { return model_; }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void pageChanged() override;
  void progressChanged() override;
  void browsersChanged() override;
  void selectionChanged() override;
  void cleaningEnded() override;
  void closeBrowerButtonAction() override { isClose_ = true; }

  void setUpTables();
  void connectControls();
  void showMainButton();
  void changeDetail();
  void selectBrower(const QModelIndex& index, const BrowerTableModel& rows);
  bool userConfirmsCleaning();
  bool askToClose(const std::string& text);
  void showAccessNotice();
  QString planText(const char* one, const char* many) const;

  InternetModel model_;
  std::unique_ptr<Ui::InternetViewController> ui_;
  RingButton* mainButton;
  EntryTable* leftTableView;
  EntryTable* rightTableView;
  BrowerTableModel* browsers_;
  BrowerTableModel* kinds_;
  CloseBrowerWindowController* closeBroWC = nullptr;
  CloseInterViewEndWindowController* endWindow_ = nullptr;
  bool isClose_ = false;
  QBasicTimer aTimer;
};

}  // namespace brisko

#pragma once

#include "PageController.h"
#include "StartupItemsModel.h"

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class StartupItemsViewController;
}

namespace brisko {

class LoginItemsTableModel;
class SwitchedItemRow;

/// The page of the Startup Items Manager.
class StartupItemsViewController : public PageController, private StartupItemsListener {
  Q_OBJECT

 public:
  StartupItemsViewController();
  ~StartupItemsViewController() override;

  /// Reads the list anew, because the shell asks before it shows a page. Always true.
  bool isCanClick() const override;

  void addButtonAction();
  void removeItemsAction(int row);
  void setHideStar(int row);

  StartupItemsModel& model() { return model_; }

 private:
  void itemsChanged() override;
  void changeFailed(const std::string& text) override;

  void showItems();
  void showSwitchedItems();
  /// Whether the user wants what an operation on the row would really do.
  bool userAgrees(int row, const char* question, const char* answer);
  bool eventFilter(QObject* watched, QEvent* event) override;

  mutable StartupItemsModel model_;
  std::unique_ptr<Ui::StartupItemsViewController> ui_;
  LoginItemsTableModel* rows_;
  std::vector<SwitchedItemRow*> switchedRows_;
  int selectedRow_ = -1;  ///< the highlighted row, kept while the rows are read anew
  std::string selected_;  ///< its path
};

}  // namespace brisko

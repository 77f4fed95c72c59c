#pragma once

#include "PageController.h"
#include "TaskManagerModel.h"

#include <QTimer>

#include <memory>

class QLabel;
class QSortFilterProxyModel;

namespace Ui {
class TaskManagerViewController;
}

namespace brisko {

class TaskTableModel;

/// The page of the Memory Manager.
class TaskManagerViewController : public PageController, private TaskManagerListener {
  Q_OBJECT

 public:
  TaskManagerViewController();
  ~TaskManagerViewController() override;

  TaskManagerModel& model() { return model_; }

 private:
  void rowsChanged() override;
  void usageChanged() override;

  void setUpTable();
  /// Shows how many rows are ticked: at the header's box, the close button and the label below.
  void changeSelectAllButton();
  static void showUsage(QLabel* label, const UsageText& usage);

  TaskManagerModel model_;
  std::unique_ptr<Ui::TaskManagerViewController> ui_;
  TaskTableModel* rows_;
  QSortFilterProxyModel* sorted_;
  QTimer timer;
};

}  // namespace brisko

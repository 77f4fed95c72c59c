#pragma once

#include "TaskManagerInfo.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <vector>

namespace brisko {

/// The running applications as a table. Column 0 is the check box.
class TaskTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { checkBox, name, cpu, memory, time, count };

  using QAbstractTableModel::QAbstractTableModel;

  /// Shows these rows; what is the same keeps its place and highlight.
  void reloadData(const std::vector<TaskManagerInfo>& rows);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  static QIcon iconOf(const std::string& image);
  static QVariant sortValue(const TaskManagerInfo& row, int column);

  std::vector<TaskManagerInfo> rows_;
};

}  // namespace brisko

#pragma once

#include "FileShareModel.h"

#include <QAbstractTableModel>

namespace brisko {

/// The shredder's list as a table: box, name, size and outcome.
class FileShareTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { checkBox, name, size, outcome, count };

  explicit FileShareTableModel(const FileShareModel& model, QObject* parent = nullptr)
      : QAbstractTableModel(parent), model_(model) {}

  /// The list is another one, or only its ticks and outcomes are.
  void reloadData();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString text(const FileObj& item, int column) const;
  QString image(int row, int column) const;

  const FileShareModel& model_;
  int rows_ = 0;
};

}  // namespace brisko

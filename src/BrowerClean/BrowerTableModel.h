#pragma once

#include "BrowerObj.h"
#include "EntryTable.h"

#include <QAbstractTableModel>

namespace brisko {

/// Browsers, or the kinds of one, as a table: "FSelect" and "FName", or "SSelect", "SName" and
/// "SSize". Shows the records as they are; whoever changes them says so.
class BrowerTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { select, name, size };
  enum class Level { browsers, kinds };
  /// Of a header: the column's identifier.
  static constexpr int IdentifierRole = Qt::UserRole + 21;

  BrowerTableModel(Level level, QObject* parent) : QAbstractTableModel(parent), level_(level) {}

  void reloadData(const Browsers& rows);
  /// What the rows show changed, and nothing else.
  void rowsChanged();
  std::shared_ptr<BrowerObj> row(int index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  Level level_;
  Browsers rows_;
};

}  // namespace brisko

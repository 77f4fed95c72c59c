#pragma once

#include "AMAppItem.h"

#include <QAbstractTableModel>

namespace brisko {

class UninstallModel;

/// The shown list as an item model: texts are made when a row is drawn, and a size is asked for
/// when its cell is.
class UninstallTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// What a row gives beside the roles of `EntryRole`.
  enum Role : int {
    IdentifierRole = Qt::UserRole + 16,  ///< appname: the second line
    ItemRole,                            ///< the item: `const AMAppItem*`
  };

  UninstallTableModel(UninstallModel& model, QObject* parent)
      : QAbstractTableModel(parent), model_(model) {}

  // After the list has changed.
  void reloadData();
  void rowsAdded(std::size_t first);
  void ticksChanged();
  void sizesChanged();
  void titleChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString text(const AMAppItem& item, const QModelIndex& index) const;
  QString spoken(const AMAppItem& item, const QModelIndex& index) const;
  void columnChanged(int column);

  UninstallModel& model_;
  int rows_ = 0;
};

}  // namespace brisko

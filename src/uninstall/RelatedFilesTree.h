#pragma once

#include "CheckOutline.h"

#include <QAbstractItemModel>

#include <vector>

namespace brisko {

class RelatedFilesModel;

/// A review as an item model: the chosen items, and below each what would go with it.
class RelatedFilesTree : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column : int { CheckBox, Name, Size, count };
  /// What a row gives beside the roles of `EntryRole`.
  enum Role : int {
    ItemRole = Qt::UserRole + 16,  ///< what the row's icon stands for: `const AMAppItem*`
    PlaceRole,                     ///< the second line
    TagRole,                       ///< what the entry is
    WarningRole,                   ///< what to be careful about; may be empty
  };

  RelatedFilesTree(RelatedFilesModel& model, QObject* parent);

  // After the review has changed.
  void reloadData();
  void groupFilled(std::size_t group);
  void rowsChanged();

  /// The group of a row, and the entry in it; -1 for the group itself.
  static int groupOf(const QModelIndex& index);
  static int entryOf(const QModelIndex& index);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVariant groupData(const QModelIndex& index, int role) const;
  QVariant entryData(const QModelIndex& index, int role) const;

  RelatedFilesModel& model_;
  std::vector<int> rows_;  ///< of each group, as views know them
};

/// Draws such a tree.
class RelatedFilesOutline : public CheckOutline {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 46;

  explicit RelatedFilesOutline(QWidget* parent = nullptr);
  void setTree(RelatedFilesTree* tree);
};

}  // namespace brisko

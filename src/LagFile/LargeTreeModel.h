#pragma once

#include "Controller.h"

#include <QAbstractItemModel>

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace brisko {

/// What an outline row gives beside the roles of `EntryRole`.
enum LargeRole : int {
  LockRole = Qt::UserRole + 16,  ///< why it cannot be ticked, as text; empty when it can
  ReasonRole,                    ///< why a folder's content is not all there
  SizeColorRole,
  CutRole,   ///< true for a folder of which the filter hides something: it has no box
  MoreRole,  ///< true for the row that stands for the smaller entries of a folder
};

/// The tree as an item model. Of each folder that the view has looked into it holds the largest
/// entries, and one row that stands for the rest and can be asked for more: so a folder of a
/// hundred thousand entries costs no more than one of some hundred, and a batch of a running scan
/// is taken in within a few milliseconds.
class LargeTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column : int { Checkbox, Name, Size, Time, Path, count };
  static constexpr std::size_t kFirstRows = 200;
  static constexpr std::size_t kMoreRows = 2000;

  LargeTreeModel(const Controller& controller, QObject* parent)
      : QAbstractItemModel(parent), controller_(controller) {}

  /// Another tree, or none.
  void reset();
  /// Entries came, went, or changed their sizes.
  void refresh();
  /// Entries are about to leave their folders; `refresh` is to follow.
  void nodesWillLeave();
  /// Ticks changed.
  void ticksChanged();
  /// Asked for by activating a row of the kind `MoreRole`.
  void showMore(const QModelIndex& more);

  /// Null for the row that stands for the rest.
  FileNode* node(const QModelIndex& index) const;
  /// Where the entry is shown in `column`; not valid when it is among the rest of its folder.
  QModelIndex indexOf(const FileNode& node, int column = 0) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Sized {
    std::uint64_t size;
    FileNode* node;
  };
  struct Rows {
    std::vector<FileNode*> nodes;
    std::size_t most = kFirstRows;
    std::size_t hidden = 0;
    std::uint64_t hiddenBytes = 0;
  };

  FileNode* holderOf(const QModelIndex& parent) const;
  Rows& rowsOf(FileNode& folder) const;
  void fill(Rows& rows, const FileNode& folder) const;
  static bool isMore(const QModelIndex& index) { return (index.internalId() & 1U) != 0; }
  static FileNode* folderOfMore(const QModelIndex& index);
  int rowOf(const FileNode& node) const;
  QString text(const FileNode& node, int column) const;
  QVariant moreData(const QModelIndex& index, int role) const;

  const Controller& controller_;
  mutable std::unordered_map<const FileNode*, Rows> rows_;
  mutable std::vector<Sized> sized_;  ///< of the folder being filled; kept for its room
  bool isChanging_ = false;
};

}  // namespace brisko

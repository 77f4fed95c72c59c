#include "FastCleanTableModel.h"

#include "EntryTable.h"
#include "LocalizedString.h"

namespace brisko {
namespace {

QString displayImage(const TCTreeNode& entry, int column) {
  if (column == FastCleanTableModel::checkBox) {
    return entry.selectState == 1 ? QStringLiteral("sel") : QStringLiteral("unsel");
  }
  if (column != FastCleanTableModel::name) return {};
  const bool isFolder = entry.identity && entry.identity->kind == FileKind::directory;
  return isFolder ? QStringLiteral("ic_folder") : QStringLiteral("ic_file");
}

}  // namespace

void FastCleanTableModel::reloadData(std::shared_ptr<TCTreeNode> category) {
  beginResetModel();
  category_ = std::move(category);
  rows_ = category_ ? static_cast<int>(category_->detailChildren.size()) : 0;
  endResetModel();
}

void FastCleanTableModel::selectionChanged() {
  if (rows_ > 0) Q_EMIT dataChanged(index(0, checkBox), index(rows_ - 1, checkBox));
}

int FastCleanTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int FastCleanTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count;
}

QVariant FastCleanTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const TCTreeNode& entry = *category_->detailChildren[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == name) return displayText(entry.title);
      if (index.column() == size) return QString::fromStdString(entry.size);
      return {};
    case Qt::ToolTipRole:
      return index.column() == name ? toolTipText(displayText(entry.path)) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() == size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      if (index.column() == checkBox) {
        return getLocalizedString(entry.selectState == 1 ? "selected" : "not selected");
      }
      return {};
    case ImageNameRole:
      return displayImage(entry, index.column());
    case SortRole:
      return sortValue(entry, index.column());
    default:
      return {};
  }
}

QVariant FastCleanTableModel::sortValue(const TCTreeNode& entry, int column) const {
  if (column == checkBox) return entry.selectState;
  if (column == size) return static_cast<qulonglong>(entry.logicalBytes);
  return displayText(entry.title);
}

QVariant FastCleanTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section == size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  if (section == name) return getLocalizedString("Name");
  return section == size ? getLocalizedString("Size") : QString();
}

}  // namespace brisko

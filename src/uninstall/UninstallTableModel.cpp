#include "UninstallTableModel.h"

#include "EntryTable.h"
#include "LocalizedString.h"
#include "UninstallModel.h"

namespace brisko {
namespace {

using Column = UninstallColumn;

constexpr int kColumns = 7;

constexpr int number(Column column) {
  return static_cast<int>(column);
}

}  // namespace

void UninstallTableModel::reloadData() {
  beginResetModel();
  rows_ = static_cast<int>(model_.showListArr().size());
  endResetModel();
}

void UninstallTableModel::rowsAdded(std::size_t first) {
  const int rows = static_cast<int>(model_.showListArr().size());
  if (static_cast<int>(first) != rows_) return reloadData();
  if (rows == rows_) return;
  beginInsertRows({}, rows_, rows - 1);
  rows_ = rows;
  endInsertRows();
}

void UninstallTableModel::columnChanged(int column) {
  if (rows_ > 0) Q_EMIT dataChanged(index(0, column), index(rows_ - 1, column));
}

void UninstallTableModel::ticksChanged() {
  columnChanged(number(Column::CheckBox));
}

void UninstallTableModel::sizesChanged() {
  columnChanged(number(Column::Size));
}

void UninstallTableModel::titleChanged() {
  Q_EMIT headerDataChanged(Qt::Horizontal, number(Column::appname), number(Column::appname));
}

int UninstallTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int UninstallTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant UninstallTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const AMAppItem& item = *model_.showListArr()[row];
  const auto column = static_cast<Column>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return text(item, index);
    case Qt::ToolTipRole:
      if (column == Column::uninstall) return getLocalizedString("Uninstall");
      if (column == Column::appname) return toolTipText(displayText(item.path));
      if (column == Column::version) return toolTipText(displayText(item.bundleVersion));
      return column == Column::bundleID ? toolTipText(displayText(item.bundleID)) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(column == Column::Size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      return spoken(item, index);
    case ImageNameRole:
      if (column == Column::CheckBox) return QLatin1String(model_.boxImage(row));
      return column == Column::uninstall ? QStringLiteral("ic_trasha") : QString();
    case IdentifierRole:
      return column == Column::appname ? displayText(item.bundleID) : QVariant();
    case ItemRole:
      return QVariant::fromValue(static_cast<const void*>(&item));
    default:
      return {};
  }
}

QString UninstallTableModel::text(const AMAppItem& item, const QModelIndex& index) const {
  switch (static_cast<Column>(index.column())) {
    case Column::appname:
      return displayText(item.name);
    case Column::version:
      return displayText(item.bundleVersion);
    case Column::Size:
      return QString::fromStdString(model_.sizeText(static_cast<std::size_t>(index.row())));
    case Column::system:
      return getLocalizedString(item.isSystemAppStr.c_str());
    case Column::bundleID:
      return displayText(item.bundleID);
    default:
      return {};
  }
}

QString UninstallTableModel::spoken(const AMAppItem& item, const QModelIndex& index) const {
  switch (static_cast<Column>(index.column())) {
    case Column::CheckBox: {
      const std::string_view image = model_.boxImage(static_cast<std::size_t>(index.row()));
      return getLocalizedString(image == "sel" ? "selected" : "not selected");
    }
    case Column::uninstall:
      return filledIn(getLocalizedString("Uninstall %@"), displayText(item.name));
    default:
      return text(item, index);
  }
}

QVariant UninstallTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumns) return {};
  const auto column = static_cast<Column>(section);
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(column == Column::Size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  switch (column) {
    case Column::appname:
      return QString::fromStdString(model_.headerTitle());
    case Column::version:
      return getLocalizedString("Version");
    case Column::Size:
      return getLocalizedString("Size");
    case Column::system:
      return getLocalizedString("System");
    case Column::bundleID:
      return getLocalizedString("Identifier");
    default:
      return QString();
  }
}

}  // namespace brisko

#include "FileShareTableModel.h"

#include "CommUti.h"
#include "EntryTable.h"
#include "LocalizedString.h"

namespace brisko {

void FileShareTableModel::reloadData() {
  const int rows = static_cast<int>(model_.rowCount());
  if (rows == rows_) {
    if (rows > 0) Q_EMIT dataChanged(index(0, 0), index(rows - 1, count - 1));
    return;
  }
  beginResetModel();
  rows_ = rows;
  endResetModel();
}

int FileShareTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int FileShareTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count;
}

QString FileShareTableModel::text(const FileObj& item, int column) const {
  switch (column) {
    case name:
      return displayText(item.name);
    case size:
      return item.isDir ? getLocalizedString("Folder")
                        : QString::fromStdString(
                              CommUti::longlongDiskSize(static_cast<std::uint64_t>(item.size)));
    case outcome: {
      const QString state = getLocalizedString(item.failStr.c_str());
      return item.reason.empty() ? state : state + QStringLiteral(": ") + displayText(item.reason);
    }
    default:
      return {};
  }
}

QString FileShareTableModel::image(int row, int column) const {
  const FileObj& item = model_.row(static_cast<std::size_t>(row));
  if (column == checkBox) {
    if (model_.isOutcome(static_cast<std::size_t>(row))) {
      return item.failStr == "Erased" ? QStringLiteral("ic_check") : QStringLiteral("ic_warning");
    }
    return item.isSelect ? QStringLiteral("sel") : QStringLiteral("unsel");
  }
  if (column != name) return {};
  if (isAppBundle(item)) return QStringLiteral("ic_app");
  return item.isDir ? QStringLiteral("ic_folder") : QStringLiteral("ic_file");
}

QVariant FileShareTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const FileObj& item = model_.row(static_cast<std::size_t>(index.row()));
  switch (role) {
    case Qt::DisplayRole:
      return text(item, index.column());
    case Qt::ToolTipRole:
      if (index.column() == name) return toolTipText(displayText(item.url));
      if (index.column() == outcome) return toolTipText(text(item, outcome));
      return {};
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() == size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      if (index.column() != checkBox) return {};
      if (model_.isOutcome(static_cast<std::size_t>(index.row()))) return text(item, outcome);
      return getLocalizedString(item.isSelect ? "selected" : "not selected");
    case ImageNameRole:
      return image(index.row(), index.column());
    default:
      return {};
  }
}

QVariant FileShareTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section == size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case name:
      return getLocalizedString("Name");
    case size:
      return getLocalizedString("Size");
    case outcome:
      return getLocalizedString("Outcome");
    default:
      return {};
  }
}

}  // namespace brisko

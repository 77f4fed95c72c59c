#include "BrowerTableModel.h"

#include "ApplicationIcon.h"
#include "InternetModel.h"
#include "LocalizedString.h"

namespace brisko {

void BrowerTableModel::reloadData(const Browsers& rows) {
  beginResetModel();
  rows_ = rows;
  endResetModel();
}

void BrowerTableModel::rowsChanged() {
  if (rows_.empty()) return;
  Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

std::shared_ptr<BrowerObj> BrowerTableModel::row(int index) const {
  const auto at = static_cast<std::size_t>(index);
  return at < rows_.size() ? rows_[at] : nullptr;
}

int BrowerTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int BrowerTableModel::columnCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return level_ == Level::browsers ? 2 : 3;
}

QVariant BrowerTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const BrowerObj& row = *rows_[static_cast<std::size_t>(index.row())];
  const bool isKind = level_ == Level::kinds;
  const QString text = isKind ? getLocalizedString(row.name.c_str()) : displayText(row.name);
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == name) return text;
      return index.column() == size ? QVariant(QString::fromStdString(row.size)) : QVariant();
    case Qt::ToolTipRole:
      return row.reasons.empty() ? QVariant() : toolTipText(displayText(row.reasons.front()));
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() == size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      if (index.column() != select) return {};
      return getLocalizedString(row.isSelect == 1   ? "selected"
                                : row.isSelect == 2 ? "partly selected"
                                                    : "not selected");
    case ImageNameRole:
      if (index.column() == select) return QLatin1String(InternetModel::boxImage(row));
      if (index.column() != name) return {};
      if (!isKind) return QStringLiteral("ic_internet");  // where it has no icon of its own
      return QString::fromStdString(row.reasons.empty() ? row.iconImage : "ic_warning");
    case Qt::DecorationRole:
      if (isKind || index.column() != name) return {};
      return applicationIcon(row.iconImage);
    default:
      return {};
  }
}

QVariant BrowerTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section == size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role == IdentifierRole) {
    static constexpr const char* kBrowsers[] = {"FSelect", "FName"};
    static constexpr const char* kKinds[] = {"SSelect", "SName", "SSize"};
    return QLatin1String(level_ == Level::browsers ? kBrowsers[section] : kKinds[section]);
  }
  if (role != Qt::DisplayRole || section == select) return {};
  if (section == size) return getLocalizedString("Size");
  return getLocalizedString(level_ == Level::browsers ? "Browser" : "Data");
}

}  // namespace brisko

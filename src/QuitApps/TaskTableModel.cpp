#include "TaskTableModel.h"

#include "ApplicationIcon.h"
#include "EntryTable.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "SystemLog.h"
#include "TaskManagerModel.h"

#include <algorithm>

namespace brisko {
namespace {

/// The identifiers of the columns, and what people read above them.
constexpr struct {
  const char* identifier;
  const char* title;
} kColumns[TaskTableModel::count] = {{"", ""},
                                     {"Name", "Name"},
                                     {"cpu", "Processor"},
                                     {"memroy", "Memory"},
                                     {"time", "Running for"}};

// "2-03:04:05", "03:04:05" or "04:05".
qlonglong secondsOf(const std::string& elapsed) {
  qlonglong days = 0;
  std::string clock = elapsed;
  if (const std::size_t dash = elapsed.find('-'); dash != std::string::npos) {
    days = std::atoll(elapsed.c_str());
    clock = elapsed.substr(dash + 1);
  }
  qlonglong seconds = 0;
  for (std::size_t begin = 0; begin < clock.size();) {
    seconds = seconds * 60 + std::atoll(clock.c_str() + begin);
    begin = std::min(clock.find(':', begin), clock.size() - 1) + 1;
  }
  return days * 86'400 + seconds;
}

}  // namespace

void TaskTableModel::reloadData(const std::vector<TaskManagerInfo>& rows) {
  const auto isSame = [](const auto& a, const auto& b) { return a.pID == b.pID; };
  for (int row = rowCount() - 1; row >= 0; --row) {
    const auto place = rows_.begin() + row;
    if (std::any_of(rows.begin(), rows.end(),
                    [&](const auto& each) { return isSame(each, *place); }))
      continue;
    beginRemoveRows({}, row, row);
    rows_.erase(place);
    endRemoveRows();
  }
  const int kept = rowCount();
  const int added = static_cast<int>(rows.size()) - kept;
  // New ones are at the end. In another order none would keep its place.
  if (added < 0 || !std::equal(rows_.begin(), rows_.end(), rows.begin(), isSame)) {
    beginResetModel();
    rows_ = rows;
    endResetModel();
    return;
  }
  if (added > 0) beginInsertRows({}, kept, kept + added - 1);
  rows_ = rows;
  if (added > 0) endInsertRows();
  if (kept > 0) Q_EMIT dataChanged(index(0, 0), index(kept - 1, count - 1));
}

int TaskTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TaskTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count;
}

QIcon TaskTableModel::iconOf(const std::string& image) {
  const QIcon& icon = applicationIcon(image);
  return icon.isNull() ? ImageLookup::icon("ic_window") : icon;
}

QVariant TaskTableModel::sortValue(const TaskManagerInfo& row, int column) {
  switch (column) {
    case cpu:
      return std::atof(row.procCpu.c_str());
    case memory:
      return static_cast<qulonglong>(std::strtoull(row.procVss.c_str(), nullptr, 10));
    case time:
      return secondsOf(row.procETime);
    default:
      return QString::fromStdString(row.name);
  }
}

QVariant TaskTableModel::data(const QModelIndex& index, int role) const {
  const TaskManagerInfo& row = rows_.at(static_cast<std::size_t>(index.row()));
  const int column = index.column();
  if (role == SortRole) return sortValue(row, column);
  if (role == Qt::TextAlignmentRole && column > name) return static_cast<int>(Qt::AlignRight);
  if (column == checkBox) {
    if (role == ImageNameRole) return QLatin1String(TaskManagerModel::selectImage(row));
    if (role == Qt::AccessibleTextRole) {
      return getLocalizedString(row.bIsSelected ? "selected" : "not selected");
    }
    return {};
  }
  if (role == Qt::DecorationRole && column == name) return iconOf(row.image);
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const QString text = QString::fromStdString(
      escapedForDisplay(TaskManagerModel::cellText(row, kColumns[column].identifier)));
  return role == Qt::ToolTipRole ? toolTipText(text) : text;
}

QVariant TaskTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return getLocalizedString(kColumns[section].title);
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section > name ? Qt::AlignRight | Qt::AlignVCenter
                                           : Qt::AlignLeft | Qt::AlignVCenter);
  }
  return {};
}

}  // namespace brisko

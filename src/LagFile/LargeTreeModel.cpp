#include "LargeTreeModel.h"

#include "CommUti.h"
#include "EntryTable.h"
#include "FileFilter.h"
#include "LargeFileKinds.h"
#include "LocalizedString.h"

#include <QLocale>

#include <algorithm>
#include <functional>
#include <utility>

namespace brisko {

void LargeTreeModel::reset() {
  beginResetModel();
  rows_.clear();
  isChanging_ = false;
  endResetModel();
}

void LargeTreeModel::nodesWillLeave() {
  if (std::exchange(isChanging_, true)) return;
  Q_EMIT layoutAboutToBeChanged();
}

// Only what views hold on to is looked up again: the highlighted row and the folders that are open.
void LargeTreeModel::refresh() {
  nodesWillLeave();
  const QModelIndexList held = persistentIndexList();
  for (auto at = rows_.begin(); at != rows_.end();) {
    if (at->first->isGone) {
      at = rows_.erase(at);
      continue;
    }
    fill(at->second, *at->first);
    ++at;
  }
  for (const QModelIndex& index : held) {
    QModelIndex now;
    if (isMore(index)) {
      const FileNode* folder = folderOfMore(index);
      const auto rows = rows_.find(folder);
      if (rows != rows_.end() && rows->second.hidden > 0) {
        now = createIndex(static_cast<int>(rows->second.nodes.size()), index.column(),
                          index.internalId());
      }
    } else {
      FileNode* const at = node(index);
      const int row = at->isGone ? -1 : rowOf(*at);
      if (row >= 0) now = createIndex(row, index.column(), index.internalPointer());
      if (row < 0 && at->folder != nullptr) at->folder->isExpand = false;
    }
    changePersistentIndex(index, now);
  }
  isChanging_ = false;
  Q_EMIT layoutChanged();
}

void LargeTreeModel::ticksChanged() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, Checkbox), index(rowCount() - 1, Checkbox));
}

void LargeTreeModel::showMore(const QModelIndex& more) {
  if (!more.isValid() || !isMore(more)) return;
  rowsOf(*folderOfMore(more)).most += kMoreRows;
  refresh();
}

// The largest entries in order. Which they are is found by their sizes alone first, because the
// entries themselves lie all over the memory: each is looked at once.
void LargeTreeModel::fill(Rows& rows, const FileNode& folder) const {
  std::vector<Sized>& shown = sized_;
  shown.clear();
  std::uint64_t all = 0;
  for (FileNode* each : folder.folder->list) {
    if (!isShown(*each)) continue;
    shown.push_back({each->size, each});
    all += each->size;
  }
  const std::size_t total = shown.size();
  const auto before = [](const Sized& one, const Sized& other) {
    return standsBefore(*one.node, *other.node);
  };
  if (total > rows.most) {
    const auto last = shown.begin() + static_cast<std::ptrdiff_t>(rows.most) - 1;
    std::nth_element(shown.begin(), last, shown.end(),
                     [](const Sized& one, const Sized& other) { return one.size > other.size; });
    // Of those that are as large as the last one, only the whole order tells which come first.
    std::erase_if(shown, [least = last->size](const Sized& each) { return each.size < least; });
    const auto end = shown.begin() + static_cast<std::ptrdiff_t>(rows.most);
    std::nth_element(shown.begin(), end - 1, shown.end(), before);
    shown.erase(end, shown.end());
  }
  std::sort(shown.begin(), shown.end(), before);
  rows.nodes.clear();
  for (const Sized& each : shown) {
    rows.nodes.push_back(each.node);
    all -= each.size;
  }
  rows.hidden = total - rows.nodes.size();
  rows.hiddenBytes = all;
}

LargeTreeModel::Rows& LargeTreeModel::rowsOf(FileNode& folder) const {
  const auto [rows, isNew] = rows_.try_emplace(&folder);
  if (isNew) fill(rows->second, folder);
  return rows->second;
}

FileNode* LargeTreeModel::folderOfMore(const QModelIndex& index) {
  return reinterpret_cast<FileNode*>(index.internalId() & ~quintptr{1});
}

FileNode* LargeTreeModel::node(const QModelIndex& index) const {
  return !index.isValid() || isMore(index) ? nullptr
                                           : static_cast<FileNode*>(index.internalPointer());
}

FileNode* LargeTreeModel::holderOf(const QModelIndex& parent) const {
  if (!parent.isValid()) return controller_.root();
  FileNode* const at = node(parent);
  return at != nullptr && at->folder != nullptr ? at : nullptr;
}

int LargeTreeModel::rowOf(const FileNode& node) const {
  if (node.holder == nullptr) return -1;
  const auto rows = rows_.find(node.holder);
  if (rows == rows_.end()) return -1;
  const auto& nodes = rows->second.nodes;
  const auto found = std::find(nodes.begin(), nodes.end(), &node);
  return found == nodes.end() ? -1 : static_cast<int>(found - nodes.begin());
}

QModelIndex LargeTreeModel::indexOf(const FileNode& node, int column) const {
  if (node.holder == nullptr) return {};
  rowsOf(*node.holder);
  const int row = rowOf(node);
  return row < 0 ? QModelIndex() : createIndex(row, column, &node);
}

QModelIndex LargeTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  FileNode* const holder = holderOf(parent);
  const Rows& rows = rowsOf(*holder);
  const auto at = static_cast<std::size_t>(row);
  if (at < rows.nodes.size()) return createIndex(row, column, rows.nodes[at]);
  return createIndex(row, column, reinterpret_cast<quintptr>(holder) | 1U);
}

QModelIndex LargeTreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const FileNode* const holder = isMore(index) ? folderOfMore(index) : node(index)->holder;
  return holder == nullptr || holder->holder == nullptr ? QModelIndex() : indexOf(*holder);
}

int LargeTreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  FileNode* const holder = holderOf(parent);
  if (holder == nullptr) return 0;
  const Rows& rows = rowsOf(*holder);
  return static_cast<int>(rows.nodes.size()) + (rows.hidden > 0 ? 1 : 0);
}

int LargeTreeModel::columnCount(const QModelIndex&) const {
  return count;
}

bool LargeTreeModel::hasChildren(const QModelIndex& parent) const {
  if (parent.column() > 0) return false;
  const FileNode* const holder = holderOf(parent);
  if (holder == nullptr) return false;
  // Without making its rows: this is asked of folders that nobody opens.
  const auto& list = holder->folder->list;
  if (!controller_.filter().isActive()) return !list.empty();
  return std::any_of(list.begin(), list.end(), [](const FileNode* each) { return isShown(*each); });
}

Qt::ItemFlags LargeTreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags plain = QAbstractItemModel::flags(index);
  if (!index.isValid()) return plain;
  const FileNode* const at = node(index);
  return at == nullptr || at->folder == nullptr ? plain | Qt::ItemNeverHasChildren : plain;
}

QVariant LargeTreeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  if (isMore(index)) return moreData(index, role);
  const FileNode& at = *node(index);
  switch (role) {
    case Qt::DisplayRole:
      return text(at, index.column());
    case Qt::ToolTipRole: {
      if (index.column() == Checkbox) return displayText(controller_.lockReason(at));
      const std::string reason = at.reason();
      const QString path = displayText(at._path());
      return toolTipText(reason.empty() ? path : path + QStringLiteral(": ") + displayText(reason));
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      if (index.column() != Checkbox) return {};
      if (!controller_.lockReason(at).empty()) return getLocalizedString("locked");
      return getLocalizedString(at.state == TickState::on       ? "selected"
                                : at.state == TickState::partly ? "partly selected"
                                                                : "not selected");
    case ImageNameRole:
      if (index.column() == Name) return QLatin1String(largeFileImage(at));
      return QLatin1String(index.column() == Checkbox ? Controller::boxImage(at) : "");
    case LockRole:
      return displayText(controller_.lockReason(at));
    case ReasonRole:
      return displayText(at.reason());
    case SizeColorRole:
      return sizeColor(at.size);
    case CutRole:
      return isCut(at);
    case MoreRole:
      return false;
    default:
      return {};
  }
}

QVariant LargeTreeModel::moreData(const QModelIndex& index, int role) const {
  if (role == MoreRole) return true;
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  const Rows& rows = rowsOf(*folderOfMore(index));
  if (index.column() == Name) {
    return filledIn(getLocalizedString(rows.hidden == 1 ? "%@ smaller item" : "%@ smaller items"),
                    QLocale().toString(static_cast<qulonglong>(rows.hidden)));
  }
  if (index.column() == Size) {
    return QString::fromStdString(CommUti::convertVolSpace(rows.hiddenBytes));
  }
  return QString();
}

QString LargeTreeModel::text(const FileNode& node, int column) const {
  switch (column) {
    case Name:
      return displayText(node._name());
    case Size:
      return QString::fromStdString(CommUti::convertVolSpace(node.size));
    case Time:
      return modificationDateText(node);
    case Path:
      return displayText(node._path());
    default:
      return {};
  }
}

QVariant LargeTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section == Size ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  constexpr const char* kTitles[count] = {"", "Name", "Size", "Modified", "Path"};
  return getLocalizedString(kTitles[section]);
}

}  // namespace brisko

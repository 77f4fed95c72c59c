#include "DuplicateTreeModel.h"

#include "CommUti.h"
#include "DuplicateModel.h"
#include "EntryTable.h"
#include "LocalizedString.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cstdint>

namespace brisko {
namespace {

bool isKept(const SimpleTreeNode& leaf) {
  if (!leaf.nodeData.isLeaf || leaf.nodeData.selectNum == 1) return false;
  const auto& copies = leaf.nodeParent->children;
  const auto last = std::find_if(copies.rbegin(), copies.rend(), [](const SimpleTreeNode* copy) {
    return copy->nodeData.selectNum == 0;
  });
  return last != copies.rend() && *last == &leaf;
}

// An index holds its node, and in the lowest bit of the address whether that is a leaf: a layout
// asks it of a hundred thousand groups, and looks into none of them so.
constexpr std::uintptr_t kLeafBit = 1;
static_assert(alignof(SimpleTreeNode) > kLeafBit);

const void* handleOf(const SimpleTreeNode* node, bool isLeaf) {
  return reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(node) |
                                       (isLeaf ? kLeafBit : 0));
}

bool isLeaf(const QModelIndex& index) {
  return (index.internalId() & kLeafBit) != 0;
}

QString spokenBox(const SimpleNodeData& data) {
  if (data.selectNum == 0) return getLocalizedString("not selected");
  return getLocalizedString(data.selectNum == 1 ? "selected" : "partly selected");
}

}  // namespace

QString modificationDateText(const SimpleNodeData& data) {
  const auto moment = QDateTime::fromSecsSinceEpoch(data.ModificationDate.seconds);
  return QLocale().toString(moment, QLocale::ShortFormat);
}

void DuplicateTreeModel::reloadData(const SimpleTreeNode* root) {
  beginResetModel();
  root_ = root;
  endResetModel();
}

void DuplicateTreeModel::nodesWillMove() {
  Q_EMIT layoutAboutToBeChanged();
}

// Only what views hold on to is looked at: the highlighted row and the groups that stand open.
void DuplicateTreeModel::nodesHaveMoved() {
  for (const QModelIndex& held : persistentIndexList()) {
    const SimpleTreeNode* at = node(held);
    const bool isGone =
        at->nodeData.isGone || (at->nodeData.isLeaf && at->nodeParent->nodeData.isGone);
    const int row = isGone ? -1 : rowOf(at);
    changePersistentIndex(
        held, row < 0 ? QModelIndex() : createIndex(row, held.column(), held.internalPointer()));
  }
  Q_EMIT layoutChanged();
}

int DuplicateTreeModel::rowOf(const SimpleTreeNode* node) const {
  if (node->nodeData.isLeaf) {
    const auto& copies = node->nodeParent->children;
    const auto found = std::find(copies.begin(), copies.end(), node);
    return found == copies.end() ? -1 : static_cast<int>(found - copies.begin());
  }
  if (root_ == nullptr || root_->children.empty()) return -1;
  // When others before it leave a group moves up, so the row is the one remembered or one above.
  const auto& groups = root_->children;
  std::size_t row = std::min<std::size_t>(node->rowHint, groups.size() - 1);
  while (groups[row] != node && row > 0)
    --row;
  if (groups[row] != node) {
    // Never seen, sorted, or seen in another tree: all of them are looked at.
    for (row = 0; row < groups.size(); ++row)
      groups[row]->rowHint = static_cast<std::uint32_t>(row);
    row = std::min<std::size_t>(node->rowHint, groups.size() - 1);
  }
  return groups[row] == node ? static_cast<int>(row) : -1;
}

void DuplicateTreeModel::groupChanged(const SimpleTreeNode* group) {
  const int row = rowOf(group);
  if (row < 0) return;
  const QModelIndex first = index(row, Checkbox);
  Q_EMIT dataChanged(first, index(row, count - 1));
  Q_EMIT dataChanged(index(0, Checkbox, first), index(rowCount(first) - 1, count - 1, first));
}

void DuplicateTreeModel::rowChanged(const QModelIndex& row) {
  Q_EMIT dataChanged(row.siblingAtColumn(Checkbox), row.siblingAtColumn(count - 1));
}

SimpleTreeNode* DuplicateTreeModel::node(const QModelIndex& index) const {
  return reinterpret_cast<SimpleTreeNode*>(index.internalId() & ~kLeafBit);
}

QModelIndex DuplicateTreeModel::indexOf(SimpleTreeNode* group) const {
  const int row = rowOf(group);
  return row < 0 ? QModelIndex() : createIndex(row, 0, group);
}

QModelIndex DuplicateTreeModel::index(int row, int column, const QModelIndex& parent) const {
  // Asked for every row of a layout, so nothing is asked twice, and no group is looked into.
  const SimpleTreeNode* above = parent.isValid() ? node(parent) : root_;
  if (above == nullptr || row < 0 || column < 0 || column >= count || parent.column() > 0 ||
      static_cast<std::size_t>(row) >= above->children.size()) {
    return {};
  }
  const SimpleTreeNode* shown = above->children[static_cast<std::size_t>(row)];
  return createIndex(row, column, handleOf(shown, parent.isValid()));
}

QModelIndex DuplicateTreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || !isLeaf(index)) return {};
  return indexOf(node(index)->nodeParent);
}

int DuplicateTreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0 || root_ == nullptr) return 0;
  const SimpleTreeNode* above = parent.isValid() ? node(parent) : root_;
  return static_cast<int>(above->children.size());
}

int DuplicateTreeModel::columnCount(const QModelIndex&) const {
  return count;
}

bool DuplicateTreeModel::hasChildren(const QModelIndex& parent) const {
  // A group in the outline has leaves.
  return parent.isValid() ? parent.column() == 0 && !isLeaf(parent) : rowCount() > 0;
}

Qt::ItemFlags DuplicateTreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags plain = QAbstractItemModel::flags(index);
  return index.isValid() && isLeaf(index) ? plain | Qt::ItemNeverHasChildren : plain;
}

QVariant DuplicateTreeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const SimpleTreeNode& at = *node(index);
  const bool isName = index.column() == NameColumn;
  switch (role) {
    case Qt::DisplayRole:
      return text(at, index.column());
    case Qt::ToolTipRole:
      return isName ? toolTipText(displayText(at.nodeData.name())) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() >= allSelectNum ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::AccessibleTextRole:
      return index.column() == Checkbox ? spokenBox(at.nodeData) : QVariant();
    case ImageNameRole:
      return imageName(at, index.column());
    case KeptRole:
      return isName && isKept(at);
    case HardLinkRole:
      return isName && at.nodeData.isLeaf && at.nodeData.hardLink;
    default:
      return {};
  }
}

QString DuplicateTreeModel::text(const SimpleTreeNode& node, int column) {
  switch (column) {
    case NameColumn:
      return displayText(node.nodeData.name());
    case allSelectNum:
      return node.nodeData.isLeaf ? QString() : QString::fromStdString(node.showSelectNumStr());
    case FileSize:
      return QString::fromStdString(CommUti::convertVolSpace(node.nodeData.fileSize));
    case ModifyDate:
      return node.nodeData.isLeaf ? modificationDateText(node.nodeData) : QString();
    default:
      return {};
  }
}

QString DuplicateTreeModel::imageName(const SimpleTreeNode& node, int column) {
  if (column == Checkbox) return QLatin1String(DuplicateModel::boxImage(node.nodeData));
  return column == NameColumn ? QLatin1String(node.iconRep()) : QString();
}

QVariant DuplicateTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count) return {};
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section >= allSelectNum ? Qt::AlignRight : Qt::AlignLeft);
  }
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case NameColumn:
      return getLocalizedString("Name");
    case FileSize:
      return getLocalizedString("Size");
    case ModifyDate:
      return getLocalizedString("Modified");
    default:
      return QString();
  }
}

}  // namespace brisko

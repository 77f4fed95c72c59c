#include "DiskTreeModel.h"

#include "DiskDetail.h"
#include "DiskTree.h"
#include "LocalizedString.h"

#include <utility>

namespace brisko {
namespace {

const std::vector<DiskNode> kNone;

QString captionOf(const DiskAndVolumeObj& node) {
  const std::string& kind = node.diskType;
  const std::string size = node.totalSpace;
  return displayText(kind.empty() ? size : size + " · " + kind);
}

}  // namespace

void DiskTreeModel::reloadData(std::vector<DiskNode> disks) {
  beginResetModel();
  disks_ = std::move(disks);
  endResetModel();
}

// An index holds the node above it: the disk of a volume, null for a disk.
const std::vector<DiskNode>& DiskTreeModel::childrenOf(const QModelIndex& parent) const {
  if (!parent.isValid()) return disks_;
  if (parent.internalPointer() != nullptr || parent.column() > 0) return kNone;
  return disks_[static_cast<std::size_t>(parent.row())]->chrArr;
}

DiskNode DiskTreeModel::node(const QModelIndex& index) const {
  if (!index.isValid()) return nullptr;
  const auto* disk = static_cast<const DiskAndVolumeObj*>(index.internalPointer());
  const auto& siblings = disk == nullptr ? disks_ : disk->chrArr;
  return siblings[static_cast<std::size_t>(index.row())];
}

QModelIndex DiskTreeModel::indexOf(const DiskNode& node) const {
  for (int row = 0; node && row < rowCount(); ++row) {
    const QModelIndex disk = index(row, Name);
    if (this->node(disk) == node) return disk;
    for (int below = 0; below < rowCount(disk); ++below) {
      if (this->node(index(below, Name, disk)) == node) return index(below, Name, disk);
    }
  }
  return {};
}

QModelIndex DiskTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, parent.isValid() ? node(parent).get() : nullptr);
}

QModelIndex DiskTreeModel::parent(const QModelIndex& index) const {
  const void* disk = index.internalPointer();
  for (std::size_t row = 0; disk != nullptr && row < disks_.size(); ++row) {
    if (disks_[row].get() == disk) return createIndex(static_cast<int>(row), 0);
  }
  return {};
}

int DiskTreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(childrenOf(parent).size());
}

int DiskTreeModel::columnCount(const QModelIndex&) const {
  return count;
}

QVariant DiskTreeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const DiskNode at = node(index);
  const bool isName = index.column() == Name;
  switch (role) {
    case Qt::DisplayRole:
      return isName ? displayText(at->volumeName.empty() ? "Unknow" : at->volumeName) : QVariant();
    case Qt::ToolTipRole:
      return isName ? toolTipText(displayText(at->volumePath))
                    : QVariant(at->bCanEject ? getLocalizedString("Eject") : QString());
    case Qt::AccessibleTextRole:
      if (!isName) return at->bCanEject ? getLocalizedString("Eject") : QString();
      return data(index, Qt::DisplayRole).toString() + QStringLiteral(", ") + captionOf(*at);
    case ImageRole:
      if (!isName) return at->bCanEject ? QStringLiteral("eject") : QString();
      return QLatin1String(diskImage(*at, isSystemVolume(disks_, *at)));
    case CaptionRole:
      return isName ? captionOf(*at) : QString();
    default:
      return {};
  }
}

QVariant DiskTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return getLocalizedString(section == Name ? "Name" : "Eject");
}

}  // namespace brisko

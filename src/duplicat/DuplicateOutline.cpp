#include "DuplicateOutline.h"

#include "DuplicateModel.h"
#include "DuplicateOutlineDelegate.h"
#include "DuplicateTreeModel.h"
#include "ImageCheckBox.h"
#include "SortHeaderView.h"
#include "Theme.h"

#include <utility>
#include <vector>

namespace brisko {
namespace {

DuplicateColumn sortedColumn(int section) {
  switch (section) {
    case DuplicateTreeModel::NameColumn:
      return DuplicateColumn::NameColumn;
    case DuplicateTreeModel::FileSize:
      return DuplicateColumn::FileSize;
    case DuplicateTreeModel::ModifyDate:
      return DuplicateColumn::ModifyDate;
    default:
      return DuplicateColumn::none;
  }
}

}  // namespace

DuplicateOutline::DuplicateOutline(QWidget* parent)
    : CheckOutline(parent), tree_(new DuplicateTreeModel(this)) {
  setHeader(new SortHeaderView(this));
  setTabOrder(header(), this);
  setItemDelegate(new DuplicateOutlineDelegate(this));
  setModel(tree_);
  setUpColumns();
  connect(this, &CheckOutline::toggleRequested, this,
          [this](const QModelIndex& index) { Q_EMIT nodeToggleRequested(tree_->node(index)); });
  connect(this, &CheckOutline::currentRowChanged, this,
          [this] { Q_EMIT currentNodeChanged(currentNode()); });
  connect(this, &QTreeView::expanded, this,
          [this](const QModelIndex& index) { opened_.insert(tree_->node(index)); });
  connect(this, &QTreeView::collapsed, this,
          [this](const QModelIndex& index) { opened_.erase(tree_->node(index)); });
  connect(header(), &QHeaderView::sectionClicked, this,
          [this](int section) { Q_EMIT didClickTableColumn(sortedColumn(section)); });
}

void DuplicateOutline::setUpColumns() {
  // An outline that does not sort by itself takes this away from its header.
  header()->setSectionsClickable(true);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setMinimumSectionSize(48);
  // How long a date is depends on the user's language.
  const QFontMetrics metrics(Theme::shared().font(12));
  SimpleNodeData sample;
  sample.ModificationDate.seconds = 1'797'600'000;
  const int date = metrics.horizontalAdvance(modificationDateText(sample)) + Space::wide;
  const int widths[] = {52, 200, 52, 88, date};
  for (int column = 0; column < DuplicateTreeModel::count; ++column) {
    const bool isName = column == DuplicateTreeModel::NameColumn;
    header()->setSectionResizeMode(column, isName ? QHeaderView::Stretch
                                           : column == DuplicateTreeModel::Checkbox
                                               ? QHeaderView::Fixed
                                               : QHeaderView::Interactive);
    if (!isName) header()->resizeSection(column, widths[column]);
  }
}

ImageCheckBox* DuplicateOutline::selectAllBox() const {
  return static_cast<CheckHeaderView*>(header())->checkBox();
}

SimpleTreeNode* DuplicateOutline::currentNode() const {
  return currentIndex().isValid() ? tree_->node(currentIndex()) : nullptr;
}

void DuplicateOutline::openRow(const QModelIndex& row) {
  if (row.parent().isValid()) {
    Q_EMIT revealRequested();
  } else {
    CheckOutline::openRow(row);
  }
}

// Whether a group stands in the tree that is shown.
bool DuplicateOutline::isShown(const SimpleTreeNode& group) const {
  return segment_ == 0 || segmentOf(group) == segment_;
}

void DuplicateOutline::showTree(const SimpleTreeNode* root, std::size_t segment) {
  if (root == nullptr) opened_.clear();
  segment_ = segment;
  SimpleTreeNode* current = root == nullptr ? nullptr : currentNode();
  tree_->reloadData(root);
  if (tree_->rowCount() == 0) {
    Q_EMIT currentNodeChanged(nullptr);
    return;
  }
  openAgain();
  // A copy's row is found by way of its group, which stays highlighted in its stead.
  if (current != nullptr && current->nodeData.isLeaf) current = current->nodeParent;
  const bool staysCurrent = current != nullptr && isShown(*current);
  setCurrentIndex(staysCurrent ? tree_->indexOf(current) : tree_->index(0, 0));
}

void DuplicateOutline::openFirst() {
  expand(tree_->index(0, 0));
  setCurrentIndex(tree_->index(0, 0));
}

void DuplicateOutline::openAgain() {
  std::erase_if(opened_, [](const SimpleTreeNode* group) { return group->nodeData.isGone; });
  // A copy, because opening tells that it was opened.
  for (SimpleTreeNode* group : std::vector<SimpleTreeNode*>(opened_.begin(), opened_.end())) {
    if (isShown(*group)) expand(tree_->indexOf(group));
  }
}

void DuplicateOutline::nodesWillMove() {
  tree_->nodesWillMove();
}

void DuplicateOutline::nodesHaveMoved() {
  tree_->nodesHaveMoved();
  Q_EMIT currentNodeChanged(currentNode());
}

void DuplicateOutline::groupChanged(SimpleTreeNode* group) {
  tree_->groupChanged(group);
}

// Only for what is in sight: the rest is asked for when it comes there, and a view takes longer
// than a frame over a notice for a hundred thousand rows.
void DuplicateOutline::allTicksChanged() {
  QModelIndex row = indexAt({0, 0});
  for (; row.isValid() && visualRect(row).top() < viewport()->height(); row = indexBelow(row))
    tree_->rowChanged(row);
}

// The header moves its mark by itself when it is pressed, so this is said after each press.
void DuplicateOutline::showSortMark(DuplicateColumn column, bool descending) {
  int section = -1;
  for (int each = 0; each < DuplicateTreeModel::count; ++each) {
    if (column != DuplicateColumn::none && sortedColumn(each) == column) section = each;
  }
  header()->setSortIndicatorShown(section >= 0);
  header()->setSortIndicator(section, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

}  // namespace brisko

// The outline as the page keeps it: what is open, highlighted and sorted.

#include "DuplicateTreeModel.h"
#include "DuplicateViewController.h"
#include "ImageCheckBox.h"
#include "LocalizedString.h"
#include "ui_DuplicateViewController.h"

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

// Whether a group stands in the tree that is shown.
bool isIn(const DuplicateModel& model, const SimpleTreeNode& group) {
  const std::size_t segment = model.remberWitchSelect();
  return segment == 0 ||
         kDuplicateClassSegments[static_cast<std::size_t>(group.nodeData.fileType)] == segment;
}

}  // namespace

void DuplicateViewController::setUpOutline() {
  DuplicateOutline* outline = ui_->outline;
  outline->setTree(tree_);
  outline->setAccessibleName(getLocalizedString("Duplicate files"));
  connect(outline, &DuplicateOutline::toggleRequested, this, [this](const QModelIndex& index) {
    if (!isRemovalDue()) model_.toggle(*tree_->node(index));
  });
  connect(outline, &DuplicateOutline::currentRowChanged, this, [this](const QModelIndex& index) {
    ui_->preview->show(index.isValid() ? tree_->node(index) : nullptr);
  });
  connect(outline, &DuplicateOutline::revealRequested, this,
          &DuplicateViewController::openFinderWhenClickItems);
  connect(outline, &QTreeView::expanded, this,
          [this](const QModelIndex& index) { opened_.insert(tree_->node(index)); });
  connect(outline, &QTreeView::collapsed, this,
          [this](const QModelIndex& index) { opened_.erase(tree_->node(index)); });
  connect(outline->selectAllBox(), &QAbstractButton::clicked, this,
          &DuplicateViewController::setAllSelectOrNoSelect);
  connect(outline->header(), &QHeaderView::sectionClicked, this, [this](int section) {
    model_.didClickTableColumn(sortedColumn(section));
    // The header has moved its mark by itself.
    showSortMark();
  });
  connect(ui_->preview, &DuplicatePreview::showInFinderWhenClickItems, this,
          &DuplicateViewController::showInFinderWhenClickItems);
}

void DuplicateViewController::showSortMark() {
  QHeaderView* header = ui_->outline->header();
  int section = -1;
  for (int each = 0; each < DuplicateTreeModel::count; ++each) {
    const DuplicateColumn column = sortedColumn(each);
    if (column != DuplicateColumn::none && column == model_.lastColumn()) section = each;
  }
  header->setSortIndicatorShown(section >= 0);
  header->setSortIndicator(section,
                           model_.sortDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void DuplicateViewController::treeReset() {
  if (model_.treeData() == nullptr) opened_.clear();
  const QModelIndex before = ui_->outline->currentIndex();
  SimpleTreeNode* current = before.isValid() ? tree_->node(before) : nullptr;
  tree_->reloadData(model_.treeData());
  if (tree_->rowCount() == 0) {
    ui_->preview->show(nullptr);
    return;
  }
  const bool isResult = model_.view() == DuplicateView::progress;
  if (isResult) ui_->outline->expand(tree_->index(0, 0));
  openAgain();
  // A copy's row is found by way of its group, which stays highlighted in its stead.
  if (current != nullptr && current->nodeData.isLeaf) current = current->nodeParent;
  const bool isShown = !isResult && current != nullptr && isIn(model_, *current);
  ui_->outline->setCurrentIndex(isShown ? tree_->indexOf(current) : tree_->index(0, 0));
}

void DuplicateViewController::openAgain() {
  std::erase_if(opened_, [](const SimpleTreeNode* group) { return group->nodeData.isGone; });
  // A copy, because opening tells that it was opened.
  for (SimpleTreeNode* group : std::vector<SimpleTreeNode*>(opened_.begin(), opened_.end())) {
    if (isIn(model_, *group)) ui_->outline->expand(tree_->indexOf(group));
  }
}

void DuplicateViewController::treeWillChange() {
  tree_->nodesWillMove();
}

void DuplicateViewController::treeDidChange() {
  tree_->nodesHaveMoved();
  const QModelIndex current = ui_->outline->currentIndex();
  ui_->preview->show(current.isValid() ? tree_->node(current) : nullptr);
}

void DuplicateViewController::groupChanged(SimpleTreeNode* group) {
  tree_->groupChanged(group);
}

void DuplicateViewController::allTicksChanged() {
  tree_->allTicksChanged();
  ui_->outline->viewport()->update();
}

}  // namespace brisko

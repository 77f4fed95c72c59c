// What is shown of the tree: its rows, the one that is highlighted, and the lines below.

#include "CommUti.h"
#include "ImageCheckBox.h"
#include "LargeFileKinds.h"
#include "LargeTreeModel.h"
#include "ListFileViewController.h"
#include "LocalizedString.h"
#include "ui_ListFileViewController.h"

#include <QLocale>

#include <cstring>

namespace brisko {

void ListFileViewController::setUpOutline() {
  LargeOutline* outline = ui_->outline;
  outline->setTree(tree_);
  outline->setAccessibleName(getLocalizedString("Files and folders, largest first"));
  connect(outline, &LargeOutline::toggleRequested, this, [this](const QModelIndex& index) {
    if (FileNode* node = tree_->node(index)) controller_.toggle(*node);
  });
  connect(outline, &LargeOutline::openRequested, this, [this](const QModelIndex& index) {
    Controller::pereviewFileWithFileNode(tree_->node(index));
  });
  connect(outline, &LargeOutline::moreRequested, this, [this](const QModelIndex& index) {
    // The first one that comes takes the highlight over.
    const QPersistentModelIndex folder = index.parent();
    const int row = index.row();
    tree_->showMore(index);
    ui_->outline->setCurrentIndex(tree_->index(row, 0, folder));
  });
  connect(outline, &LargeOutline::currentRowChanged, this, [this](const QModelIndex& index) {
    const FileNode* node = tree_->node(index);
    showNode(node);
    ui_->treemap->setCurrent(node);
  });
  const auto setExpand = [this](const QModelIndex& index, bool isExpand) {
    FileNode* node = tree_->node(index);
    if (node != nullptr && node->folder != nullptr) node->folder->isExpand = isExpand;
  };
  connect(outline, &QTreeView::expanded, this,
          [setExpand](const QModelIndex& index) { setExpand(index, true); });
  connect(outline, &QTreeView::collapsed, this,
          [setExpand](const QModelIndex& index) { setExpand(index, false); });
  connect(outline->selectAllBox(), &QAbstractButton::clicked, this, [this] {
    controller_.selectAllFileNode(std::strcmp(controller_.changeSelectAllButtonState(), "sel") !=
                                  0);
  });
}

void ListFileViewController::treeReset() {
  tree_->reset();
  ui_->treemap->setFolder(controller_.root());
  ui_->outline->selectAllBox()->setImageName("unsel");
  showNode(nullptr);
  showEmpty();
}

void ListFileViewController::reloadTree() {
  tree_->refresh();
  tree_->ticksChanged();
  // A row that has left takes the highlight with it without a word.
  if (!ui_->outline->currentIndex().isValid()) {
    showNode(nullptr);
    ui_->treemap->setCurrent(nullptr);
  }
  ui_->outline->viewport()->update();
  ui_->treemap->contentChanged();
  ui_->outline->selectAllBox()->setImageName(controller_.changeSelectAllButtonState());
  showEmpty();
  showStatus();
}

void ListFileViewController::treeWillChange() {
  tree_->nodesWillLeave();
}

void ListFileViewController::treeDidChange() {
  tree_->refresh();
  ui_->treemap->contentChanged();
  const FileNode* node = tree_->node(ui_->outline->currentIndex());
  ui_->treemap->setCurrent(node);
  showNode(node);
}

void ListFileViewController::showEmpty() {
  const bool isEmpty = controller_.root() != nullptr && !isShown_ && tree_->rowCount() == 0;
  ui_->outlineCard->setVisible(!isEmpty);
  ui_->emptyView->setVisible(isEmpty);
  if (isEmpty) {
    ui_->emptyView->show("ill_empty", getLocalizedString("Nothing of this size and age"),
                         getLocalizedString("Choose another size or age to see more."));
  }
}

void ListFileViewController::showStatus() {
  EumeRoot* scan = controller_.eumeRoot();
  if (scan == nullptr) return;
  if (isShown_) {
    const QString found =
        QLocale().toString(static_cast<qulonglong>(scan->nodeTreeOperator().entries()));
    detagate_->showStatus(
        filledIn(getLocalizedString(isPaused() ? "Paused. %@ items so far"
                                               : "Looking through the folder. %@ items so far"),
                 found),
        displayText(scan->pathAtWork()));
    detagate_->changeMainButtonStart(true);
    return;
  }
  const LargeFileSelection selection = controller_.selection();
  const std::size_t unread = scan->nodeTreeOperator().unread().size();
  QString detail = filledIn(getLocalizedString("%@ in this folder"),
                            QString::fromStdString(CommUti::convertVolSpace(
                                controller_.root() != nullptr ? controller_.root()->size : 0)));
  if (scan->isStopped()) detail += getLocalizedString("; stopped before all of it was read");
  if (unread > 0) {
    detail += filledIn(getLocalizedString(unread == 1 ? "; %@ folder could not be read"
                                                      : "; %@ folders could not be read"),
                       QString::number(unread));
  }
  QString line = displayText(controller_.selectedText());
  if (selection.count > 0) {
    line +=
        QStringLiteral(", ") + QString::fromStdString(CommUti::longlongDiskSize(selection.bytes));
  }
  detagate_->showStatus(line, detail);
  detagate_->changeMainButtonStart(selection.count > 0 && !controller_.isScanning() &&
                                   !controller_.isRemoving());
}

void ListFileViewController::showNode(const FileNode* node) {
  if (node == nullptr) {
    ui_->preview->showNothing("ic_large", getLocalizedString("Nothing selected"),
                              getLocalizedString("Select an entry, in the list or in the map."));
    return;
  }
  FilePreview::Item item;
  item.path = node->_path();
  item.imageName = largeFileImage(*node);
  item.facts = QString::fromStdString(CommUti::longlongDiskSize(node->size)) +
               QStringLiteral("\n") + modificationDateText(*node);
  const FileIdentity identity = node->identity();
  item.hasContent = identity.kind == FileKind::regular;
  item.device = identity.device;
  item.inode = identity.inode;
  ui_->preview->showItem(item);
}

// Opens the folders above the entry, and highlights it; where it is among the rest of a folder,
// that folder.
void ListFileViewController::chooseInOutline(FileNode* node) {
  std::vector<const FileNode*> above;
  for (const FileNode* at = node->father(); at != nullptr; at = at->father())
    above.push_back(at);
  for (auto at = above.rbegin(); at != above.rend(); ++at) {
    const QModelIndex index = tree_->indexOf(**at);
    if (index.isValid()) ui_->outline->expand(index);
  }
  const FileNode* shown = node;
  QModelIndex index = tree_->indexOf(*shown);
  while (!index.isValid() && shown->father() != nullptr) {
    shown = shown->father();
    index = tree_->indexOf(*shown);
  }
  if (!index.isValid()) return;
  ui_->outline->setCurrentIndex(index);
  ui_->outline->scrollTo(index, QAbstractItemView::PositionAtCenter);
  // The outline may have gone to a folder above; the map keeps what was chosen in it.
  ui_->treemap->setCurrent(node);
  showNode(node);
}

}  // namespace brisko

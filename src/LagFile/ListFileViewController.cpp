#include "ListFileViewController.h"

#include "CommUti.h"
#include "Host.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LargeFileKinds.h"
#include "LargeTreeModel.h"
#include "LocalizedString.h"
#include "ProgressWindowController.h"
#include "fileAttrbItem.h"
#include "ui_ListFileViewController.h"

#include <QFile>
#include <QFileDialog>
#include <QMenu>
#include <QTimerEvent>

#include <array>
#include <cstring>
#include <utility>

namespace brisko {
namespace {

// Milliseconds between two looks at a running scan.
constexpr int kSortInterval = 100;

std::optional<std::string> askForFolder(QWidget* parent) {
  QFileDialog chooser(parent, getLocalizedString("Choose a path to search"));
  chooser.setFileMode(QFileDialog::Directory);
  chooser.setOption(QFileDialog::ShowDirsOnly);
  chooser.setLabelText(QFileDialog::Accept, getLocalizedString("Choose"));
  if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return {};
  return QFile::encodeName(chooser.selectedFiles().constFirst()).toStdString();
}

// The folder free of links, so that what is found in it can be removed by its path.
std::string withoutLinks(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : path;
}

}  // namespace

ListFileViewController::ListFileViewController(QWidget* view, ListFileDelegate* detagate)
    : view_(view),
      ui_(std::make_unique<Ui::ListFileViewController>()),
      detagate_(detagate),
      controller_(Controller::getController()),
      tree_(new LargeTreeModel(controller_, this)) {
  ui_->setupUi(view);
  choose_ = [this] { return askForFolder(view_); };
  setUpOutline();
  setUpFilters();
  connectControls();
  controller_.clear();
  controller_.setFilter({});
  controller_.setDelegate(this);
  showNode(nullptr);
  showEmpty();
}

ListFileViewController::~ListFileViewController() {
  controller_.setDelegate(nullptr);
  controller_.stopScan();
  controller_.stopRemove();
}

void ListFileViewController::setUpOutline() {
  LargeOutline* outline = ui_->outline;
  outline->setTree(tree_);
  outline->setAccessibleName(getLocalizedString("Files and folders, largest first"));
  connect(outline, &LargeOutline::toggleRequested, this, [this](const QModelIndex& index) {
    if (FileNode* node = tree_->node(index)) controller_.toggle(*node);
  });
  connect(outline, &LargeOutline::moreRequested, this,
          [this](const QModelIndex& index) { tree_->showMore(index); });
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

void ListFileViewController::addFilter(QMenu* menu, const char* label, std::function<void()> set) {
  const QString text = getLocalizedString(label);
  connect(menu->addAction(text), &QAction::triggered, this, [this, menu, text, set] {
    set();
    auto* button = static_cast<QPushButton*>(menu->parentWidget());
    button->setText(text);
    applyFilter();
  });
}

void ListFileViewController::setUpFilters() {
  constexpr std::array<std::pair<const char*, std::uint64_t>, 5> kSizes = {
      {{"Any size", 0},
       {"Over 1 MB", 1'000'000},
       {"Over 10 MB", 10'000'000},
       {"Over 100 MB", 100'000'000},
       {"Over 1 GB", 1'000'000'000}}};
  constexpr std::array<std::pair<const char*, std::uint32_t>, 5> kAges = {
      {{"Any age", 0},
       {"Older than 30 days", 30},
       {"Older than 6 months", 183},
       {"Older than 1 year", 365},
       {"Older than 2 years", 730}}};
  auto* sizes = new QMenu(ui_->sizeFilterButton);
  for (const auto& [label, bytes] : kSizes)
    addFilter(sizes, label, [this, bytes = bytes] { minSize_ = bytes; });
  auto* ages = new QMenu(ui_->ageFilterButton);
  for (const auto& [label, days] : kAges)
    addFilter(ages, label, [this, days = days] { days_ = days; });
  ui_->sizeFilterButton->setText(getLocalizedString(kSizes[0].first));
  ui_->sizeFilterButton->setMenu(sizes);
  ui_->sizeFilterButton->setAccessibleDescription(getLocalizedString("Which sizes are listed"));
  ui_->ageFilterButton->setText(getLocalizedString(kAges[0].first));
  ui_->ageFilterButton->setMenu(ages);
  ui_->ageFilterButton->setAccessibleDescription(getLocalizedString("Which ages are listed"));
}

void ListFileViewController::connectControls() {
  ui_->backButton->setIcon(ImageLookup::icon("ic_back"));
  ui_->backButton->setIconSize(QSize(18, 18));
  connect(ui_->backButton, &QAbstractButton::clicked, this,
          &ListFileViewController::backButtonAction);
  connect(ui_->treemap, &TreemapView::nodeChosen, this, &ListFileViewController::chooseInOutline);
  connect(ui_->preview, &FilePreview::showInFinderWhenClickItems, this,
          [this] { Controller::openFileWithFileNode(tree_->node(ui_->outline->currentIndex())); });
  connect(ui_->outline, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
    const FileNode* node = tree_->node(index);
    const bool isFile = node != nullptr && node->folder == nullptr;
    if (isFile && index.column() != LargeTreeModel::Checkbox) {
      Controller::pereviewFileWithFileNode(node);
    }
  });
}

// Scanning.

void ListFileViewController::selectFileButtonAction() {
  if (const auto folder = choose_()) showFolder(*folder);
}

void ListFileViewController::showFolder(const std::string& path) {
  if (controller_.isRemoving() || controller_.isScanning()) return;
  const QString name = displayText(lastPathComponent(path));
  int error = 0;
  const auto folder = Host::current().catalog->open(withoutLinks(path), error);
  CatalogBatch batch;
  if (!folder) {
    detagate_->cannotShow(filledIn(getLocalizedString("“%@” cannot be shown."), name),
                          error == ENOTDIR ? getLocalizedString("It is not a folder.")
                                           : QString::fromLocal8Bit(std::strerror(error)));
  } else if (folder->read(batch, 1)) {
    getRootNodeListWithPath(withoutLinks(path));
  } else if (folder->error() != 0) {
    detagate_->cannotShow(filledIn(getLocalizedString("“%@” cannot be shown."), name),
                          QString::fromLocal8Bit(std::strerror(folder->error())));
  } else {
    detagate_->cannotShow(filledIn(getLocalizedString("“%@” is empty."), name), QString());
  }
}

void ListFileViewController::getRootNodeListWithPath(const std::string& path) {
  ui_->folderLabel->setText(displayText(lastPathComponent(path)));
  ui_->folderLabel->setToolTip(toolTipText(displayText(path)));
  ui_->backButton->setEnabled(false);
  ui_->outline->selectAllBox()->setEnabled(false);
  isShown_ = true;
  detagate_->showDetailPage();
  detagate_->toProWithValue(0);
  applyFilter();
  controller_.eumeAllRootFileNodeWithRootArr(path);
  sortTimer_.start(kSortInterval, this);
  showProgress();
}

void ListFileViewController::timerEvent(QTimerEvent* event) {
  if (event->timerId() != sortTimer_.timerId()) return;
  if (std::exchange(hasGrown_, false)) {
    tree_->refresh();
    ui_->treemap->contentChanged();
    if (!ui_->outline->currentIndex().isValid() && tree_->rowCount() > 0) showEmpty();
  }
  showProgress();
}

void ListFileViewController::showProgress() {
  EumeRoot* scan = controller_.eumeRoot();
  if (scan == nullptr || !isShown_) return;
  detagate_->toProWithValue(scan->getProgress());
  showStatus();
}

void ListFileViewController::stopScanButtonAction() {
  if (!isShown_) return;
  controller_.stopScan();
  endScanning();
}

bool ListFileViewController::isPaused() const {
  return controller_.eumeRoot() != nullptr && controller_.eumeRoot()->isPaused();
}

void ListFileViewController::pauseButtonAction() {
  if (!isShown_ || controller_.eumeRoot() == nullptr) return;
  controller_.eumeRoot()->pauseScan();
  showStatus();
}

// The progress has reached its end, or the user has stopped.
void ListFileViewController::endScanning() {
  isShown_ = false;
  sortTimer_.stop();
  hasGrown_ = false;
  ui_->backButton->setEnabled(true);
  ui_->outline->selectAllBox()->setEnabled(true);
  tree_->refresh();
  ui_->treemap->contentChanged();
  detagate_->toProWithValue(100);
  detagate_->changeToRemoveButton();
  reloadTree();
  if (!ui_->outline->currentIndex().isValid() && tree_->rowCount() > 0) {
    ui_->outline->setCurrentIndex(tree_->index(0, 0));
  }
  if (ui_->outline->isVisible()) ui_->outline->setFocus();
}

void ListFileViewController::scanIsOver() {
  if (isShown_) {
    endScanning();
  } else {
    treeGrew();
    tree_->refresh();
    ui_->treemap->contentChanged();
    reloadTree();
  }
}

void ListFileViewController::treeGrew() {
  hasGrown_ = true;
}

void ListFileViewController::treeReset() {
  tree_->reset();
  ui_->treemap->setFolder(controller_.root());
  ui_->outline->selectAllBox()->setImageName("unsel");
  showNode(nullptr);
  showEmpty();
}

void ListFileViewController::backButtonAction() {
  if (controller_.isRemoving()) return;
  sortTimer_.stop();
  isShown_ = false;
  controller_.clear();
  detagate_->listFileBackButtonAction();
}

// What is shown.

void ListFileViewController::applyFilter() {
  controller_.setFilter(FileFilter::of(minSize_, days_));
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

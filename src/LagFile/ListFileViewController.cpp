#include "ListFileViewController.h"

#include "FileFilterButtons.h"
#include "Host.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LargeTreeModel.h"
#include "LocalizedString.h"
#include "ProgressWindowController.h"
#include "fileAttrbItem.h"
#include "ui_ListFileViewController.h"

#include <QFile>
#include <QFileDialog>
#include <QTimerEvent>

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
  filters_ = new FileFilterButtons(ui_->sizeFilterButton, ui_->ageFilterButton, this);
  choose_ = [this] { return askForFolder(view_); };
  setUpOutline();
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

void ListFileViewController::connectControls() {
  ui_->backButton->setIcon(ImageLookup::icon("ic_back"));
  ui_->backButton->setIconSize(QSize(18, 18));
  connect(ui_->backButton, &QAbstractButton::clicked, this,
          &ListFileViewController::backButtonAction);
  connect(filters_, &FileFilterButtons::filterChosen, this, &ListFileViewController::applyFilter);
  connect(ui_->treemap, &TreemapView::nodeChosen, this, &ListFileViewController::chooseInOutline);
  connect(ui_->preview, &FilePreview::showInFinderWhenClickItems, this,
          [this] { Controller::openFileWithFileNode(tree_->node(ui_->outline->currentIndex())); });
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

void ListFileViewController::applyFilter() {
  controller_.setFilter(filters_->filter());
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
  detagate_->toProWithValue(100);
  detagate_->changeToRemoveButton();
  reloadTree();
  if (!ui_->outline->currentIndex().isValid() && tree_->rowCount() > 0) {
    ui_->outline->setCurrentIndex(tree_->index(0, 0));
  }
  if (ui_->outline->isVisible()) ui_->outline->setFocus();
}

void ListFileViewController::scanIsOver() {
  isShown_ ? endScanning() : reloadTree();
}

void ListFileViewController::treeGrew() {
  hasGrown_ = true;
}

void ListFileViewController::backButtonAction() {
  if (controller_.isRemoving()) return;
  sortTimer_.stop();
  isShown_ = false;
  controller_.clear();
  detagate_->listFileBackButtonAction();
}

}  // namespace brisko

#include "DuplicateViewController.h"

#include "CommUti.h"
#include "DuplicatePanels.h"
#include "Host.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "ModuleTable.h"
#include "fileAttrbItem.h"
#include "ui_DuplicateViewController.h"

#include <QTimerEvent>

namespace brisko {
namespace {

// Milliseconds.
constexpr int kPollInterval = 100;
constexpr int kFinishDelay = 1000;
constexpr int kReturnDelay = 1500;
constexpr int kRemovalDelay = 500;

}  // namespace

DuplicateViewController::DuplicateViewController()
    : PageController(3), ui_(std::make_unique<Ui::DuplicateViewController>()) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  choose_ = [this] { return chooseSearchFolder(getView()); };
  const Module& module = moduleTable()[3];
  ui_->startView->show("ill_duplicate", getLocalizedString(module.label),
                       getLocalizedString("Drop a folder here, or choose one to search."));
  ui_->stopScanButton->setLook(RingButton::Look::working);
  ui_->endImageView->setImageName("ill_success");
  ui_->endImageView->setImageSide(160);
  ui_->outline->setAccessibleName(getLocalizedString("Duplicate files"));
  connectControls();
  connectOutline();
  model_.setDeleteAllQuestion([this] { return askDeleteAll(getView()); });
  model_.setListener(this);
  pageChanged();
  countsChanged();
}

DuplicateViewController::~DuplicateViewController() {
  model_.setListener(nullptr);
}

void DuplicateViewController::connectControls() {
  ui_->backHomeButton->setIcon(ImageLookup::icon("ic_back"));
  ui_->backHomeButton->setIconSize(QSize(18, 18));
  const auto onClick = [this](QAbstractButton* button, void (DuplicateViewController::*action)()) {
    connect(button, &QAbstractButton::clicked, this, action);
  };
  onClick(ui_->chooseButton, &DuplicateViewController::clickScanBtn);
  onClick(ui_->stopScanButton, &DuplicateViewController::stopScanBtnClicked);
  onClick(ui_->backHomeButton, &DuplicateViewController::returnToStart);
  onClick(ui_->nothingButton, &DuplicateViewController::returnToStart);
  onClick(ui_->endButton, &DuplicateViewController::returnToStart);
  for (QAbstractButton* button : {ui_->skippedButton, ui_->nothingSkippedButton}) {
    connect(button, &QAbstractButton::clicked, this,
            [this] { tellSkipped(getView(), model_.skipped()); });
  }
  onClick(ui_->removeButton, &DuplicateViewController::removeBtnClicked);
  onClick(ui_->stopRemoveButton, &DuplicateViewController::stopRemoveBtnClicked);
  connect(ui_->dropArea, &DropArea::viewDragAction, this, &DuplicateViewController::viewDragAction);
  connect(ui_->segments, &SegmentBar::segmentSelect, this, &DuplicateViewController::segmentSelect);
}

void DuplicateViewController::connectOutline() {
  DuplicateOutline* outline = ui_->outline;
  connect(outline, &DuplicateOutline::nodeToggleRequested, this, [this](SimpleTreeNode* node) {
    if (!isRemovalDue()) model_.toggle(*node);
  });
  connect(outline, &DuplicateOutline::currentNodeChanged, this,
          [this](const SimpleTreeNode* node) { ui_->preview->show(node); });
  connect(outline, &DuplicateOutline::didClickTableColumn, this, [this](DuplicateColumn column) {
    if (!isRemovalDue()) model_.didClickTableColumn(column);
    ui_->outline->showSortMark(model_.lastColumn(), model_.sortDescending());
  });
  connect(outline, &DuplicateOutline::revealRequested, this,
          &DuplicateViewController::openFinderWhenClickItems);
  connect(outline->selectAllBox(), &QAbstractButton::clicked, this,
          &DuplicateViewController::setAllSelectOrNoSelect);
  connect(ui_->preview, &DuplicatePreview::showInFinderWhenClickItems, this,
          &DuplicateViewController::showInFinderWhenClickItems);
}

// What is pressed.

void DuplicateViewController::clickScanBtn() {
  if (const auto folder = choose_()) viewDragAction(*folder);
}

void DuplicateViewController::viewDragAction(const std::string& path) {
  model_.viewDragAction(path);
}

void DuplicateViewController::stopScanBtnClicked() {
  if (!model_.isSearching() || model_.isStopScan()) return;
  returnTimer_.start(kReturnDelay, this);
  model_.stopScanBtnClicked();
}

void DuplicateViewController::returnToStart() {
  if (isCanClick()) model_.returnToFirstView();
}

void DuplicateViewController::segmentSelect(int segment) {
  model_.loadValueForSegment(static_cast<std::size_t>(segment));
}

void DuplicateViewController::setAllSelectOrNoSelect() {
  if (isRemovalDue()) return;
  model_.setAllSelectOrNoSelect(std::string_view(model_.allSelectImage()) == "unsel");
}

void DuplicateViewController::openFinderWhenClickItems() {
  const SimpleTreeNode* current = ui_->outline->currentNode();
  if (current != nullptr && current->nodeData.isLeaf) {
    showInFinderWhenClickItems(current->nodeData.name());
  }
}

void DuplicateViewController::showInFinderWhenClickItems(const std::string& path) {
  Workspace* workspace = Host::current().workspace.get();
  if (workspace != nullptr && !path.empty()) workspace->reveal(path);
}

void DuplicateViewController::deleteFileButtonAction() {
  removalTimer_.start(kRemovalDelay, this);
  pageChanged();
}

// Time.

void DuplicateViewController::keepTime() {
  if (model_.isSearching()) {
    finishTimer_.stop();
    if (model_.isStopScan()) return newTimer_.stop();
    returnTimer_.stop();
    if (!newTimer_.isActive()) newTimer_.start(kPollInterval, this);
    return;
  }
  newTimer_.stop();
  if (model_.isFinishDue() && !finishTimer_.isActive()) finishTimer_.start(kFinishDelay, this);
}

void DuplicateViewController::timerEvent(QTimerEvent* event) {
  if (event->timerId() == newTimer_.timerId()) {
    model_.getPathForSreachDuplicate();
    showProgress();
  } else if (event->timerId() == finishTimer_.timerId()) {
    finishTimer_.stop();
    model_.delayBtnChangeStateTime();
  } else if (event->timerId() == returnTimer_.timerId()) {
    returnTimer_.stop();
    model_.returnToFirstView();
  } else if (event->timerId() == removalTimer_.timerId()) {
    removalTimer_.stop();
    model_.doRemoveDuplicateAction();
  }
}

void DuplicateViewController::toProWithValue(float) {
  showProgress();
}

// What the model says.

void DuplicateViewController::pageChanged() {
  keepTime();
  showView();
  showProgress();
  ui_->outline->showSortMark(model_.lastColumn(), model_.sortDescending());
  showSegments();
  showRemoving();
  showSkipped();
  ui_->chooseButton->setEnabled(model_.folderButtonEnabled());
  ui_->dropArea->setAcceptDrops(model_.folderButtonEnabled());
}

void DuplicateViewController::showView() {
  QWidget* shown = ui_->firstView;
  if (model_.view() == DuplicateView::progress) shown = ui_->progressView;
  if (model_.view() == DuplicateView::detail) shown = ui_->detailView;
  if (shown == ui_->detailView && model_.leavesOfSegment(0) == 0) {
    shown = model_.removedPaths().empty() ? ui_->nothingView : ui_->endView;
  }
  if (shown == ui_->endView) showEnd();
  QWidget* before = ui_->views->currentWidget();
  if (before == shown) return;
  // Focus stays with the page instead of going on to whatever comes next.
  if (before->isAncestorOf(before->window()->focusWidget())) getView()->setFocus();
  ui_->views->setCurrentWidget(shown);
  if (shown == ui_->detailView) ui_->outline->setFocus();
  if (shown == ui_->nothingView) showNothing();
}

void DuplicateViewController::showNothing() {
  const auto& skipped = model_.skipped();
  const QString folder = displayText(lastPathComponent(model_.searchPath()));
  QString title = getLocalizedString("No duplicates");
  QString sentence = filledIn(getLocalizedString("Every file in “%@” is there only once."), folder);
  if (!skipped.empty()) sentence = skippedText(skipped.size());
  const bool isUnreadable = skipped.size() == 1 && skipped[0].path == model_.searchPath();
  if (isUnreadable) {
    title = filledIn(getLocalizedString("“%@” could not be read"), folder);
    sentence = displayText(skipped[0].reason);
  }
  ui_->nothingIntro->show("ill_empty", title, sentence);
  ui_->nothingSkippedButton->setVisible(!skipped.empty() && !isUnreadable);
}

void DuplicateViewController::showProgress() {
  if (model_.view() != DuplicateView::progress) return;
  const bool isOver = !model_.isSearching() && !model_.isStopScan();
  ui_->stopScanButton->setPercentage(isOver ? 1 : static_cast<double>(model_.progress()));
  ui_->stopScanButton->setEnabled(model_.isSearching() && !model_.isStopScan());
  ui_->stopScanButton->setText(getLocalizedString(model_.isStopScan() ? "Stopping" : "Stop"));
  ui_->progressTitle->setText(filledIn(getLocalizedString("Looking for duplicates in “%@”"),
                                       displayText(lastPathComponent(model_.searchPath()))));
  ui_->searchImageView->setImageName(model_.pathAtWorkImage());
  QLabel* label = ui_->searchPathLabel;
  label->setText(label->fontMetrics().elidedText(displayText(model_.pathAtWork()), Qt::ElideMiddle,
                                                 label->width()));
}

// Results of a part of the folder must not look like those of all of it.
void DuplicateViewController::showSkipped() {
  const std::size_t count = model_.skipped().size();
  ui_->skippedButton->setVisible(count > 0 && !model_.isSearching());
  const QString text =
      filledIn(getLocalizedString(count == 1 ? "%@ Folder Left Out" : "%@ Folders Left Out"),
               QString::number(count));
  for (QAbstractButton* button : {ui_->skippedButton, ui_->nothingSkippedButton}) {
    button->setText(text);
    button->setToolTip(toolTipText(skippedText(count)));
  }
}

void DuplicateViewController::showSegments() {
  std::vector<SegmentBar::Segment> segments;
  for (std::size_t i = 0; i < kDuplicateSegments; ++i) {
    const std::string title = model_.titleOfSegment(i);
    segments.push_back({i == 0 ? displayText(title) : getLocalizedString(title.c_str()),
                        QString::fromStdString(CommUti::convertVolSpace(model_.sizeOfSegment(i))),
                        model_.leavesOfSegment(i) == 0});
  }
  ui_->segments->setSegments(std::move(segments));
  ui_->segments->setCurrent(static_cast<int>(model_.remberWitchSelect()));
}

// The number of ticked copies, behind that of all.
void DuplicateViewController::setSelectCount() {
  ui_->summaryLabel->setText(displayText(model_.summary()));
  ui_->summaryLabel->setToolTip(toolTipText(displayText(model_.filesText())));
}

void DuplicateViewController::countsChanged() {
  setSelectCount();
  ui_->outline->selectAllBox()->setImageName(model_.allSelectImage());
  const bool isEmpty = model_.noResultShown();
  ui_->outlineCard->setVisible(!isEmpty);
  ui_->noResultView->setVisible(isEmpty);
  ui_->preview->setVisible(!isEmpty);
  if (isEmpty) {
    ui_->noResultView->show("ill_empty", getLocalizedString("No duplicates of this type"),
                            getLocalizedString("Another type has some."));
  }
  showSegments();
  showRemoving();
}

// The outline.

void DuplicateViewController::treeReset() {
  ui_->outline->showTree(model_.treeData(), model_.remberWitchSelect());
  // The result of a search.
  if (model_.view() == DuplicateView::progress) ui_->outline->openFirst();
}

void DuplicateViewController::treeWillChange() {
  ui_->outline->nodesWillMove();
}

void DuplicateViewController::treeDidChange() {
  ui_->outline->nodesHaveMoved();
}

void DuplicateViewController::groupChanged(SimpleTreeNode* group) {
  ui_->outline->groupChanged(group);
}

void DuplicateViewController::allTicksChanged() {
  ui_->outline->allTicksChanged();
}

}  // namespace brisko

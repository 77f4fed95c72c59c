#include "DuplicateViewController.h"

#include "CommUti.h"
#include "DuplicateTreeModel.h"
#include "Host.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "ModuleTable.h"
#include "fileAttrbItem.h"
#include "ui_DuplicateViewController.h"

#include <QFile>
#include <QFileDialog>
#include <QTimerEvent>

namespace brisko {
namespace {

// Milliseconds.
constexpr int kPollInterval = 100;
constexpr int kFinishDelay = 1000;
constexpr int kReturnDelay = 1500;
constexpr int kRemovalDelay = 500;

std::optional<std::string> askForFolder(QWidget* parent) {
  QFileDialog chooser(parent, getLocalizedString("Choose a path to search"));
  chooser.setFileMode(QFileDialog::Directory);
  chooser.setOption(QFileDialog::ShowDirsOnly);
  chooser.setLabelText(QFileDialog::Accept, getLocalizedString("Choose"));
  if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return {};
  return QFile::encodeName(chooser.selectedFiles().constFirst()).toStdString();
}

QString skippedText(std::size_t count) {
  return filledIn(getLocalizedString(count == 1 ? "%@ folder in it could not be read."
                                                : "%@ folders in it could not be read."),
                  QString::number(count));
}

}  // namespace

DuplicateViewController::DuplicateViewController()
    : PageController(3),
      ui_(std::make_unique<Ui::DuplicateViewController>()),
      tree_(new DuplicateTreeModel(this)) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  choose_ = [this] { return askForFolder(getView()); };
  const Module& module = moduleTable()[3];
  ui_->startView->show("ill_duplicate", getLocalizedString(module.label),
                       getLocalizedString("Drop a folder here, or choose one to search."));
  ui_->stopScanButton->setLook(RingButton::Look::working);
  ui_->endImageView->setImageName("ill_success");
  ui_->endImageView->setImageSide(160);
  setUpOutline();
  connectControls();
  model_.setDeleteAllQuestion([this] { return userWantsAll(); });
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
  onClick(ui_->skippedButton, &DuplicateViewController::tellSkipped);
  onClick(ui_->removeButton, &DuplicateViewController::removeBtnClicked);
  onClick(ui_->stopRemoveButton, &DuplicateViewController::stopRemoveBtnClicked);
  connect(ui_->dropArea, &DropArea::viewDragAction, this, &DuplicateViewController::viewDragAction);
  connect(ui_->segments, &SegmentBar::segmentSelect, this, &DuplicateViewController::segmentSelect);
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
  const QModelIndex current = ui_->outline->currentIndex();
  if (!current.isValid() || !tree_->node(current)->nodeData.isLeaf) return;
  showInFinderWhenClickItems(tree_->node(current)->nodeData.name());
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
    if (!model_.isStopScan()) returnTimer_.stop();
    if (!newTimer_.isActive()) newTimer_.start(kPollInterval, this);
    return;
  }
  newTimer_.stop();
  const bool isJustOver = model_.view() == DuplicateView::progress && !model_.bSearchFinished();
  if (isJustOver && !finishTimer_.isActive()) finishTimer_.start(kFinishDelay, this);
}

void DuplicateViewController::timerEvent(QTimerEvent* event) {
  if (event->timerId() == newTimer_.timerId()) {
    model_.getPathForSreachDuplicate();
    showProgress();
  } else if (event->timerId() == finishTimer_.timerId()) {
    finishTimer_.stop();
    searchIsOver();
  } else if (event->timerId() == returnTimer_.timerId()) {
    returnTimer_.stop();
    model_.returnToFirstView();
  } else if (event->timerId() == removalTimer_.timerId()) {
    removalTimer_.stop();
    model_.doRemoveDuplicateAction();
  }
}

void DuplicateViewController::searchIsOver() {
  model_.delayBtnChangeStateTime();
  if (!duplicateScaned_) {
    duplicateScaned_ = true;
    Q_EMIT changeViewActionForDuplicate();
  }
  if (!model_.isStopScan()) Q_EMIT changeToDetailView();
}

void DuplicateViewController::toProWithValue(float value) {
  showProgress();
  Q_EMIT searchProgressed(value);
}

// What the model says.

void DuplicateViewController::pageChanged() {
  keepTime();
  showView();
  showProgress();
  showSortMark();
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
  if (shown == ui_->nothingView) {
    const std::size_t skipped = model_.skipped().size();
    const QString sentence =
        skipped == 0 ? filledIn(getLocalizedString("Every file in “%@” is there only once."),
                                displayText(lastPathComponent(model_.searchPath())))
                     : skippedText(skipped);
    ui_->nothingIntro->show("ill_empty", getLocalizedString("No duplicates"), sentence);
  }
}

void DuplicateViewController::showProgress() {
  if (model_.view() != DuplicateView::progress) return;
  const bool isOver = !model_.isSearching() && !model_.isStopScan();
  ui_->stopScanButton->setPercentage(isOver ? 1 : static_cast<double>(model_.progress()));
  ui_->stopScanButton->setEnabled(model_.isSearching() && !model_.isStopScan());
  ui_->stopScanButton->setText(getLocalizedString(model_.isStopScan() ? "Stopping" : "Stop"));
  ui_->progressTitle->setText(filledIn(getLocalizedString("Looking for duplicates in “%@”"),
                                       displayText(lastPathComponent(model_.searchPath()))));
  QLabel* label = ui_->searchPathLabel;
  label->setText(label->fontMetrics().elidedText(displayText(model_.pathAtWork()), Qt::ElideMiddle,
                                                 label->width()));
}

// Results of a part of the folder must not look like those of all of it.
void DuplicateViewController::showSkipped() {
  const std::size_t count = model_.skipped().size();
  ui_->skippedButton->setVisible(count > 0 && !model_.isSearching());
  ui_->skippedButton->setText(
      filledIn(getLocalizedString(count == 1 ? "%@ Folder Left Out" : "%@ Folders Left Out"),
               QString::number(count)));
  ui_->skippedButton->setToolTip(toolTipText(skippedText(count)));
}

void DuplicateViewController::tellSkipped() {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = skippedText(model_.skipped().size());
  content.text = getLocalizedString("Copies in there were not looked for.");
  for (const SkippedFolder& folder : model_.skipped()) {
    content.details << displayText(folder.path) + QStringLiteral("\n    ") +
                           displayText(folder.reason);
  }
  content.answers = {{getLocalizedString("Done"), Style::primary, 0}};
  MessagePanel::run(content, getView());
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

void DuplicateViewController::countsChanged() {
  ui_->summaryLabel->setText(displayText(model_.summary()));
  ui_->summaryLabel->setToolTip(toolTipText(displayText(model_.filesText())));
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

}  // namespace brisko

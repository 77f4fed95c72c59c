#include "FastCleanViewController.h"

#include "CommUti.h"
#include "EntryTable.h"
#include "FastCleanTableModel.h"
#include "FastTypeView.h"
#include "FullDiskAccessViewController.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "ModuleTable.h"
#include "Theme.h"
#include "ui_FastCleanViewController.h"

#include <QFontMetrics>
#include <QSortFilterProxyModel>
#include <QTimerEvent>

namespace brisko {
namespace {

constexpr int kPathInterval = 100;  // milliseconds

QString localized(const std::string& key) {
  return getLocalizedString(key.c_str());
}

}  // namespace

FastCleanViewController::FastCleanViewController()
    : PageController(1),
      ui_(std::make_unique<Ui::FastCleanViewController>()),
      entries_(new FastCleanTableModel(this)),
      sorted_(new QSortFilterProxyModel(this)) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  mainButton = ui_->mainButton;
  pathLabel = ui_->pathLabel;
  totalSizeLabel = ui_->totalSizeLabel;
  const Module& module = moduleTable()[1];
  ui_->startView->show("ill_clean", getLocalizedString(module.label),
                       getLocalizedString(module.sentence));
  ui_->nothingView->show("ill_empty", getLocalizedString("Nothing to clean up"),
                         getLocalizedString("No junk was found in any of the six categories."));
  ui_->endImageView->setImageName("ill_success");
  ui_->endImageView->setImageSide(160);
  for (int category = 0; category < kJunkCategoryCount; ++category) {
    auto* row = new FastTypeView(this, category);
    allListViewArr.push_back(row);
    ui_->rowColumn->addWidget(row);
  }
  setUpTable();
  connectControls();
  model_.setFullDiskAccessQuestion([this] { askFullDiskAccess(); });
  model_.setListener(this);
  pageChanged();
}

FastCleanViewController::~FastCleanViewController() {
  model_.setListener(nullptr);
}

void FastCleanViewController::setUpTable() {
  sorted_->setSourceModel(entries_);
  sorted_->setSortRole(SortRole);
  sorted_->setSortCaseSensitivity(Qt::CaseInsensitive);
  EntryTable* table = ui_->subDetailTableView;
  table->setEntries(sorted_, FastCleanTableModel::name);
  // Nothing is sorted until a header is pressed: the entries come in their own order.
  table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  table->setSortingEnabled(true);
  table->setAccessibleName(getLocalizedString("Junk files"));
  connect(table, &EntryTable::toggleRequested, this, [this](const QModelIndex& index) {
    model_.selectListButton(static_cast<std::size_t>(sorted_->mapToSource(index).row()));
  });
  connect(table->selectAllBox(), &QAbstractButton::clicked, this,
          [this] { model_.setAllSelectOrNoSelect(); });
}

void FastCleanViewController::connectControls() {
  for (QPushButton* back : {ui_->backHomeButton, ui_->backToDetailButton}) {
    back->setIcon(ImageLookup::icon("ic_back"));
    back->setIconSize(QSize(18, 18));
  }
  connect(mainButton, &QAbstractButton::clicked, this, &FastCleanViewController::buttonAction);
  connect(ui_->backHomeButton, &QAbstractButton::clicked, this,
          [this] { model_.backHomeButtonAction(); });
  connect(ui_->backToDetailButton, &QAbstractButton::clicked, this,
          [this] { model_.backToDetailButtonAction(); });
  connect(ui_->failuresButton, &QAbstractButton::clicked, this,
          &FastCleanViewController::showFailures);
  connect(ui_->stopCleaningButton, &QAbstractButton::clicked, this, [this] {
    ui_->stopCleaningButton->setEnabled(false);
    model_.stopCleaning();
  });
}

void FastCleanViewController::buttonAction() {
  if (model_.indexPage() == 2 && !userConfirmsCleaning()) return;
  model_.buttonAction();
}

void FastCleanViewController::checkBoxButtonAction(int category) {
  model_.checkBoxButtonAction(category);
}

void FastCleanViewController::detailButtonAction(int category) {
  model_.detailButtonAction(category);
}

// What the model says.

void FastCleanViewController::pageChanged() {
  showMainButton();
  showView();
  ui_->backHomeButton->setEnabled(model_.backHomeButtonEnabled());
  const bool isCleaning = !model_.isCanClick();
  if (isCleaning && ui_->stopCleaningButton->isHidden()) ui_->stopCleaningButton->setEnabled(true);
  ui_->stopCleaningButton->setVisible(isCleaning);
  const bool isAtWork = isCleaning || model_.indexPage() == 1;
  if (isAtWork && !pathTimer_.isActive()) {
    pathTimer_.start(kPathInterval, this);
    pathLabel->clear();
  }
  if (!isAtWork) {
    pathTimer_.stop();
    const bool tellsCompleted = model_.completedLabelShown() && !nothingWasFound();
    pathLabel->setText(tellsCompleted ? getLocalizedString("Scan completed") : QString());
  }
  sizeLineChanged();
}

void FastCleanViewController::showMainButton() {
  const FastCleanButton& button = model_.mainButton();
  const QString title = localized(button.title);
  mainButton->setText(title);
  mainButton->setAccessibleName(title);
  keepFocus(button.enabled);
  mainButton->setLook(button.scanningLook ? RingButton::Look::working : RingButton::Look::filled);
  mainButton->setPercentage(button.percentage);
  mainButton->setVisible(button.shown);
  const bool isClean = model_.indexPage() == 2 && model_.isCanClick() && button.enabled;
  mainButton->setDetail(isClean ? planText("%@ items\n%@") : QString());
}

void FastCleanViewController::keepFocus(bool mainButtonIsEnabled) {
  // A disabled button hands the focus to whatever comes next. The page holds it instead, until the
  // button can be pressed again. The window is asked, because it may not be the active one just
  // now.
  const QWidget* window = getView()->window();
  if (!mainButtonIsEnabled && window->focusWidget() == mainButton) getView()->setFocus();
  mainButton->setEnabled(mainButtonIsEnabled);
  if (mainButtonIsEnabled && window->focusWidget() == getView()) mainButton->setFocus();
}

void FastCleanViewController::showView() {
  QWidget* shown = ui_->mainView;
  switch (model_.view()) {
    case FastCleanView::start:
      shown = ui_->mainView;
      break;
    case FastCleanView::detail:
      shown = ui_->detailView;
      break;
    case FastCleanView::subDetail:
      shown = ui_->subDetailView;
      break;
    case FastCleanView::cleanEnd:
      shown = ui_->cleanEndView;
      break;
  }
  if (shown == ui_->cleanEndView) showCleanEnd();
  ui_->nothingView->setVisible(nothingWasFound());
  ui_->rowCard->setVisible(!nothingWasFound());
  QWidget* before = ui_->views->currentWidget();
  if (before != shown && before->isAncestorOf(before->window()->focusWidget())) {
    getView()->setFocus();
  }
  ui_->views->setCurrentWidget(shown);
  keepFocus(model_.mainButton().enabled);
}

bool FastCleanViewController::nothingWasFound() const {
  if (model_.indexPage() != 2) return false;
  for (const FastTypeRow& row : model_.rows()) {
    if (!row.sizeIsDimmed) return false;
  }
  return true;
}

void FastCleanViewController::rowChanged(int category) {
  allListViewArr[static_cast<std::size_t>(category)]->show(
      model_.rows()[static_cast<std::size_t>(category)]);
}

void FastCleanViewController::sizeLineChanged() {
  totalSizeLabel->setAttributedText(model_.totalSizeLabel());
  totalSizeLabel->setVisible(!nothingWasFound());
}

void FastCleanViewController::detailListChanged() {
  const auto& category = model_.selectTreeNode();
  const int rows = static_cast<int>(model_.numberOfRows());
  if (category != entries_->category() || rows != entries_->rowCount()) {
    entries_->reloadData(category);
    if (rows > 0) ui_->subDetailTableView->setCurrentIndex(sorted_->index(0, 1));
    ui_->subDetailTableView->setFocus();
  } else {
    entries_->selectionChanged();
  }
  ui_->subDetailTitleLabel->setText(localized(model_.subDetailTitleLabel()));
  ui_->selectFileLabel->setText(QString::fromStdString(model_.selectFileLabel()));
  ui_->subDetailTableView->selectAllBox()->setImageName(model_.selectAllImage());
}

void FastCleanViewController::cleaningProgressed(const std::string& path) {
  showPath(path);
}

void FastCleanViewController::timerEvent(QTimerEvent*) {
  showPath(model_.pathLabel());
}

void FastCleanViewController::showPath(const std::string& path) {
  // Clear of the button that stands at the right end of the same line.
  const int width = pathLabel->width() - 2 * ui_->stopCleaningButton->width();
  pathLabel->setText(
      pathLabel->fontMetrics().elidedText(displayText(path), Qt::ElideMiddle, width));
}

// Cleaning.

QString FastCleanViewController::planText(const char* format) const {
  const QString count = QString::number(model_.plan().size());
  const QString size = QString::fromStdString(CommUti::convertVolSpace(model_.planSize()));
  return filledIn(filledIn(getLocalizedString(format), count), size);
}

bool FastCleanViewController::userConfirmsCleaning() {
  constexpr int kRemove = 1;
  const bool isOne = model_.plan().size() == 1;
  MessagePanel::Content content;
  content.imageName = "ic_trash";
  content.title = planText(isOne ? "Remove %@ item (%@)?" : "Remove %@ items (%@)?");
  content.text = getLocalizedString(
      "They are removed for good and do not go to the trash. "
      "Anything that has changed since the scan stays.");
  content.answers = {{getLocalizedString("Cancel"), MessagePanel::Answer::Style::plain, 0},
                     {planText(isOne ? "Remove %@ Item" : "Remove %@ Items"),
                      MessagePanel::Answer::Style::danger, kRemove}};
  return MessagePanel::run(content, getView()) == kRemove;
}

void FastCleanViewController::showCleanEnd() {
  ui_->cleanValueLabel->setText(QString::fromStdString(model_.cleanValueLabel()));
  ui_->endTitleLabel->setText(getLocalizedString(
      model_.cleaningWasStopped() ? "Stopped early. You freed" : "You just freed"));
  const auto failed = model_.failures().size();
  ui_->failuresButton->setVisible(failed > 0);
  ui_->failuresButton->setText(
      filledIn(getLocalizedString(failed == 1 ? "%@ item could not be removed"
                                              : "%@ items could not be removed"),
               QString::number(failed)));
}

void FastCleanViewController::showFailures() {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = ui_->failuresButton->text();
  content.text = getLocalizedString(model_.failures().size() == 1
                                        ? "It is still where it was, and still listed."
                                        : "They are still where they were, and still listed.");
  for (const FastCleanFailure& failure : model_.failures()) {
    content.details << displayText(failure.path) + QStringLiteral("\n    ") +
                           displayText(failure.reason);
  }
  content.answers = {{getLocalizedString("Done"), MessagePanel::Answer::Style::primary, 0}};
  MessagePanel::run(content, getView());
}

void FastCleanViewController::askFullDiskAccess() {
  FullDiskAccessViewController window(getView());
  window.setSuperDelegate(this);
  window.exec();
  getView()->window()->activateWindow();
}

}  // namespace brisko

#include "UninstallViewController.h"

#include "AMRelatedFilesWindowController.h"
#include "ImageCheckBox.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "UninstallTableModel.h"
#include "ui_UninstallViewController.h"

#include <QShortcut>
#include <QTimerEvent>

#include <algorithm>

namespace brisko {
namespace {

constexpr int kRemovalDelay = 500;  // milliseconds
constexpr int kSearchInset = 30;

struct TypeText {
  const char* title;
  const char* one;
  const char* many;
  const char* none;
};

constexpr TypeText kTypes[] = {
    {"Applications", "%@ application", "%@ applications", "No applications"},
    {"Widgets", "%@ widget", "%@ widgets", "No widgets"},
    {"Plug-ins", "%@ plug-in", "%@ plug-ins", "No plug-ins"}};

const TypeText& textOf(int type) {
  return kTypes[static_cast<std::size_t>(type)];
}

}  // namespace

UninstallViewController::UninstallViewController()
    : PageController(2),
      ui_(std::make_unique<Ui::UninstallViewController>()),
      items_(new UninstallTableModel(model_, this)) {
  ui_->setupUi(getView());
  getView()->setFocusPolicy(Qt::ClickFocus);
  getView()->installEventFilter(this);
  setUpTable();
  setUpSearch();
  connectControls();
  model_.setListener(this);
  pageChanged();
}

UninstallViewController::~UninstallViewController() {
  model_.setListener(nullptr);
}

bool UninstallViewController::isCanClick() const {
  const bool isRemoving =
      relatedFilesWinController_ && relatedFilesWinController_->model().isRemoving();
  return !removalTimer_.isActive() && !isRemoving;
}

void UninstallViewController::awakeFromNib() {
  if (hasBegun_) return;
  hasBegun_ = true;
  model_.begimScanFile();
}

bool UninstallViewController::eventFilter(QObject* watched, QEvent* event) {
  if (watched == getView() && event->type() == QEvent::Show) awakeFromNib();
  if (watched == ui_->searchTextFiled && event->type() == QEvent::FocusOut) {
    ui_->closeSearchButton->setVisible(!ui_->searchTextFiled->text().isEmpty());
  }
  return PageController::eventFilter(watched, event);
}

void UninstallViewController::setUpTable() {
  UninstallTable* table = ui_->listViewTabel;
  table->setItems(items_);
  table->setAccessibleName(getLocalizedString("Installed items"));
  table->selectAllBox()->setObjectName(QStringLiteral("selectAllBut"));
  connect(table, &EntryTable::toggleRequested, this, [this](const QModelIndex& index) {
    if (isCanClick()) model_.selectUninstallApp(static_cast<std::size_t>(index.row()));
  });
  connect(table, &UninstallTable::oneAppRemove, this, &UninstallViewController::oneAppRemove);
  connect(table->selectAllBox(), &QAbstractButton::clicked, this,
          &UninstallViewController::selectAllButtonAction);
  connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) { model_.clickRow(index.row()); });
  connect(table->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
    model_.didClickTableColumn(static_cast<UninstallColumn>(section));
    // The header has moved its mark by itself.
    showSortMark();
  });
}

void UninstallViewController::setUpSearch() {
  QLineEdit* field = ui_->searchTextFiled;
  field->setPlaceholderText(getLocalizedString("Search"));
  field->setAccessibleName(getLocalizedString("Search"));
  field->addAction(ImageLookup::icon("ic_search"), QLineEdit::LeadingPosition);
  field->setTextMargins(0, 0, kSearchInset, 0);
  field->installEventFilter(this);
  ui_->closeSearchButton->setIcon(ImageLookup::icon("ic_close"));
  ui_->closeSearchButton->hide();
  connect(field, &QLineEdit::textEdited, this, [this](const QString& text) {
    ui_->closeSearchButton->show();
    model_.controlTextDidChange(text.toStdString());
  });
  connect(ui_->closeSearchButton, &QAbstractButton::clicked, this,
          &UninstallViewController::closeSearchButton);
  auto* escape =
      new QShortcut(QKeySequence(Qt::Key_Escape), field, nullptr, nullptr, Qt::WidgetShortcut);
  connect(escape, &QShortcut::activated, this, &UninstallViewController::closeSearchButton);
  auto* find = new QShortcut(QKeySequence::Find, getView(), nullptr, nullptr,
                             Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, field, [field] {
    field->setFocus();
    field->selectAll();
  });
}

void UninstallViewController::connectControls() {
  ui_->refButton->setIcon(ImageLookup::icon("ic_refresh"));
  ui_->refButton->setIconSize(QSize(18, 18));
  ui_->refButton->setToolTip(ui_->refButton->accessibleName());
  connect(ui_->refButton, &QAbstractButton::clicked, this,
          &UninstallViewController::refButtonAction);
  connect(ui_->uninstallButton, &QAbstractButton::clicked, this,
          &UninstallViewController::buttonAction);
  connect(ui_->typeSegment, &SegmentBar::segmentSelect, this,
          [this](int segment) { model_.segmentClickAction(segment); });
}

void UninstallViewController::closeSearchButton() {
  ui_->searchTextFiled->clear();
  ui_->closeSearchButton->hide();
  getView()->setFocus();
  model_.closeSearchButton();
}

// Removing.

void UninstallViewController::uninstallAppButtonAction() {
  if (isCanClick()) review(model_.uninstallAppButtonAction());
}

void UninstallViewController::oneAppRemove(int row) {
  if (isCanClick()) review(model_.oneAppRemove(static_cast<std::size_t>(row)));
}

void UninstallViewController::review(const AppItems& chosen) {
  if (chosen.empty()) return;
  relatedFilesWinController_.reset();
  relatedFilesWinController_ = std::make_unique<AMRelatedFilesWindowController>(getView());
  if (!relatedFilesWinController_->review(chosen, model_.everything())) return;
  removalTimer_.start(kRemovalDelay, this);
  pageChanged();
}

void UninstallViewController::timerEvent(QTimerEvent* event) {
  if (event->timerId() != removalTimer_.timerId()) return PageController::timerEvent(event);
  removalTimer_.stop();
  relatedFilesWinController_->doRemove();
  const int row = model_.selectRow();
  model_.completeCleanRelatedFiles(relatedFilesWinController_->model());
  // The keys go on where they were.
  UninstallTable* table = ui_->listViewTabel;
  table->setCurrentIndex(items_->index(std::min(row, items_->rowCount() - 1), 0));
}

// What the model says.

void UninstallViewController::listReset() {
  items_->reloadData();
}

void UninstallViewController::rowsAdded(std::size_t first) {
  items_->rowsAdded(first);
}

void UninstallViewController::ticksChanged() {
  items_->ticksChanged();
}

void UninstallViewController::sizesChanged() {
  items_->sizesChanged();
}

void UninstallViewController::pageChanged() {
  items_->titleChanged();
  showTypes();
  showSortMark();
  showStates();
  changeSelectAllButtonState();
  ui_->refButton->setEnabled(model_.refButtonEnabled() && isCanClick());
  // Sizes of rows out of sight follow, so that sorting by size means something.
  if (hasBegun_ && !model_.isBusy()) model_.measureAll();
}

void UninstallViewController::changeSelectAllButtonState() {
  ui_->selectCountLabel->setText(QString::fromStdString(model_.selectCountLabel()));
  ui_->listViewTabel->selectAllBox()->setImageName(model_.selectAllImage());
  ui_->uninstallButton->setEnabled(model_.uninstallButtonEnabled() && isCanClick());
}

void UninstallViewController::showTypes() {
  std::vector<SegmentBar::Segment> segments;
  for (int type = 0; type < UninstallModel::kTypes; ++type) {
    const TypeText& text = textOf(type);
    const std::size_t count = model_.list(type).size();
    segments.push_back(
        {getLocalizedString(text.title),
         filledIn(getLocalizedString(count == 1 ? text.one : text.many), QString::number(count)),
         count == 0});
  }
  ui_->typeSegment->setSegments(std::move(segments));
  ui_->typeSegment->setCurrent(model_.appsType());
  ui_->typeSegment->setEnabled(model_.typeSegmentEnabled());
}

void UninstallViewController::showStates() {
  const bool isEmpty = model_.showListArr().empty();
  const bool isLoading = isEmpty && (model_.isBusy() || !hasBegun_);
  ui_->loadingView->setVisible(isLoading);
  ui_->emptyView->setVisible(isEmpty && !isLoading);
  // Without rows the table is its header, which still tells their number.
  UninstallTable* table = ui_->listViewTabel;
  table->setMaximumHeight(isEmpty ? table->horizontalHeader()->height() : QWIDGETSIZE_MAX);
  table->setFocusPolicy(isEmpty ? Qt::NoFocus : Qt::StrongFocus);
  if (!isEmpty || isLoading) return;
  const bool isFiltered = !model_.list(model_.appsType()).empty();
  const QString sentence =
      isFiltered
          ? filledIn(getLocalizedString("No name contains “%@”."), displayText(model_.searchText()))
          : getLocalizedString("There is nothing of this kind on this machine.");
  ui_->emptyView->show(
      "ill_empty",
      getLocalizedString(isFiltered ? "Nothing found" : textOf(model_.appsType()).none), sentence);
}

void UninstallViewController::showSortMark() {
  QHeaderView* header = ui_->listViewTabel->horizontalHeader();
  const int section = static_cast<int>(model_.aTableColumn());
  const bool isAscending = std::string_view(model_.indicator()) == "NSAscendingSortIndicator";
  header->setSortIndicatorShown(section >= 0);
  header->setSortIndicator(section, isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

}  // namespace brisko

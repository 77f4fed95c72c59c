#include "TaskManagerViewController.h"

#include "EntryTable.h"
#include "ImageCheckBox.h"
#include "LocalizedString.h"
#include "TaskTableModel.h"
#include "Theme.h"
#include "ui_TaskManagerViewController.h"

#include <QLabel>
#include <QSortFilterProxyModel>

namespace brisko {

TaskManagerViewController::TaskManagerViewController()
    : PageController(6),
      ui_(std::make_unique<Ui::TaskManagerViewController>()),
      rows_(new TaskTableModel(this)),
      sorted_(new QSortFilterProxyModel(this)) {
  ui_->setupUi(getView());
  ui_->emptyView->show("ic_quit", getLocalizedString("No application is running"),
                       getLocalizedString("What you start from the desktop's menus appears here."));
  setUpTable();
  connect(ui_->mainButton, &QAbstractButton::clicked, this, [this] { model_.closeButtonAction(); });
  connect(ui_->refButton, &QAbstractButton::clicked, this, [this] { model_.refButtonAction(); });
  connect(&timer, &QTimer::timeout, this, [this] { model_.changeCpuAndMemory(); });
  connect(&Theme::shared(), &Theme::changed, this, [this] { usageChanged(); });
  model_.setListener(this);
  rowsChanged();
  usageChanged();
  // The first look waits until the window stands.
  QTimer::singleShot(0, this, [this] { model_.start(); });
  timer.start(TaskManagerModel::kInterval);
}

TaskManagerViewController::~TaskManagerViewController() {
  model_.setListener(nullptr);
}

void TaskManagerViewController::setUpTable() {
  sorted_->setSourceModel(rows_);
  sorted_->setSortRole(SortRole);
  sorted_->setSortCaseSensitivity(Qt::CaseInsensitive);
  EntryTable* table = ui_->listTableView;
  table->setEntries(sorted_, TaskTableModel::name);
  table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  table->setSortingEnabled(true);
  table->setAccessibleName(getLocalizedString("Running applications"));
  connect(table, &EntryTable::toggleRequested, this, [this](const QModelIndex& index) {
    model_.changeCloseButtonState(static_cast<std::size_t>(sorted_->mapToSource(index).row()));
  });
  connect(table->selectAllBox(), &QAbstractButton::clicked, this, [this] {
    model_.setAllSelectOrNoSelect(model_.selectedCount() < model_.allApplications().size());
  });
}

void TaskManagerViewController::rowsChanged() {
  rows_->reloadData(model_.allApplications());
  const bool isEmpty = model_.allApplications().empty();
  ui_->listViews->setCurrentWidget(isEmpty ? ui_->emptyPage : ui_->tablePage);
  changeSelectAllButton();
}

void TaskManagerViewController::changeSelectAllButton() {
  ui_->listTableView->selectAllBox()->setImageName(model_.selectAllImage());
  ui_->mainButton->setEnabled(model_.closeButtonEnabled());
  const std::size_t selected = model_.selectedCount();
  QString text;
  if (!model_.allApplications().empty()) {
    text = selected == 1 ? getLocalizedString("1 application selected")
                         : filledIn(getLocalizedString("%@ applications selected"),
                                    QString::number(selected));
  }
  ui_->selectedLabel->setText(text);
}

void TaskManagerViewController::showUsage(QLabel* label, const UsageText& usage) {
  label->setText(QString::fromStdString(usage.text.empty() ? "–" : usage.text));
  label->setStyleSheet(
      QStringLiteral("color: %1")
          .arg(themeColor(usage.isWarning ? Theme::Token::warning : Theme::Token::text).name()));
}

void TaskManagerViewController::usageChanged() {
  showUsage(ui_->cpuLabel, model_.cpuUsage());
  showUsage(ui_->memoryLabel, model_.memoryUsage());
}

}  // namespace brisko

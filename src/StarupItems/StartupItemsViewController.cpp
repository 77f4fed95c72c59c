#include "StartupItemsViewController.h"

#include "ItemChooser.h"
#include "LocalizedString.h"
#include "LoginItemsTable.h"
#include "MessagePanel.h"
#include "SwitchedItemRow.h"
#include "ui_StartupItemsViewController.h"

#include <QEvent>

#include <algorithm>

namespace brisko {

StartupItemsViewController::StartupItemsViewController()
    : PageController(7),
      ui_(std::make_unique<Ui::StartupItemsViewController>()),
      rows_(new LoginItemsTableModel(this)) {
  ui_->setupUi(getView());
  ui_->listTableView->setItems(rows_);
  ui_->listTableView->setAccessibleName(getLocalizedString("Login items"));
  ui_->emptyView->show("ic_startup", getLocalizedString("Nothing opens by itself"),
                       getLocalizedString("Add an application, a document or a folder that is to "
                                          "open whenever you log in."));
  connect(ui_->addBut, &QAbstractButton::clicked, this,
          &StartupItemsViewController::addButtonAction);
  connect(ui_->listTableView, &LoginItemsTable::removeRequested, this,
          &StartupItemsViewController::removeItemsAction);
  connect(ui_->listTableView, &EntryTable::toggleRequested, this,
          [this](const QModelIndex& index) { setHideStar(index.row()); });
  ui_->switchedColumn->addStretch();
  model_.setListener(this);
  // Reading starts when the page is first looked at, so that opening the window does not pay for
  // it.
  getView()->installEventFilter(this);
  itemsChanged();
}

StartupItemsViewController::~StartupItemsViewController() {
  model_.setListener(nullptr);
}

bool StartupItemsViewController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && !model_.isRead() && !model_.isScan()) {
    model_.getAllItmes();
  }
  return PageController::eventFilter(watched, event);
}

bool StartupItemsViewController::isCanClick() const {
  if (model_.isRead()) model_.updateLoginItemsList();
  return true;
}

void StartupItemsViewController::itemsChanged() {
  if (!model_.isScan() || !model_.isRead()) {
    showItems();
    showSwitchedItems();
    return;
  }
  // Rows stay in sight until the new ones are there; an empty list would only flicker.
  selectedRow_ = ui_->listTableView->currentIndex().row();
  selected_ = rows_->path(selectedRow_);
}

void StartupItemsViewController::showItems() {
  const auto& items = model_.allItems();
  rows_->reloadData(items);
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const auto& item) { return item.path == selected_; });
  // Where the highlighted row is gone, the one that took its place.
  const int last = static_cast<int>(items.size()) - 1;
  const int row =
      found != items.end() ? static_cast<int>(found - items.begin()) : std::min(selectedRow_, last);
  if (row >= 0) ui_->listTableView->selectRow(row);
  QWidget* shown = model_.isRead() && items.empty() ? ui_->emptyPage : ui_->tablePage;
  const QWidget* focused = getView()->window()->focusWidget();
  const bool takesFocus = shown == ui_->emptyPage && ui_->tablePage->isAncestorOf(focused);
  ui_->listViews->setCurrentWidget(shown);
  if (takesFocus) ui_->addBut->setFocus();
}

// Rows are kept, so that a switch that was pressed by a key keeps the focus.
void StartupItemsViewController::showSwitchedItems() {
  const auto& items = model_.switchedItems();
  while (switchedRows_.size() > items.size()) {
    switchedRows_.back()->deleteLater();
    switchedRows_.pop_back();
  }
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (index == switchedRows_.size()) {
      auto* row = new SwitchedItemRow;
      connect(row, &SwitchedItemRow::switchRequested, this,
              [this, index](bool isOn) { model_.setSwitched(index, isOn); });
      ui_->switchedColumn->insertWidget(static_cast<int>(index), row);
      switchedRows_.push_back(row);
    }
    switchedRows_[index]->setItem(items[index]);
  }
  ui_->switchedSection->setVisible(!items.empty());
}

void StartupItemsViewController::changeFailed(const std::string& text) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = getLocalizedString("That did not work");
  content.text = displayText(text);
  content.answers = {{getLocalizedString("OK"), MessagePanel::Answer::Style::primary, 0}};
  MessagePanel::run(content, getView()->window());
}

void StartupItemsViewController::addButtonAction() {
  ItemChooser panel({getLocalizedString("Choose what is to open"), getLocalizedString("add"),
                     StartupItemsModel::startingFolder(), true},
                    getView()->window());
  panel.setObjectName(QStringLiteral("addPanel"));
  for (const std::string& path : panel.choose())
    model_.addButtonAction(path);
}

bool StartupItemsViewController::userAgrees(int row, const char* question, const char* answer) {
  // What is being read anew may stand somewhere else by then.
  if (model_.isScan()) return false;
  const std::string entry = model_.entryFor(static_cast<std::size_t>(row));
  if (entry.empty() || entry == rows_->path(row)) return true;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = filledIn(getLocalizedString(question), displayText(entry));
  content.text = getLocalizedString(
      "An entry that is not shown, because what it opens is gone or listed already, stands at this "
      "row's place. It is the one that would be changed.");
  content.answers = {{getLocalizedString("Cancel"), MessagePanel::Answer::Style::plain, 0},
                     {getLocalizedString(answer), MessagePanel::Answer::Style::danger, 1}};
  return MessagePanel::run(content, getView()->window()) == 1;
}

void StartupItemsViewController::removeItemsAction(int row) {
  if (!userAgrees(row, "Remove the entry for %@?", "Remove It")) return;
  model_.removeButtonActoion(static_cast<std::size_t>(row));
}

void StartupItemsViewController::setHideStar(int row) {
  if (!userAgrees(row, "Change the entry for %@?", "Change It")) return;
  model_.setHideStar(static_cast<std::size_t>(row));
}

}  // namespace brisko

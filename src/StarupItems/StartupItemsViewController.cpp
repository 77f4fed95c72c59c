#include "StartupItemsViewController.h"

#include "Host.h"
#include "ImageLookup.h"
#include "LocalizedString.h"
#include "LoginItemsTable.h"
#include "MessagePanel.h"
#include "SwitchedItemRow.h"
#include "SystemLog.h"
#include "Theme.h"
#include "ui_StartupItemsViewController.h"

#include <QEvent>
#include <QFileDialog>

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
  connect(ui_->listTableView, &LoginItemsTable::hideRequested, this,
          &StartupItemsViewController::setHideStar);
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
  LoginItemsTable* table = ui_->listTableView;
  const auto& items = model_.allItems();
  if (model_.isScan() && model_.isRead()) {
    // Rows stay in sight until the new ones are there; an empty list would only flicker.
    const QModelIndex current = table->currentIndex();
    if (current.isValid()) {
      selected_ = current.data(LoginItemsTableModel::PathRole).toByteArray().toStdString();
    }
    return;
  }
  rows_->reloadData(items);
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const auto& item) { return item.path == selected_; });
  if (found != items.end()) table->selectRow(static_cast<int>(found - items.begin()));
  ui_->listViews->setCurrentWidget(model_.isRead() && items.empty() ? ui_->emptyPage
                                                                    : ui_->tablePage);
  showSwitchedItems();
}

void StartupItemsViewController::showSwitchedItems() {
  while (QLayoutItem* old = ui_->switchedColumn->takeAt(0)) {
    if (old->widget() != nullptr) old->widget()->deleteLater();
    delete old;
  }
  const auto& items = model_.switchedItems();
  ui_->switchedSection->setVisible(!items.empty());
  for (std::size_t index = 0; index < items.size(); ++index) {
    auto* row = new SwitchedItemRow(items[index]);
    connect(row, &SwitchedItemRow::switchRequested, this,
            [this, index](bool isOn) { model_.setSwitched(index, isOn); });
    ui_->switchedColumn->addWidget(row);
  }
  ui_->switchedColumn->addStretch();
}

void StartupItemsViewController::changeFailed(const std::string& text) {
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = getLocalizedString("That did not work");
  content.text = QString::fromStdString(escapedForDisplay(text));
  content.answers = {{getLocalizedString("OK"), MessagePanel::Answer::Style::primary, 0}};
  MessagePanel::run(content, getView()->window());
}

void StartupItemsViewController::addButtonAction() {
  QFileDialog panel(getView()->window(), getLocalizedString("Choose what is to open"));
  panel.setObjectName(QStringLiteral("addPanel"));
  panel.setFileMode(QFileDialog::ExistingFile);
  panel.setLabelText(QFileDialog::Accept, getLocalizedString("add"));
  panel.setDirectory(QFile::decodeName(model_.startingFolder().c_str()));
  if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return;
  const QFileInfo chosen(panel.selectedFiles().constFirst());
  const QString target = chosen.isSymLink() ? chosen.symLinkTarget() : chosen.absoluteFilePath();
  model_.addButtonAction(QFile::encodeName(target).toStdString());
}

bool StartupItemsViewController::userAgrees(int row, const char* question, const char* answer) {
  const auto index = static_cast<std::size_t>(row);
  const std::string entry = model_.entryFor(index);
  if (index >= model_.allItems().size() || entry == model_.allItems()[index].path) return true;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title =
      filledIn(getLocalizedString(question), QString::fromStdString(escapedForDisplay(entry)));
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

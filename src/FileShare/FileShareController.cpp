#include "FileShareController.h"

#include "CommUti.h"
#include "Dispatch.h"
#include "EntryTable.h"
#include "FileShareTableModel.h"
#include "ImageCheckBox.h"
#include "ItemChooser.h"
#include "LocalizedString.h"
#include "MessagePanel.h"
#include "ModuleTable.h"
#include "NTFSWindowController.h"
#include "SegmentBar.h"
#include "ShredProgressWindowController.h"
#include "ui_FileShareController.h"

#include <QKeyEvent>
#include <QLabel>

namespace brisko {
namespace {

constexpr int kOutcomeWidth = 330;
constexpr const char* kShortNames[] = {"quick", "U.S. DoE", "U.S. DoD", "Gutmann"};

QString sizeText(std::uint64_t bytes) {
  return QString::fromStdString(CommUti::longlongDiskSize(bytes));
}

QString countText(std::size_t count, const char* one, const char* many) {
  return filledIn(getLocalizedString(count == 1 ? one : many), QString::number(count));
}

QString notesText(const std::vector<std::string>& notes) {
  QStringList lines;
  for (const std::string& note : notes)
    lines << displayText(note);
  return lines.join(QLatin1Char('\n'));
}

}  // namespace

FileShareController::FileShareController()
    : PageController(9),
      ui_(std::make_unique<Ui::FileShareController>()),
      table_(new FileShareTableModel(model_, this)) {
  ui_->setupUi(getView());
  ui_->introView->show("ic_shredder_active", getLocalizedString(moduleTable()[9].label),
                       getLocalizedString("Drop files and folders here, or choose them. What is "
                                          "erased cannot be brought back."));
  ui_->listArea->setQuiet(true);
  ui_->table->setEntries(table_, FileShareTableModel::name);
  ui_->table->horizontalHeader()->resizeSection(FileShareTableModel::outcome, kOutcomeWidth);
  ui_->table->horizontalHeader()->resizeSection(FileShareTableModel::size, 100);
  ui_->table->installEventFilter(this);
  choose_ = [this] {
    const ItemChooser::Wanted wanted{getLocalizedString("Choose files and folders to erase"),
                                     getLocalizedString("Add")};
    return ItemChooser(wanted, getView()).choose();
  };
  connectControls();
  model_.setListener(this);
  listChanged();
}

FileShareController::~FileShareController() {
  model_.setListener(nullptr);
}

ShredProgressWindowController* FileShareController::progressWindow() const {
  return shredProgessWC_;
}

void FileShareController::connectControls() {
  const auto onClick = [this](QAbstractButton* button, void (FileShareController::*action)()) {
    connect(button, &QAbstractButton::clicked, this, action);
  };
  onClick(ui_->selectFileButton, &FileShareController::selectFileButtonAction);
  onClick(ui_->addButton, &FileShareController::selectFileButtonAction);
  onClick(ui_->emptyListButton, &FileShareController::emptyListButtonAction);
  onClick(ui_->removeFromListButton, &FileShareController::removeFromListAction);
  onClick(ui_->eraseButton, &FileShareController::erasreButtonAction);
  onClick(ui_->table->selectAllBox(), &FileShareController::setAllSelectOrNoSelect);
  for (DropArea* area : {ui_->dropArea, ui_->listArea})
    connect(area, &DropArea::pathsDropped, this, &FileShareController::viewDragAction);
  connect(ui_->table, &EntryTable::toggleRequested, this, [this](const QModelIndex& index) {
    model_.toggle(static_cast<std::size_t>(index.row()));
  });
  connect(ui_->table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this] { pageChanged(); });
  connect(ui_->eraserTimes, &SegmentBar::segmentSelect, this, [this](int segment) {
    model_.setEraserTimes(kEraserChoices[static_cast<std::size_t>(segment)].times);
    showTimes();
  });
}

// What is pressed.

void FileShareController::selectFileButtonAction() {
  viewDragAction(choose_());
}

void FileShareController::viewDragAction(const std::vector<std::string>& paths) {
  if (!isCanClick()) return;
  QStringList refused;
  for (const auto& [path, reason] : model_.addFileToArr(paths))
    refused << displayText(path) + QStringLiteral("\n    ") + displayText(reason);
  tellOfNtfs(paths);
  if (refused.isEmpty()) return;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = countText(static_cast<std::size_t>(refused.size()), "%@ item was not added",
                            "%@ items were not added");
  content.text = getLocalizedString("They cannot be erased, for the reason given.");
  content.details = refused;
  content.answers = {{getLocalizedString("Done"), MessagePanel::Answer::Style::primary, 0}};
  MessagePanel::run(content, getView());
}

// In the background: a mounted server that does not answer would hold the window.
void FileShareController::tellOfNtfs(const std::vector<std::string>& paths) {
  Dispatch::global([paths, page = QPointer(getView())] {
    if (!FileShareModel::isAnyOnNtfs(paths)) return;
    Dispatch::mainAsync([page] {
      if (page) NTFSWindowController(page).exec();
    });
  });
}

void FileShareController::setAllSelectOrNoSelect() {
  model_.setAllSelectOrNoSelect(std::string_view(model_.selectAllImage()) == "unsel");
}

void FileShareController::emptyListButtonAction() {
  model_.emptyListButtonAction();
}

void FileShareController::removeFromListAction() {
  const QModelIndex current = ui_->table->currentIndex();
  if (!current.isValid()) return;
  const int row = current.row();
  model_.removeFromList(static_cast<std::size_t>(row));
  const int last = table_->rowCount() - 1;
  if (last >= 0) ui_->table->setCurrentIndex(table_->index(std::min(row, last), 1));
}

bool FileShareController::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->table && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
      removeFromListAction();
      return true;
    }
  }
  return PageController::eventFilter(watched, event);
}

void FileShareController::erasreButtonAction() {
  if (model_.isPlanning()) {
    model_.cancelPlan();
  } else if (model_.selectedCount() > 0) {
    model_.preparePlan();
  }
}

void FileShareController::cancelShred() {
  model_.cancelShred();
}

// What the model says.

void FileShareController::planReady() {
  if (model_.planCount() == 0 || !isEraseWanted()) return;
  shredProgessWC_ = new ShredProgressWindowController(getView());
  shredProgessWC_->setAttribute(Qt::WA_DeleteOnClose);
  connect(shredProgessWC_, &ShredProgressWindowController::cancelShred, this,
          &FileShareController::cancelShred);
  shredProgessWC_->open();
  model_.doDeleteButtonClick();
}

bool FileShareController::isEraseWanted() {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_shredder";
  const std::size_t count = model_.planCount();
  content.title = filledIn(countText(count, "Erase %@ item (%@) beyond recovery?",
                                     "Erase %@ items (%@) beyond recovery?"),
                           sizeText(model_.planBytes()));
  content.text = getLocalizedString(
      "Their content is overwritten and they are removed. They do not go to the trash, and this "
      "cannot be undone.");
  if (model_.hasSolidState()) {
    content.text += QLatin1Char(' ') +
                    getLocalizedString("Some lie on a solid-state disk, where one pass is made.");
  }
  for (const auto& item : model_.valueArr()) {
    if (item->isSelect) content.details << displayText(item->url);
  }
  content.answers = {{getLocalizedString("Cancel"), Style::plain, 0},
                     {countText(count, "Erase %@ Item", "Erase %@ Items"), Style::danger, 1}};
  return MessagePanel::run(content, getView()) == 1;
}

void FileShareController::changeProgressValue(int percentage, const std::string& path) {
  if (shredProgessWC_) shredProgessWC_->changeProgressValue(percentage, path);
}

void FileShareController::showEndShred() {
  if (!shredProgessWC_) return;
  const QString notes = notesText(model_.notes());
  if (model_.isFailedEraser() || model_.isCancel()) {
    shredProgessWC_->failedNodeLable()->setText(getLocalizedString(model_.errorString().c_str()));
    const QString detail =
        getLocalizedString(model_.isCancel() ? "The list tells what was erased and what was not."
                                             : "The list tells why.");
    shredProgessWC_->showFailView(notes.isEmpty() ? detail : detail + QLatin1Char('\n') + notes);
  } else {
    shredProgessWC_->showSeccView(
        countText(model_.deleteErrorArr().size(), "%@ item was erased", "%@ items were erased"),
        notes);
  }
}

void FileShareController::listChanged() {
  table_->reloadData();
  const bool isEmpty = model_.rowCount() == 0;
  ui_->views->setCurrentWidget(isEmpty ? ui_->dropView : ui_->listView);
  ui_->table->selectAllBox()->setImageName(model_.selectAllImage());
  showTimes();
  pageChanged();
}

void FileShareController::pageChanged() {
  const bool isFree = model_.isCanClick();
  const std::size_t selected = model_.selectedCount();
  ui_->eraseButton->setText(model_.isPlanning() ? getLocalizedString("Stop")
                            : selected == 0
                                ? getLocalizedString("Erase")
                                : countText(selected, "Erase %@ Item", "Erase %@ Items"));
  ui_->eraseButton->setEnabled(model_.isPlanning() || (isFree && selected > 0));
  ui_->addButton->setEnabled(isFree);
  ui_->emptyListButton->setEnabled(isFree);
  ui_->removeFromListButton->setEnabled(isFree && ui_->table->currentIndex().isValid());
  ui_->table->selectAllBox()->setEnabled(isFree && !model_.valueArr().empty());
  ui_->listArea->setAcceptDrops(isFree);
  showSummary();
}

void FileShareController::showSummary() {
  QString text;
  if (model_.isPlanning()) {
    text = getLocalizedString("Counting what is in the folders…");
  } else if (!model_.deleteErrorArr().empty()) {
    std::size_t erased = 0;
    for (const auto& item : model_.deleteErrorArr())
      erased += item->failStr == "Erased" ? 1 : 0;
    text = countText(erased, "%@ item erased", "%@ items erased");
    const std::size_t failed = model_.deleteErrorArr().size() - erased;
    if (failed > 0) text += countText(failed, ", %@ failed", ", %@ failed");
  } else {
    std::uint64_t bytes = 0;
    bool hasFolder = false;
    for (const auto& item : model_.valueArr()) {
      if (!item->isSelect) continue;
      bytes += static_cast<std::uint64_t>(item->size);
      hasFolder = hasFolder || item->isDir;
    }
    text = countText(model_.selectedCount(), "%@ item ticked", "%@ items ticked");
    text += QStringLiteral(", ") + sizeText(bytes);
    if (hasFolder) text += getLocalizedString(" and what is in the folders");
  }
  ui_->summaryLabel->setText(text);
}

void FileShareController::showTimes() {
  std::vector<SegmentBar::Segment> segments;
  const int times = model_.eraserTimes();
  int current = 0;
  for (std::size_t i = 0; i < kEraserChoices.size(); ++i) {
    const EraserChoice& choice = kEraserChoices[i];
    segments.push_back(
        {getLocalizedString(choice.title), getLocalizedString(kShortNames[i]), false});
    if (choice.times == times) current = static_cast<int>(i);
  }
  ui_->eraserTimes->setSegments(std::move(segments));
  ui_->eraserTimes->setCurrent(current);
  const char* sentence = kEraserChoices[static_cast<std::size_t>(current)].sentence;
  ui_->timesLabel->setText(getLocalizedString(sentence));
}

}  // namespace brisko

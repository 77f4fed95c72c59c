#include "AMRelatedFilesWindowController.h"

#include "LocalizedString.h"
#include "MarkSureDeleteWC.h"
#include "RelatedFilesTree.h"
#include "UninstallProgressWindowController.h"
#include "ui_AMRelatedFilesWindowController.h"

#include <utility>

namespace brisko {
namespace {

constexpr qsizetype kMostWarnings = 4;

}  // namespace

AMRelatedFilesWindowController::AMRelatedFilesWindowController(QWidget* parent)
    : PanelWindow(parent),
      ui_(std::make_unique<Ui::AMRelatedFilesWindowController>()),
      tree_(new RelatedFilesTree(model_, this)) {
  setObjectName(QStringLiteral("AMRelatedFilesWindowController"));
  ui_->setupUi(contentView());
  setWindowTitle(ui_->titleLabel->text());
  setAccessibleName(ui_->titleLabel->text());
  ui_->warningImage->setImageName("ic_warning");
  ui_->warningImage->setTint(Theme::Token::warning);
  ui_->warningImage->setImageSide(18);
  ui_->outlineView->setTree(tree_);
  ui_->outlineView->setAccessibleName(getLocalizedString("What will be removed"));
  connect(ui_->outlineView, &CheckOutline::toggleRequested, this,
          &AMRelatedFilesWindowController::selectRemoveLanguage);
  connect(ui_->uninstallButton, &QPushButton::clicked, this,
          &AMRelatedFilesWindowController::clickedDeleteBtn);
  connect(ui_->cancelButton, &QPushButton::clicked, this,
          &AMRelatedFilesWindowController::clickedCancelBtn);
  model_.setListener(this);
}

AMRelatedFilesWindowController::~AMRelatedFilesWindowController() {
  model_.setListener(nullptr);
}

bool AMRelatedFilesWindowController::review(const AppItems& chosen, AppItems installed) {
  model_.setAllRelaltedFiles(chosen, std::move(installed));
  tree_->reloadData();
  if (tree_->rowCount() > 0) {
    ui_->outlineView->expand(tree_->index(0, 0));
    ui_->outlineView->setCurrentIndex(tree_->index(0, 0));
  }
  ui_->outlineView->setFocus();
  showWarnings();
  showButton();
  if (exec() == Accepted) return true;
  uninstallEnd();
  return false;
}

void AMRelatedFilesWindowController::clickedDeleteBtn() {
  if (model_.uninstallButtonEnabled()) accept();
}

void AMRelatedFilesWindowController::selectRemoveLanguage(const QModelIndex& index) {
  const auto group = static_cast<std::size_t>(RelatedFilesTree::groupOf(index));
  const int entry = RelatedFilesTree::entryOf(index);
  if (entry < 0) {
    model_.selectRemoveLanguage(group);
  } else {
    model_.selectRemoveLanguage(
        model_.allRelaltedFiles()[group].entries[static_cast<std::size_t>(entry)]);
  }
}

void AMRelatedFilesWindowController::groupFilled(std::size_t group) {
  tree_->groupFilled(group);
  // A row without children does not open; now it has some.
  if (group == 0) ui_->outlineView->expand(tree_->index(0, 0));
  showWarnings();
}

void AMRelatedFilesWindowController::ticksChanged() {
  tree_->rowsChanged();
  showButton();
}

void AMRelatedFilesWindowController::sizesChanged() {
  tree_->rowsChanged();
  showButton();
}

void AMRelatedFilesWindowController::showButton() {
  const std::size_t count = model_.selectedCount();
  ui_->uninstallButton->setEnabled(model_.uninstallButtonEnabled());
  ui_->uninstallButton->setText(count == 0
                                    ? getLocalizedString("Remove")
                                    : removalText(count, model_.selectedBytes(),
                                                  "Remove %@ Item (%@)", "Remove %@ Items (%@)"));
}

void AMRelatedFilesWindowController::showWarnings() {
  QStringList lines;
  for (const std::string& warning : model_.warnings())
    lines << displayText(warning);
  // The rows say it too; the window has to stay on the screen.
  if (const auto more = lines.size() - kMostWarnings; more > 0) {
    lines.resize(kMostWarnings);
    lines << filledIn(getLocalizedString("And %@ more"), QString::number(more));
  }
  const bool wasHidden = ui_->warningView->isHidden();
  ui_->warningLabel->setText(lines.join(QLatin1Char('\n')));
  ui_->warningView->setVisible(!lines.isEmpty());
  if (wasHidden && !lines.isEmpty() && isVisible()) adjustSize();
}

// The removal.

void AMRelatedFilesWindowController::doRemove() {
  model_.doRemove();
  if (!model_.isRemoving()) return;
  showProgress();
  uninstallEnd();
}

void AMRelatedFilesWindowController::showProgress() {
  uninstallPWC_ = std::make_unique<UninstallProgressWindowController>(parentWidget());
  uninstallPWC_->exec();
  uninstallPWC_.reset();
}

// The tree must not stand for rows that the model has forgotten: a hidden view still asks for them
// when the theme changes.
void AMRelatedFilesWindowController::uninstallEnd() {
  model_.uninstallEnd();
  tree_->reloadData();
}

void AMRelatedFilesWindowController::progressChanged() {
  if (!uninstallPWC_) return;
  if (model_.deleteCount() == 0) return uninstallPWC_->showStep(model_.pathLabel());
  if (model_.progressValue() >= 100) {
    uninstallPWC_->changeLabel(model_.messageLabel());
    uninstallPWC_->showFailures(model_.failures());
  }
  uninstallPWC_->changeProgressValue(model_.progressValue(), model_.pathLabel());
}

void AMRelatedFilesWindowController::removalEnded() {
  progressChanged();
}

}  // namespace brisko

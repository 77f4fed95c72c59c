// The removal as the page shows it: asking, progress, and what stayed.

#include "ListFileViewController.h"
#include "LocalizedString.h"
#include "MarkSureDeleteWC.h"
#include "ProgressWindowController.h"
#include "ui_ListFileViewController.h"

namespace brisko {

void ListFileViewController::deleteFiles() {
  if (controller_.isScanning() || controller_.isRemoving()) return;
  const LargeFileSelection selection = controller_.selection();
  if (selection.count == 0) return;
  MarkSureDeleteWC::Texts texts;
  texts.oneTitle = "Remove %@ item (%@)?";
  texts.manyTitle = "Remove %@ items (%@)?";
  texts.text =
      "Folders go with everything in them. They are removed for good and do not go to the trash.";
  texts.oneAnswer = "Remove %@ Item";
  texts.manyAnswer = "Remove %@ Items";
  MarkSureDeleteWC window(selection.count, selection.bytes, view_, texts);
  if (window.run()) deleteFileButtonAction();
}

void ListFileViewController::deleteFileButtonAction() {
  doRemoveAction();
}

void ListFileViewController::doRemoveAction() {
  if (!controller_.deleteFilesWithDic()) return;
  showStatus();
  progressWindow_ = std::make_unique<ProgressWindowController>(view_);
  connect(progressWindow_.get(), &ProgressWindowController::stopRequested, this,
          [this] { controller_.stopRemove(); });
  progressWindow_->open();
}

void ListFileViewController::changeProgressWithPoint(int point, const std::string& path) {
  if (progressWindow_) progressWindow_->setProgress(point, path);
}

void ListFileViewController::removeEnd() {
  if (progressWindow_) {
    progressWindow_->hide();
    progressWindow_.release()->deleteLater();
  }
  reloadTree();
  const bool isAllGone = controller_.aRootArr().empty();
  const std::size_t count = controller_.removedPaths().size();
  const std::uint64_t freed = controller_.freedBytes();
  if (!controller_.failures().empty()) showFailures();
  if (isAllGone) {
    backButtonAction();
    if (count > 0) detagate_->everythingRemoved(count, freed);
    return;
  }
  if (count > 0) {
    detagate_->showStatus(
        removalText(count, freed, "%@ item removed, %@ freed", "%@ items removed, %@ freed"),
        QString());
  }
  if (ui_->outline->isVisible()) ui_->outline->setFocus();
}

void ListFileViewController::showFailures() {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = getLocalizedString("Some items could not be removed");
  content.text = getLocalizedString("They are still where they were, and are listed no more.");
  for (const LargeFileFailure& failure : controller_.failures()) {
    content.details << displayText(failure.path) + QStringLiteral("\n    ") +
                           displayText(failure.reason);
  }
  content.answers = {{getLocalizedString("Done"), Style::primary, 0}};
  MessagePanel::run(content, view_);
}

}  // namespace brisko

// The removal as the page shows it: asking, progress, and what stayed.

#include "CommUti.h"
#include "DuplicatePanels.h"
#include "DuplicateViewController.h"
#include "ImageCheckBox.h"
#include "LocalizedString.h"
#include "MarkSureDeleteWC.h"
#include "ui_DuplicateViewController.h"

namespace brisko {

void DuplicateViewController::removeBtnClicked() {
  if (!model_.removeButtonEnabled() || isRemovalDue()) return;
  MarkSureDeleteWC window(model_.selectedCount(), model_.selectedSize(), getView());
  if (window.run()) deleteFileButtonAction();
}

void DuplicateViewController::stopRemoveBtnClicked() {
  if (isRemovalDue()) {
    // Nothing has begun yet, so there is nothing to wait for.
    removalTimer_.stop();
    pageChanged();
    return;
  }
  ui_->stopRemoveButton->setEnabled(false);
  model_.stopRemoveBtnClicked();
}

void DuplicateViewController::showRemoving() {
  const bool isBusy = model_.isRemoving() || isRemovalDue();
  const bool hadFocus = ui_->removeButton->hasFocus() || ui_->stopRemoveButton->hasFocus();
  ui_->removeButton->setText(removalText(model_.selectedCount(), model_.selectedSize(),
                                         "Remove %@ File (%@)", "Remove %@ Files (%@)"));
  if (model_.selectedCount() == 0) ui_->removeButton->setText(getLocalizedString("Remove"));
  ui_->removeButton->setEnabled(model_.removeButtonEnabled() && !isBusy);
  ui_->removeButton->setVisible(!isBusy);
  if (isBusy && ui_->stopRemoveButton->isHidden()) {
    ui_->stopRemoveButton->setEnabled(true);
    ui_->removalBar->setRange(0, 1);
    ui_->removalBar->setValue(0);
    ui_->summaryLabel->setText(getLocalizedString("Removing…"));
  }
  if (!isBusy && !ui_->stopRemoveButton->isHidden()) {
    setSelectCount();
  }
  ui_->loadingView->setVisible(isBusy);
  ui_->stopRemoveButton->setVisible(isBusy);
  ui_->removalBar->setVisible(isBusy);
  ui_->backHomeButton->setEnabled(!isBusy);
  ui_->outline->selectAllBox()->setEnabled(!isBusy);
  if (hadFocus) (isBusy ? static_cast<QWidget*>(ui_->stopRemoveButton) : ui_->outline)->setFocus();
}

void DuplicateViewController::removalProgressed(const std::string& path, std::size_t done) {
  if (!model_.isRemoving()) return;
  ui_->removalBar->setRange(0, static_cast<int>(model_.removalTotal()));
  ui_->removalBar->setValue(static_cast<int>(done));
  QLabel* label = ui_->summaryLabel;
  label->setText(
      label->fontMetrics().elidedText(displayText(path), Qt::ElideMiddle, label->width()));
}

void DuplicateViewController::removalEnded() {
  const std::string warning = model_.removeWarning();
  if (!warning.empty()) {
    ui_->outline->allTicksChanged();
    tellFailures(getView(), getLocalizedString(warning.c_str()), model_.failures());
  } else if (!model_.failures().empty()) {
    // After stopping nothing stays ticked, but what stayed is not passed over in silence.
    tellFailures(getView(), getLocalizedString("Some files could not be removed"),
                 model_.failures());
  }
}

void DuplicateViewController::showEnd() {
  const std::size_t count = model_.removedPaths().size();
  ui_->endTitleLabel->setText(getLocalizedString("You just freed"));
  ui_->endValueLabel->setText(
      QString::fromStdString(CommUti::longlongDiskSize(model_.freedBytes())));
  ui_->endTextLabel->setText(filledIn(
      getLocalizedString(count == 1 ? "%@ file was removed, and one copy of each was kept."
                                    : "%@ files were removed, and one copy of each was kept."),
      QString::number(count)));
}

}  // namespace brisko

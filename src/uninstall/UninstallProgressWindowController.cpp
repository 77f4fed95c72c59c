#include "UninstallProgressWindowController.h"

#include "LocalizedString.h"
#include "MessagePanel.h"
#include "RelatedFilesModel.h"
#include "ui_UninstallProgressWindowController.h"

#include <utility>

namespace brisko {

UninstallProgressWindowController::UninstallProgressWindowController(QWidget* parent)
    : PanelWindow(parent), ui_(std::make_unique<Ui::UninstallProgressWindowController>()) {
  setObjectName(QStringLiteral("UninstallProgressWindowController"));
  ui_->setupUi(contentView());
  setWindowTitle(ui_->titleLabel->text());
  setAccessibleName(ui_->titleLabel->text());
  ui_->endImageView->setImageName("ill_success");
  ui_->endImageView->setImageSide(120);
  ui_->endView->hide();
  ui_->aProgressView->setValue(10);
  // Not the close button, which has nothing to close yet.
  ui_->aProgressView->setFocusPolicy(Qt::StrongFocus);
  ui_->aProgressView->setFocus();
  connect(ui_->okButton, &QPushButton::clicked, this,
          &UninstallProgressWindowController::okButtonAction);
  connect(ui_->failuresButton, &QPushButton::clicked, this,
          &UninstallProgressWindowController::listFailures);
}

UninstallProgressWindowController::~UninstallProgressWindowController() = default;

void UninstallProgressWindowController::changeProgressValue(int percentage,
                                                            const std::string& withShredingPath) {
  ui_->aProgressView->setValue(static_cast<float>(percentage));
  showStep(withShredingPath);
  if (percentage < 100) return;
  isEnded_ = true;
  ui_->progressView->hide();
  ui_->endView->show();
  ui_->okButton->setFocus();
  adjustSize();
  center();
}

void UninstallProgressWindowController::showStep(const std::string& text) {
  QLabel* label = ui_->pathLabel;
  label->setText(
      label->fontMetrics().elidedText(displayText(text), Qt::ElideMiddle, label->width()));
}

void UninstallProgressWindowController::changeLabel(const std::string& message) {
  ui_->messageLabel->setText(QString::fromStdString(message));
}

void UninstallProgressWindowController::showFailures(std::vector<UninstallFailure> failures) {
  failures_ = std::move(failures);
  ui_->failuresButton->setVisible(!failures_.empty());
  ui_->failuresButton->setText(
      filledIn(getLocalizedString(failures_.size() == 1 ? "%@ item could not be removed"
                                                        : "%@ items could not be removed"),
               QString::number(failures_.size())));
}

void UninstallProgressWindowController::listFailures() {
  using Style = MessagePanel::Answer::Style;
  MessagePanel::Content content;
  content.imageName = "ic_warning";
  content.title = getLocalizedString("Some items could not be removed");
  content.text = getLocalizedString("They are still where they were.");
  for (const UninstallFailure& failure : failures_) {
    content.details << displayText(failure.path) + QStringLiteral("\n    ") +
                           displayText(failure.reason);
  }
  content.answers = {{getLocalizedString("Done"), Style::primary, 0}};
  MessagePanel::run(content, this);
}

void UninstallProgressWindowController::okButtonAction() {
  if (isEnded_) done(0);
}

}  // namespace brisko

#include "ShredProgressWindowController.h"

#include "LocalizedString.h"
#include "ui_ShredProgressWindowController.h"

namespace brisko {

ShredProgressWindowController::ShredProgressWindowController(QWidget* parent)
    : PanelWindow(parent), ui_(std::make_unique<Ui::ShredProgressWindowController>()) {
  setObjectName(QStringLiteral("ShredProgressWindowController"));
  setWindowTitle(getLocalizedString("Erasing"));
  setAccessibleName(windowTitle());
  ui_->setupUi(contentView());
  ui_->progressImage->setImageName("ic_shredder");
  ui_->successImage->setImageName("ill_success");
  ui_->failImage->setImageName("ic_warning");
  for (ImageView* image : {ui_->progressImage, ui_->failImage}) {
    image->setImageSide(26);
    image->setTile(true);
    image->setTint(Theme::Token::accent);
  }
  ui_->successImage->setImageSide(120);
  connect(ui_->cancelButton, &QPushButton::clicked, this, &ShredProgressWindowController::reject);
  connect(ui_->successButton, &QPushButton::clicked, this, &QDialog::accept);
  connect(ui_->failButton, &QPushButton::clicked, this, &QDialog::accept);
  ui_->cancelButton->setFocus();
}

ShredProgressWindowController::~ShredProgressWindowController() = default;

bool ShredProgressWindowController::isOver() const {
  return ui_->views->currentWidget() != ui_->progressView;
}

void ShredProgressWindowController::changeProgressValue(int percentage, const std::string& path) {
  ui_->bar->setValue(percentage);
  ui_->percentageLabel->setText(QStringLiteral("%1 %").arg(percentage));
  QLabel* label = ui_->pathLabel;
  label->setText(
      label->fontMetrics().elidedText(displayText(path), Qt::ElideMiddle, label->width()));
}

void ShredProgressWindowController::showFailView(const QString& detail) {
  ui_->failDetailLabel->setText(detail);
  ui_->failDetailLabel->setVisible(!detail.isEmpty());
  ui_->views->setCurrentWidget(ui_->failView);
  ui_->failButton->setFocus();
}

void ShredProgressWindowController::showSeccView(const QString& sentence, const QString& detail) {
  ui_->successLabel->setText(sentence);
  ui_->successDetailLabel->setText(detail);
  ui_->successDetailLabel->setVisible(!detail.isEmpty());
  ui_->views->setCurrentWidget(ui_->successView);
  ui_->successButton->setFocus();
}

QLabel* ShredProgressWindowController::failedNodeLable() const {
  return ui_->failedNodeLable;
}

void ShredProgressWindowController::reject() {
  if (isOver()) {
    PanelWindow::reject();
    return;
  }
  ui_->cancelButton->setEnabled(false);
  ui_->cancelButton->setText(getLocalizedString("Cancelling…"));
  Q_EMIT cancelShred();
}

}  // namespace brisko

#include "ProgressWindowController.h"

#include "LocalizedString.h"
#include "Theme.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace brisko {
namespace {

constexpr int kWidth = 380;

}  // namespace

ProgressWindowController::ProgressWindowController(QWidget* parent)
    : PanelWindow(parent),
      bar_(new QProgressBar),
      pathLabel_(new QLabel),
      stopButton_(new QPushButton(getLocalizedString("Stop"))) {
  setObjectName(QStringLiteral("progressWindow"));
  auto* column = new QVBoxLayout(contentView());
  column->setSpacing(Space::medium);
  auto* title = new QLabel(getLocalizedString("Removing…"));
  title->setProperty("role", QLatin1String("heading"));
  title->setAlignment(Qt::AlignCenter);
  bar_->setObjectName(QStringLiteral("removalBar"));
  bar_->setTextVisible(false);
  bar_->setRange(0, 100);
  bar_->setAccessibleName(getLocalizedString("Removal progress"));
  bar_->setFixedWidth(kWidth);
  pathLabel_->setObjectName(QStringLiteral("removalPathLabel"));
  pathLabel_->setProperty("role", QLatin1String("caption"));
  pathLabel_->setTextFormat(Qt::PlainText);
  pathLabel_->setAlignment(Qt::AlignCenter);
  pathLabel_->setFixedWidth(kWidth);
  stopButton_->setObjectName(QStringLiteral("stopRemoveButton"));
  column->addWidget(title);
  column->addWidget(bar_);
  column->addWidget(pathLabel_);
  column->addWidget(stopButton_, 0, Qt::AlignHCenter);
  connect(stopButton_, &QAbstractButton::clicked, this, &ProgressWindowController::stop);
}

void ProgressWindowController::setProgress(int point, const std::string& path) {
  bar_->setValue(point);
  pathLabel_->setText(
      pathLabel_->fontMetrics().elidedText(displayText(path), Qt::ElideMiddle, kWidth));
}

void ProgressWindowController::stop() {
  if (!stopButton_->isEnabled()) return;
  stopButton_->setEnabled(false);
  stopButton_->setText(getLocalizedString("Stopping…"));
  Q_EMIT stopRequested();
}

}  // namespace brisko

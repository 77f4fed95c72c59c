#include "APFSScanWindowController.h"

#include "LocalizedString.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPropertyAnimation>
#include <QPushButton>

namespace brisko {
namespace {

constexpr int kFadeDuration = 250;  // milliseconds

NoticeWindow::Content content() {
  NoticeWindow::Content content;
  content.imageName = "ic_shield";
  content.title = getLocalizedString("The system protects these files");
  content.text = getLocalizedString(
      "System Integrity Protection keeps every program away from the browser's data, this one "
      "included. To have it cleaned, turn the protection off, clean, and turn it on again.");
  content.linkTitle = getLocalizedString("Show Me How");
  content.linkKey = "ProtectionURL";
  content.closeTitle = getLocalizedString("OK");
  return content;
}

}  // namespace

APFSScanWindowController::APFSScanWindowController(QWidget* parent)
    : NoticeWindow(content(), parent), okButton(closeButton()) {
  setObjectName(QStringLiteral("APFSScanWindowController"));
  connect(okButton, &QPushButton::clicked, this, &APFSScanWindowController::closeWindow);
  QCoreApplication::instance()->installEventFilter(this);
}

APFSScanWindowController::~APFSScanWindowController() = default;

void APFSScanWindowController::closeWindow() {
  done(0);
}

bool APFSScanWindowController::eventFilter(QObject* watched, QEvent* event) {
  const bool isQuit = event->type() == QEvent::Quit && watched == QCoreApplication::instance();
  if (!isQuit || !isVisible() || applicationShouldTerminate()) {
    return NoticeWindow::eventFilter(watched, event);
  }
  event->ignore();
  return true;
}

bool APFSScanWindowController::applicationShouldTerminate() {
  if (shuttingDown) return true;
  shuttingDown = true;
  auto* fade = new QPropertyAnimation(this, "alphaValue", this);
  fade->setDuration(kFadeDuration);
  fade->setEndValue(0.0);
  connect(fade, &QPropertyAnimation::finished, this, &APFSScanWindowController::animationDidEnd);
  fade->start(QAbstractAnimation::DeleteWhenStopped);
  return false;
}

void APFSScanWindowController::setAlphaValue(double alpha) {
  alphaValue_ = alpha;
  setWindowOpacity(alpha);
}

void APFSScanWindowController::animationDidEnd() {
  if (alphaValue_ != 0) return;
  closeWindow();
  if (shuttingDown) QCoreApplication::quit();
}

}  // namespace brisko

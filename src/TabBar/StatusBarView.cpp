#include "StatusBarView.h"

#include "ImageLookup.h"
#include "LocalizedString.h"
#include "StatusPanel.h"

#include <QCursor>

namespace brisko {

StatusBarView::StatusBarView(QObject* parent) : QObject(parent) {}

StatusBarView::~StatusBarView() = default;

void StatusBarView::setStatusItem(QSystemTrayIcon* item) {
  statusItem_ = item;
  menu_ = std::make_unique<QMenu>();
  menu_->addAction(getLocalizedString("Open Brisko"), this, &StatusBarView::mainWindowRequested);
  menu_->addSeparator();
  menu_->addAction(getLocalizedString("Quit Brisko"), this, &StatusBarView::quitRequested);
  item->setContextMenu(menu_.get());
  item->setToolTip(QStringLiteral("Brisko"));
  connect(item, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason why) {
    if (why == QSystemTrayIcon::Trigger) togglePanel();
    if (why == QSystemTrayIcon::MiddleClick) Q_EMIT reopenRequested();
  });
}

void StatusBarView::changeTabarIconImage() {
  if (statusItem_ != nullptr) statusItem_->setIcon(ImageLookup::icon(tabBarIconImage_));
}

void StatusBarView::togglePanel() {
  // Some desktops do not tell where the item is; then it is where it was just pressed.
  QRect anchor = statusItem_ != nullptr ? statusItem_->geometry() : QRect();
  if (!anchor.isValid()) anchor = QRect(QCursor::pos() - QPoint(8, 8), QSize(16, 16));
  togglePanelAt(anchor);
}

void StatusBarView::togglePanelAt(const QRect& anchor) {
  if (!panel_) {
    panel_ = std::make_unique<StatusPanel>();
    connect(panel_.get(), &StatusPanel::mainWindowRequested, this,
            &StatusBarView::mainWindowRequested);
  }
  if (panel_->isVisible()) {
    panel_->hide();
  } else {
    panel_->popUp(anchor);
  }
}

}  // namespace brisko

// The application menu of AppDelegate and the keys that stand for its entries.

#include "AppDelegate.h"
#include "Host.h"
#include "LocalizedString.h"
#include "MainWindow.h"
#include "TCPreferenceWindowController.h"
#include "TitleBar.h"
#include "UpdateWindowController.h"
#include "ZKLinkUrl.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QShortcut>

namespace brisko {
namespace {

void openLink(const char* key) {
  const auto address = ZKLinkUrl::GetUrl(key);
  if (address && !address->empty()) Host::current().workspace->openAddress(*address);
}

}  // namespace

void AppDelegate::buildMenu() {
  menu_ = new QMenu(aWindow);
  menu_->setObjectName(QStringLiteral("applicationMenu"));
  const auto add = [this](QMenu* menu, const char* key, const char* name, auto action) {
    QAction* made = menu->addAction(getLocalizedString(key), this, action);
    made->setObjectName(QLatin1String(name));
    return made;
  };
  add(menu_, "About Brisko", "aboutAction", &AppDelegate::aboutAction);
  add(menu_, "Check for Updates…", "checkUpdateAction", &AppDelegate::checkUpdateAction);
  menu_->addSeparator();
  add(menu_, "Online Help", "onlineHelp", &AppDelegate::onlineHelp)
      ->setShortcut(QKeySequence(Qt::Key_F1));
  add(menu_, "Support Center", "supportCenterAction", &AppDelegate::supportCenterAction);
  QMenu* more = menu_->addMenu(getLocalizedString("More Products"));
  add(more, "Data Recovery", "recoveryMenuItmeAction", &AppDelegate::recoveryMenuItmeAction);
  add(more, "Data Eraser", "eraserMenuItemAction", &AppDelegate::eraserMenuItemAction);
  add(more, "Start Menu", "startMenuDriveMenuItemAction",
      &AppDelegate::startMenuDriveMenuItemAction);
  menu_->addSeparator();
  add(menu_, "Close Window", "closeWindow", &AppDelegate::closeWindow)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
  add(menu_, "Quit Brisko", "quit", &AppDelegate::terminate)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
  // The menu opens from a button, so the window itself must know the actions' keys.
  aWindow->addActions(menu_->actions());
}

void AppDelegate::showMenu() {
  const QWidget* button = titleBarView->menuButton();
  const QPoint corner = button->mapToGlobal(QPoint(button->width(), button->height() + 4));
  menu_->popup(corner - QPoint(menu_->sizeHint().width(), 0));
}

void AppDelegate::addShortcuts() {
  auto* menuKey = new QShortcut(QKeySequence(Qt::Key_F10), aWindow);
  connect(menuKey, &QShortcut::activated, this, &AppDelegate::showMenu);
  for (int index = 0; index < 10; ++index) {
    auto* key =
        new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + index)), aWindow);
    connect(key, &QShortcut::activated, this, [this, index] { goToPage(index); });
  }
}

void AppDelegate::checkUpdateAction() {
  if (checkUpdateWindow == nullptr) {
    checkUpdateWindow = new UpdateWindowController(aWindow);
    connect(checkUpdateWindow, &UpdateWindowController::terminateRequested, this,
            &AppDelegate::terminate);
  }
  checkUpdateWindow->exec();
  if (isOpenMainWindow) aWindow->activateWindow();
}

void AppDelegate::supportCenterAction() {
  openLink("SupportTeam");
}

void AppDelegate::onlineHelp() {
  openLink("OnlineHelp");
}

void AppDelegate::aboutAction() {
  TCPreferenceWindowController about(aWindow);
  about.exec();
  if (isOpenMainWindow) aWindow->activateWindow();
}

void AppDelegate::recoveryMenuItmeAction() {
  openLink("RecoveryURL");
}

void AppDelegate::eraserMenuItemAction() {
  openLink("EraserURL");
}

void AppDelegate::startMenuDriveMenuItemAction() {
  openLink("StartMenuURL");
}

}  // namespace brisko

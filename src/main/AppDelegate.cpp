#include "AppDelegate.h"

#include "APFSScanWindowController.h"
#include "CommUti.h"
#include "FileURL.h"
#include "Host.h"
#include "LeftCellViewCtr.h"
#include "LeftViewCtl.h"
#include "LocalizedString.h"
#include "MainView.h"
#include "MainWindow.h"
#include "ModuleTable.h"
#include "PageController.h"
#include "StatusBarView.h"
#include "SystemLog.h"
#include "Theme.h"
#include "TitleBar.h"
#include "UKLoginItemRegistry.h"
#include "UpdateWindowController.h"
#include "ViewMan.h"
#include "ZKLinkUrl.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QSystemTrayIcon>
#include <QTimer>

#include <filesystem>

namespace brisko {
namespace {

constexpr const char* kFirstLoadKey = "AFristLoad";
constexpr const char* kAppearanceKeyPath = "button.effectiveAppearance";
constexpr int kUnifiedTitleBarVersion = 1016;
constexpr int kMenuBarDelay = 1000;  // milliseconds
constexpr int kBusyDelay = 100;      // milliseconds between two looks at busy pages

std::string iconForDark(bool isDark) {
  return isDark ? "logo_dark" : "logo_light";
}

}  // namespace

AppDelegate::AppDelegate() : _window(std::make_unique<MainWindow>()) {
  aWindow = _window.get();
  titleBarView = aWindow->titleBarView();
  aLeftView = new QWidget(aWindow->contentView());
  aLeftView->setGeometry(0, 0, LeftViewCtl::kWidth, MainWindow::kContentHeight);
  statusBarV = new StatusBarView(this);
  connect(statusBarV, &StatusBarView::mainWindowRequested, this, &AppDelegate::showMainWindow);
  connect(statusBarV, &StatusBarView::quitRequested, this, &AppDelegate::terminate);
  connect(statusBarV, &StatusBarView::reopenRequested, this,
          [this] { applicationShouldHandleReopen(aWindow->isVisible()); });
  connect(aWindow, &MainWindow::closeRequested, this, &AppDelegate::closeWindow);
  connect(aWindow, &MainWindow::contentResized, this, &AppDelegate::layOutViews);
  awakeFromNib();
}

AppDelegate::~AppDelegate() {
  ViewMan::returnViewMan().viewInit();
}

void AppDelegate::awakeFromNib() {
  createLeftView();
  creatrRightView();
  ViewMan::returnViewMan().showView(0);
}

void AppDelegate::createLeftView() {
  leftViewCtl_ = new LeftViewCtl(this);
  const QRect frame = aLeftView ? aLeftView->geometry() : QRect(0, 0, 0, 0);
  delete aLeftView;
  leftViewCtl_->view()->setParent(aWindow->contentView());
  leftViewCtl_->view()->setGeometry(frame);
}

QRect AppDelegate::pageArea() const {
  return aWindow->contentView()->rect().adjusted(LeftViewCtl::kWidth, 0, 0, 0);
}

void AppDelegate::creatrRightView() {
  mainView_ = new MainView(aWindow->contentView());
  mainView_->setGeometry(pageArea());
  for (int index = 0; index < static_cast<int>(moduleTable().size()); ++index) {
    std::unique_ptr<PageController> page = createViewWith(index);
    if (!page) continue;
    page->getView()->setParent(aWindow->contentView());
    page->getView()->setGeometry(pageArea());
    ViewMan::returnViewMan().addView(page.get());
    connect(page.get(), &PageController::pageRequested, this, &AppDelegate::goToPage);
    pages_.push_back(std::move(page));
  }
}

std::unique_ptr<PageController> AppDelegate::createViewWith(int index) const {
  const auto& modules = moduleTable();
  if (index < 0 || index >= static_cast<int>(modules.size())) return nullptr;
  return modules[static_cast<std::size_t>(index)].createPage();
}

void AppDelegate::goToPage(int index) {
  const auto& cells = leftViewCtl_->cells();
  if (index < 0 || index >= static_cast<int>(cells.size())) return;
  cells[static_cast<std::size_t>(index)]->CellCtl->mouseDown(nullptr);
}

void AppDelegate::layOutViews() {
  if (mainView_ == nullptr) return;
  leftViewCtl_->view()->resize(LeftViewCtl::kWidth, aWindow->contentView()->height());
  mainView_->setGeometry(pageArea());
  // Hidden pages too: they are shown at once when their turn comes.
  for (const auto& page : pages_)
    page->getView()->resize(pageArea().size());
  placeTitleImages();
}

void AppDelegate::applicationDidFinishLaunching() {
  setTitleBar();
  introduceOnce();
  buildMenu();
  addShortcuts();
  QTimer::singleShot(kMenuBarDelay, this, &AppDelegate::addMenuBar);
}

void AppDelegate::introduceOnce() {
  Preferences& preferences = *Host::current().preferences;
  const std::string domain = Preferences::kApplicationDomain;
  if (preferences.value(domain, kFirstLoadKey).string() == "YES") return;
  preferences.setValue(domain, kFirstLoadKey, "YES");
  // What cannot be remembered would happen at every start.
  if (!preferences.synchronize()) return;
  const auto address = ZKLinkUrl::GetUrl("WelcomeURL");
  if (address && !address->empty()) Host::current().workspace->openAddress(*address);
  const std::string program = CommUti::getLocalPath();
  if (std::filesystem::exists(program)) {
    UKLoginItemRegistry::addLoginItemWithURL(fileURL(program), false);
  }
}

void AppDelegate::setTitleBar() {
  aWindow->center();
  titleBarView->moveButtons(-4);
  if (CommUti::getSystemVersion() < kUnifiedTitleBarVersion) {
    titleBarView->setFixedHeight(TitleBar::kLowHeight);
  }
  titleBarView->setObjectName(QStringLiteral("titleBarView"));
  if (titleLabel == nullptr) {
    titleLabel = new QLabel(titleBarView);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->setProperty("role", QStringLiteral("windowTitle"));
    titleLabel->setTextFormat(Qt::PlainText);
    titleLabel->setText(QStringLiteral("Brisko "));
    titleLabel->setAlignment(Qt::AlignCenter);
    titleLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(titleBarView, &TitleBar::closeRequested, this, &AppDelegate::closeWindow);
    connect(titleBarView, &TitleBar::menuRequested, this, &AppDelegate::showMenu);
  }
  placeTitleImages();
}

void AppDelegate::placeTitleImages() {
  if (titleLabel == nullptr) return;
  titleBarView->setGround("bg_lt", LeftViewCtl::kWidth, "bg_rt");
  titleLabel->setGeometry(titleBarView->rect());
}

void AppDelegate::showMainWindow() {
  isOpenMainWindow = true;
  aWindow->setWindowState(aWindow->windowState() & ~Qt::WindowMinimized);
  aWindow->show();
  aWindow->raise();
  aWindow->activateWindow();
}

void AppDelegate::closeWindow() {
  aWindow->hide();
  isOpenMainWindow = false;
  if (applicationShouldTerminateAfterLastWindowClosed()) terminate();
}

void AppDelegate::terminate() {
  if (checkUpdateWindow != nullptr && !checkUpdateWindow->applicationShouldTerminate()) return;
  auto* notice = qobject_cast<APFSScanWindowController*>(QApplication::activeModalWidget());
  if (notice != nullptr && !notice->applicationShouldTerminate()) return;
  aWindow->hide();
  isOpenMainWindow = false;
  if (ViewMan::returnViewMan().checkCanClick(0)) {
    QApplication::quit();
    return;
  }
  // Whoever opens the window again meanwhile wants to stay.
  QTimer::singleShot(kBusyDelay, this, [this] {
    if (!isOpenMainWindow) terminate();
  });
}

bool AppDelegate::applicationShouldHandleReopen(bool) {
  if (isOpenMainWindow) {
    closeWindow();
  } else {
    showMainWindow();
  }
  return true;
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() const {
  return !QSystemTrayIcon::isSystemTrayAvailable();
}

void AppDelegate::addMenuBar() {
  const auto tell = [this] {
    observeValueForKeyPath(QLatin1String(kAppearanceKeyPath), Theme::shared().appearanceName());
  };
  connect(&Theme::shared(), &Theme::changed, this, tell);
  if (QSystemTrayIcon::isSystemTrayAvailable()) {
    statusItem = std::make_unique<QSystemTrayIcon>();
    statusBarV->setStatusItem(statusItem.get());
  } else {
    // Here the panel is opened from the window.
    QAbstractButton* button = titleBarView->panelButton();
    connect(titleBarView, &TitleBar::panelRequested, this, [this, button] {
      statusBarV->togglePanelAt(QRect(button->mapToGlobal(QPoint(0, 0)), button->size()));
    });
    button->show();
  }
  tell();
  if (statusItem) statusItem->show();
}

void AppDelegate::observeValueForKeyPath(const QString& keyPath, const QString& change) {
  if (keyPath != QLatin1String(kAppearanceKeyPath)) return;
  statusBarV->setTabBarIconImage(iconForDark(change.toLower().contains(QLatin1String("dark"))));
  statusBarV->changeTabarIconImage();
}

void AppDelegate::darkModeChanged() {
  SystemLog::line("Dark mode changed");
  const PropertyList domain =
      Host::current().preferences->persistentDomain(Preferences::kGlobalDomain);
  SystemLog::line("--{}", domain.xml());
  const QString style = QString::fromStdString(domain["AppleInterfaceStyle"].string());
  const bool isDark = style.compare(QLatin1String("dark"), Qt::CaseInsensitive) == 0;
  statusBarV->setTabBarIconImage(iconForDark(isDark));
  statusBarV->changeTabarIconImage();
}

}  // namespace brisko

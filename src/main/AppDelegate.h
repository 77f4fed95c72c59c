#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

class QLabel;
class QMenu;
class QSystemTrayIcon;
class QWidget;

namespace brisko {

class LeftViewCtl;
class MainView;
class MainWindow;
class PageController;
class StatusBarView;
class TitleBar;
class UpdateWindowController;

/// Prepares the main window with its sidebar and pages, shows and hides it, owns the menu-bar item
/// and answers the application menu. Main thread only.
class AppDelegate : public QObject {
  Q_OBJECT

 public:
  AppDelegate();
  ~AppDelegate() override;

  /// Builds sidebar and pages and opens on System Status.
  void awakeFromNib();

  /// Dresses the window, introduces the program once per user, and makes the menu-bar item one
  /// second later.
  void applicationDidFinishLaunching();

  /// The user asked for the running program again: hides the window when it is open, else shows it.
  /// Always true.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);

  /// False: the process goes on with its menu-bar item. True on a desktop without a tray, where
  /// there would be no way back to the window, nor any to end the process.
  bool applicationShouldTerminateAfterLastWindowClosed() const;

  /// Brings the window to the front.
  void showMainWindow();

  /// Hides the window; the process goes on where `applicationShouldTerminateAfterLastWindowClosed`
  /// lets it.
  void closeWindow();

  /// Ends the process, but not in the middle of a page's work: hides the window at once and quits
  /// as soon as no page is busy.
  void terminate();

  /// Makes the menu-bar item and its panel. Without a tray the title bar gets a button for the
  /// panel instead.
  void addMenuBar();

  /// Told when `keyPath` of the status item changed to `change`. Only "button.effectiveAppearance"
  /// matters, whose name chooses the icon.
  void observeValueForKeyPath(const QString& keyPath, const QString& change);

  /// Chooses the icon by the global preference "AppleInterfaceStyle". Logs "Dark mode changed" and
  /// the domain.
  void darkModeChanged();

  /// Once per user: opens the welcome page and makes the program a login item that is not hidden.
  void introduceOnce();

  void setTitleBar();
  void createLeftView();
  void creatrRightView();

  /// A new page for a row of the module table; null for any other index.
  std::unique_ptr<PageController> createViewWith(int index) const;

  // The application menu.

  /// Shows the version check's window, made on first use and kept with what it found.
  void checkUpdateAction();
  void supportCenterAction();
  void onlineHelp();
  void aboutAction();
  void recoveryMenuItmeAction();
  void eraserMenuItemAction();
  void startMenuDriveMenuItemAction();

  bool isOpen() const { return isOpenMainWindow; }
  MainWindow* window() const { return _window.get(); }
  StatusBarView* statusBarView() const { return statusBarV; }
  const std::vector<std::unique_ptr<PageController>>& pages() const { return pages_; }

  /// Goes to a page as if its cell had been clicked: not while a page is busy.
  void goToPage(int index);

 private:
  void placeTitleImages();
  void layOutViews();
  QRect pageArea() const;
  void buildMenu();
  void showMenu();
  void addShortcuts();

  std::unique_ptr<MainWindow> _window;
  QPointer<QWidget> aLeftView;  ///< the placeholder whose frame the sidebar takes over
  bool isOpenMainWindow = false;
  UpdateWindowController* checkUpdateWindow = nullptr;  ///< the main window owns it
  MainWindow* aWindow = nullptr;
  QLabel* titleLabel = nullptr;
  TitleBar* titleBarView = nullptr;
  std::unique_ptr<QSystemTrayIcon> statusItem;
  StatusBarView* statusBarV = nullptr;

  LeftViewCtl* leftViewCtl_ = nullptr;
  MainView* mainView_ = nullptr;
  QMenu* menu_ = nullptr;
  std::vector<std::unique_ptr<PageController>> pages_;
};

}  // namespace brisko

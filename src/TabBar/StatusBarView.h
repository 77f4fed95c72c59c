#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>
#include <string>

namespace brisko {

class StatusPanel;

/// What stands in the menu bar: an icon that opens the panel, and a small menu.
class StatusBarView : public QObject {
  Q_OBJECT

 public:
  explicit StatusBarView(QObject* parent = nullptr);
  ~StatusBarView() override;

  /// The item that it shows itself in. Not owned.
  void setStatusItem(QSystemTrayIcon* item);

  /// The image to show from the next `changeTabarIconImage` on.
  void setTabBarIconImage(std::string name) { tabBarIconImage_ = std::move(name); }
  const std::string& tabBarIconImage() const { return tabBarIconImage_; }
  void changeTabarIconImage();

  /// Opens the panel at the item, or closes it.
  void togglePanel();
  /// The same at `anchor`, a rectangle on the screen.
  void togglePanelAt(const QRect& anchor);
  StatusPanel* panel() const { return panel_.get(); }

 Q_SIGNALS:
  void mainWindowRequested();
  /// The item was pressed in the way that asks for the program itself: shows or hides the window.
  void reopenRequested();
  void quitRequested();

 private:
  QSystemTrayIcon* statusItem_ = nullptr;
  std::string tabBarIconImage_ = "logo_light";
  std::unique_ptr<StatusPanel> panel_;  ///< made when first opened
  std::unique_ptr<QMenu> menu_;
};

}  // namespace brisko

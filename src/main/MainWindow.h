#pragma once

#include <QWidget>

namespace brisko {

class TitleBar;
class WindowChrome;

/// The one main window: its own title bar above the content view. Never destroyed while the process
/// lives; closing hides it.
class MainWindow : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kPageWidth = 860;
  static constexpr int kContentHeight = 678;

  MainWindow();

  TitleBar* titleBarView() const { return titleBar_; }
  QWidget* contentView() const { return content_; }

  /// In the middle of the screen that it is on.
  void center();

 Q_SIGNALS:
  void closeRequested();
  void contentResized();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  WindowChrome* chrome_;
  TitleBar* titleBar_;
  QWidget* content_;
};

}  // namespace brisko

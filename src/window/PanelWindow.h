#pragma once

#include <QDialog>

class QVBoxLayout;

namespace brisko {

class TitleBar;
class WindowChrome;

/// A small window of our own frame, run modally or beside the main window.
class PanelWindow : public QDialog {
  Q_OBJECT

 public:
  explicit PanelWindow(QWidget* parent = nullptr);

  /// Where the content goes: below the title bar, with the margins of a panel.
  QWidget* contentView() const { return content_; }
  TitleBar* titleBarView() const { return titleBar_; }

  /// In the middle of its parent, or of the screen.
  void center();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  WindowChrome* chrome_;
  TitleBar* titleBar_;
  QWidget* content_;
};

}  // namespace brisko

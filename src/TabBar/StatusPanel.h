#pragma once

#include <QWidget>

namespace brisko {

class VolumeList;

/// The small window that the menu-bar item opens.
class StatusPanel : public QWidget {
  Q_OBJECT

 public:
  StatusPanel();

  /// Shows it beside `anchor`, a rectangle on the screen, wholly on that screen.
  void popUp(const QRect& anchor);

 Q_SIGNALS:
  void mainWindowRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  VolumeList* volumes_;
};

}  // namespace brisko

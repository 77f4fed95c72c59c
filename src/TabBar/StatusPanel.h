#pragma once

#include <QElapsedTimer>
#include <QRect>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace brisko {

class HightActionViewController;
class PanelMeter;
class StatusFeed;
class VolumeList;

/// The small window that the menu-bar item opens: the machine's figures, live while it is open, the
/// quick switches, and the way to the main window.
class StatusPanel : public QWidget {
  Q_OBJECT

 public:
  StatusPanel();
  ~StatusPanel() override;

  /// Shows it beside `anchor`, a rectangle on the screen, wholly on that screen. It stays there
  /// when its content grows. A press on `anchor` meanwhile closes it and is nothing else.
  void popUp(const QRect& anchor);

  HightActionViewController& switches() const { return *switches_; }
  StatusFeed& feed() const { return *feed_; }

 Q_SIGNALS:
  void mainWindowRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void addHead(QVBoxLayout* column);
  void addMeters(QVBoxLayout* column);
  void updateSysStat();
  QRect screenArea() const;
  void place();
  void showTemperatures();

  QRect anchor_;
  StatusFeed* feed_;
  QLabel* temperatures_ = nullptr;
  PanelMeter* processor_ = nullptr;
  PanelMeter* memory_ = nullptr;
  PanelMeter* received_ = nullptr;
  PanelMeter* sent_ = nullptr;
  VolumeList* volumes_;
  HightActionViewController* switches_;
  QString toldTemperature_;  ///< of the drive that is looked at, in degrees
  QElapsedTimer sinceTold_;
  int token_;
};

}  // namespace brisko

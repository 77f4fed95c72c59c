#pragma once

#include <QObject>

class QPainter;
class QWidget;

namespace brisko {

/// Gives a top-level widget the program's own frame: no native title bar, rounded corners where the
/// platform can show them, moved by dragging its background, resized at its edges.
class WindowChrome : public QObject {
  Q_OBJECT

 public:
  enum Option : unsigned { none = 0U, resizable = 1U };

  /// To be made before `window` is shown. Owned by the window.
  WindowChrome(QWidget* window, unsigned options);

  /// Whether the platform can show windows through which others shine. Without it corners are
  /// square.
  static bool hasTranslucency();

  bool isRounded() const;
  /// The radius of the corners at this moment: 0 without translucency or when the window is zoomed.
  qreal radius() const;

  /// Fills `painter` with the window's ground and edge; to be called first in its paintEvent.
  void paintGround(QPainter* painter) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Qt::Edges edgesAt(const QPoint& position) const;
  bool handleHover(const QPoint& position);
  bool handlePress(const QPoint& position);

  QWidget* window_;
  unsigned options_;
  bool isTranslucent_;
  bool hasEdgeCursor_ = false;
};

}  // namespace brisko
